#pragma once

// Reading the ticket's values back, and a code's bytes as the ticket holds
// them: shared by the panel's exchange and the account code a host asks for.

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/StringEncoding.h"

namespace pde {
class PrintSettings;
}

// Buffers of a ticket text and of a code's bytes.
inline constexpr size_t kTicketTextSize = 256;
inline constexpr size_t kCodeAreaSize = 256;

// A code or stamp value as ASCII text of at most 255 characters, as its
// buffer holds it; anything else is treated as absent.
std::optional<QByteArray> ticketValue(const pde::PrintSettings *settings, const char *key);
// The leading decimal integer of a text (after blanks, with a sign), 0 when
// there is none, clamped to 32 bits. What follows it does not matter.
qint32 leadingInteger(QStringView text);
// The integer value of a state in the ticket, read from the whole value
// (however long, whatever follows the number); none when absent.
std::optional<qint32> ticketInteger(const pde::PrintSettings *settings, const char *key);
// A check box's ticket value: on when present and not 0.
bool ticketSwitch(const pde::PrintSettings *settings, const char *key);
// A code from its hex text, read in `encoding`; empty when absent, empty, or
// not valid in the encoding.
QString ticketCode(const pde::PrintSettings *settings, const char *key, pde::StringEncoding encoding);
// The bytes of a code in the system encoding, cut to the code's limits, into
// the zeroed code area; answers their count (0: none).
uint32_t codeBytes(const QString &text, unsigned char (&code)[kCodeAreaSize]);

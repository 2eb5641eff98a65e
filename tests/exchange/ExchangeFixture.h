#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <utility>

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "tests/support/TestSupport.h"

namespace exchangetest {

// Print settings that remember every write, in order.
class RecordingPrintSettings : public pde::PrintSettings
{
public:
    void setValue(const QString &key, const std::optional<QString> &value) override
    {
        writes.append({ key, value });
        pde::PrintSettings::setValue(key, value);
    }
    QStringList writtenKeys() const
    {
        QStringList keys;
        for (const auto &write : writes)
            keys << write.first;
        return keys;
    }

    QList<std::pair<QString, std::optional<QString>>> writes;
};

// A host with constraint handling (so the panel takes its PPD) whose print
// settings record the writes.
class RecordingCallback : public pdetest::ConstraintTestCallback
{
public:
    using pdetest::ConstraintTestCallback::ConstraintTestCallback;
    pde::PrintSettings *printSettings() override { return settingsAvailable ? &recording : nullptr; }
    RecordingPrintSettings recording;
};

inline constexpr char kPrinter[] = "office";
inline constexpr char kDomain[] = "jp.co.nurat.mfp.office";
inline constexpr char kModel[] = "Nurat QR7150K";

// A panel with its view on the sample printer, whose queue has no
// preferences domain, and recording print settings.
class PanelOnSamplePrinter : public ::testing::Test
{
protected:
    void SetUp() override;

    pdetest::PpdPtr ppd;
    std::shared_ptr<RecordingCallback> callback;
    std::unique_ptr<JpCoNuratPrintPdeQr7150kBC> panel;
};

// Writes a domain file, or removes it for nothing.
void writeDomain(const std::optional<QVariantMap> &domain);
std::optional<QVariantMap> readDomain();
QVariantMap record(const QVariantMap &domain);

// The plain stamp of a ticket, from its hex text.
QByteArray stampOfTicket(const pde::PrintSettings &settings);
// Code bytes decrypted from a ticket's Base64 copy with OpenSSL, under the
// last 16 bytes of the stamp; trailing zero bytes dropped.
QByteArray decryptTicketCode(const QString &base64, const QByteArray &stamp);
QString hexOf(const QByteArray &bytes);

} // namespace exchangetest

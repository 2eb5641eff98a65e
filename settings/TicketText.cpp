// Text helpers of the job ticket. Whatever consumes the ticket parses these
// formats, so they stay exactly as they are, quirks included.

#include "settings/TicketText.h"

#include "platform/PrintSettings.h"

#include <cstdio>
#include <cstring>
#include <langinfo.h>

namespace {

// The stamp of a four-digit year is 31 characters; the caller's buffer holds 32.
constexpr int kSpoolTimeBufferSize = 32;

const char *dayName(int dayOfWeek)
{
    static const char *const names[] = { "Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun" };
    return dayOfWeek >= 1 && dayOfWeek <= 7 ? names[dayOfWeek - 1] : names[0];
}

const char *monthName(int month)
{
    static const char *const names[] = { "Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec" };
    return month >= 1 && month <= 12 ? names[month - 1] : names[0];
}

// Value of a hex digit as the ticket's reader computes it: no validation, so
// anything that is not '0'-'9' or 'A'-'F' gives a wrong value, not an error.
int hexDigitValue(unsigned char digit)
{
    return digit < ':' ? digit - '0' : digit - 0x37;
}

// Codesets of East Asian scripts, upper case, without '-', '_' or '.'.
constexpr const char *kEastAsianCodesets[] = {
    // Japanese
    "SHIFTJIS", "SJIS", "SHIFTJISX0213", "CP932", "WINDOWS31J", "MSKANJI", "EUCJP", "EUCJPMS",
    "EUCJISX0213", "ISO2022JP", "ISO2022JP1", "ISO2022JP2", "ISO2022JP3",
    // Traditional Chinese
    "BIG5", "BIG5HKSCS", "CP950", "EUCTW",
    // Korean
    "EUCKR", "CP949", "UHC", "JOHAB", "ISO2022KR",
    // Simplified Chinese
    "GB2312", "GBK", "CP936", "GB18030", "EUCCN", "ISO2022CN", "HZ",
};

// Upper case without separators, so "euc-jp", "EUC_JP" and "EUCJP" compare equal.
void normaliseCodeset(const char *codeset, char *normalised, size_t size)
{
    size_t length = 0;
    for (const char *c = codeset; *c && length + 1 < size; ++c) {
        if (*c == '-' || *c == '_' || *c == '.')
            continue;
        normalised[length++] = (*c >= 'a' && *c <= 'z') ? char(*c - 'a' + 'A') : *c;
    }
    normalised[length] = '\0';
}

} // namespace

int GetSpoolTime(char *buffer)
{
    return GetSpoolTime(buffer, QDateTime::currentDateTime());
}

int GetSpoolTime(char *buffer, const QDateTime &instant)
{
    // Every field from the one instant, in the zone it carries.
    const QDate date = instant.date();
    const QTime time = instant.time();
    // Hundredths of an hour, not hours and minutes: 5h30 east gives +0550.
    const long zone = long(instant.offsetFromUtc() / 36);

    const int written = snprintf(buffer, kSpoolTimeBufferSize, "%s, %d %s %04d %02d:%02d:%02d %+05ld",
                                 dayName(date.dayOfWeek()), date.day(), monthName(date.month()), date.year(),
                                 time.hour(), time.minute(), time.second(), zone);
    if (written < 0)
        return 0;
    return written < kSpoolTimeBufferSize ? written : kSpoolTimeBufferSize - 1;
}

void myitoa(const unsigned char *source, char *destination, uint32_t count)
{
    static const char digits[] = "0123456789ABCDEF";
    for (uint32_t i = 0; i < count; ++i) {
        destination[2 * i] = digits[source[i] >> 4];
        destination[2 * i + 1] = digits[source[i] & 0x0f];
    }
    destination[2 * size_t(count)] = '\0';
}

void myatoi(const char *source, unsigned char *destination, uint32_t length)
{
    const auto *digits = reinterpret_cast<const unsigned char *>(source);
    size_t out = 0;
    for (uint32_t i = 0; i < length; i += 2) {
        // An odd last digit pairs with the text's terminator, never past it.
        const unsigned char low = i + 1 < length ? digits[i + 1] : '\0';
        destination[out++] = static_cast<unsigned char>(16 * hexDigitValue(digits[i]) + hexDigitValue(low));
    }
    destination[out] = 0;
}

void MyPMPrintSetAsciiCStrValue(pde::PrintSettings *settings, const QString &key, const char *value)
{
    if (!settings || key.isEmpty())
        return;
    if (!value || value[0] == '\0') {
        PMPrintSettingsSetValue(settings, key, std::nullopt, false);
        return;
    }
    // Ticket values are ASCII; other text cannot be made into a value, so the
    // key keeps what it had.
    for (const char *c = value; *c; ++c) {
        if (static_cast<unsigned char>(*c) > 0x7f)
            return;
    }
    PMPrintSettingsSetValue(settings, key, QString::fromLatin1(value), false);
}

void ReplaceSpaceCode(char *buffer, int64_t length)
{
    if (!buffer)
        return;
    // The walk does not stop at a zero byte: the length is the whole buffer.
    for (int64_t i = 0; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(buffer[i]);
        if ((byte >= 0x01 && byte <= 0x1f && byte != '\t') || byte == '"')
            buffer[i] = ' ';
    }
}

bool encodingWindowsLatin1()
{
    return encodingWindowsLatin1(nl_langinfo(CODESET));
}

bool encodingWindowsLatin1(const char *codeset)
{
    if (!codeset)
        return true;
    char normalised[64];
    normaliseCodeset(codeset, normalised, sizeof normalised);
    for (const char *eastAsian : kEastAsianCodesets) {
        if (strcmp(normalised, eastAsian) == 0)
            return false;
    }
    return true;
}

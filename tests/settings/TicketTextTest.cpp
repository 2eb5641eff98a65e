// The ticket's text helpers: spool time stamp, hex text, ASCII values and how
// the print settings answer for them.

#include "settings/TicketText.h"

#include "platform/PrintSettings.h"

#include <QTimeZone>

#include <gtest/gtest.h>

#include <cstring>
#include <ctime>

TEST(SpoolTime, StampOfAnInstantInItsZoneAndOfNowInTheSystemZone)
{
    const struct { const char *utc; int offsetSeconds; const char *stamp; } cases[] = {
        // The zone field counts hundredths of an hour: 5h30 east is +0550.
        { "2024-03-05T00:07:03Z", 9 * 3600, "Tue, 5 Mar 2024 09:07:03 +0900" },
        { "2024-01-01T04:59:59.999Z", -5 * 3600, "Sun, 31 Dec 2023 23:59:59 -0500" },
        { "2024-01-01T00:00:00Z", 5 * 3600 + 1800, "Mon, 1 Jan 2024 05:30:00 +0550" },
        { "2024-09-02T00:00:00Z", -59 * 60, "Sun, 1 Sep 2024 23:01:00 -0098" },
        { "2024-11-20T12:34:56Z", 0, "Wed, 20 Nov 2024 12:34:56 +0000" },
    };
    char buffer[32];
    for (const auto &c : cases) {
        const QDateTime utc = QDateTime::fromString(QString::fromLatin1(c.utc), Qt::ISODateWithMs);
        EXPECT_EQ(GetSpoolTime(buffer, utc.toTimeZone(QTimeZone(c.offsetSeconds))), int(strlen(c.stamp)));
        EXPECT_STREQ(buffer, c.stamp);
    }

    // Each test runs in a process of its own: the zone need not be put back.
    qputenv("TZ", "JST-9");
    tzset();
    EXPECT_EQ(GetSpoolTime(buffer), int(strlen(buffer)));
    EXPECT_TRUE(QByteArray(buffer).endsWith(" +0900")) << buffer;
}

TEST(HexText, EveryByteRoundTripsInUpperCaseAndDecodingDoesNotValidate)
{
    QByteArray raw;
    for (int byte = 0; byte < 256; ++byte)
        raw.append(char(byte));
    QByteArray text(514, '#'), decoded(258, '\xA5');
    myitoa(reinterpret_cast<const unsigned char *>(raw.constData()), text.data(), 256);
    EXPECT_EQ(text, raw.toHex().toUpper() + '\0' + '#');
    myatoi(text.constData(), reinterpret_cast<unsigned char *>(decoded.data()), 512);
    EXPECT_EQ(decoded, raw + '\0' + '\xA5');

    // An odd last digit pairs with the terminator (16*5-48), not with what lies past the length.
    decoded.fill('\xA5');
    myatoi("1F5X", reinterpret_cast<unsigned char *>(decoded.data()), 3);
    EXPECT_EQ(decoded.left(4), QByteArray("\x1f\x20") + '\0' + '\xA5');
}

TEST(AsciiValue, StoresOrRemovesTheKey)
{
    const QString key = QStringLiteral("jp.co.nurat.print.PrintSettings.bc.mainCode");
    const struct { const char *value; std::optional<QString> after; } cases[] = {
        { "Zm9v+/==", QStringLiteral("Zm9v+/==") }, { "", std::nullopt }, { nullptr, std::nullopt },
        { "caf\xc3\xa9", QStringLiteral("old") }, // not ASCII: the key keeps its value
    };
    QString value;
    for (const auto &c : cases) {
        pde::PrintSettings settings;
        settings.setValue(key, QStringLiteral("old"));
        MyPMPrintSetAsciiCStrValue(&settings, key, c.value);
        // Read back as the panel reads a ticket: a removed key is one not found, and no value comes.
        value = QStringLiteral("none");
        EXPECT_EQ(PMPrintSettingsGetValue(&settings, key, &value), c.after ? noErr : kPMKeyNotFound);
        EXPECT_EQ(value, c.after.value_or("none")) << (c.value ? c.value : "(none)");
    }
    MyPMPrintSetAsciiCStrValue(nullptr, key, "1");
    EXPECT_EQ(PMPrintSettingsGetValue(nullptr, key, &value), kPMInvalidParameter);
    EXPECT_EQ(PMPrintSettingsSetValue(nullptr, key, QStringLiteral("1"), false), kPMInvalidParameter);
}

#pragma once

// Text helpers of the job ticket: the spool time stamp, hexadecimal text of
// bytes, ASCII values in the print settings.

#include <QDateTime>
#include <QString>

#include <cstdint>

namespace pde {
class PrintSettings;
}

// Writes the spool time stamp of now in the system's time zone, e.g.
// "Tue, 5 Mar 2024 09:07:03 +0900", into `buffer` (at least 32 bytes) and
// answers the characters written.
int GetSpoolTime(char *buffer);
// The same for a given instant, in the time zone the QDateTime carries.
int GetSpoolTime(char *buffer, const QDateTime &instant);

// Upper-case hexadecimal text of `count` bytes, two digits a byte, terminated.
void myitoa(const unsigned char *source, char *destination, uint32_t count);
// The bytes of `length` hexadecimal digits, and a terminating zero byte. No
// validation: other characters decode to wrong bytes, and an odd last digit
// is paired with a zero byte (the text's terminator); nothing past `length`
// is read.
void myatoi(const char *source, unsigned char *destination, uint32_t length);

// Stores an ASCII value under the key; an empty or missing value removes it.
void MyPMPrintSetAsciiCStrValue(pde::PrintSettings *settings, const QString &key, const char *value);

// Replaces control characters (but tab) and double quotes by blanks, in place.
void ReplaceSpaceCode(char *buffer, int64_t length);

// False when the system's string encoding (the C library's locale codeset) is
// an East Asian script encoding.
bool encodingWindowsLatin1();
// The same for a codeset name as the C library spells it ("EUC-JP", "UTF-8");
// case, '-', '_' and '.' do not matter.
bool encodingWindowsLatin1(const char *codeset);

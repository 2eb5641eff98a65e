#pragma once

#include <QString>
#include <QtGlobal>

#include <cups/ppd.h>

#include "platform/StringEncoding.h"

// Where the operating system's version is read from; tests name another file.
inline constexpr char kDefaultOsReleasePath[] = "/etc/os-release";

// Writes the parts of the system's VERSION_ID into the three numbers; a part
// that is missing (or an unreadable file) leaves the caller's value.
void get_system_version(qint32 *major, qint32 *minor, qint32 *bugFix,
                        const QString &osReleasePath = QString::fromLatin1(kDefaultOsReleasePath));
// True for a version above 10.4; false when the version cannot be read.
bool runningOnLeopardOrLater(const QString &osReleasePath = QString::fromLatin1(kDefaultOsReleasePath));
// The string-encoding number of the PPD's LanguageEncoding; Mac OS Roman when
// there is no PPD, no LanguageEncoding or an unknown one.
pde::StringEncoding getEncodingFromPPD(const ppd_file_t *ppd);

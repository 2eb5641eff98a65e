#pragma once

#include <QString>
#include <QVariantMap>

#include <cups/ppd.h>

#include <memory>
#include <optional>
#include <ostream>

#include "platform/ConstraintHandling.h"
#include "platform/PluginCallback.h"
#include "platform/PrintSession.h"
#include "platform/PrintSettings.h"

namespace pdetest {

// A file of the test data folder, or of the examples folder.
QString testDataPath(const QString &name);
QString examplePath(const QString &name);
QString samplePpdPath();
// Where the build puts plug-in modules.
QString pluginBuildDirectory();
// A file's bytes, empty when it cannot be read; the bytes written whole, in a
// folder made as needed (false when that fails).
QByteArray readFile(const QString &path);
bool writeFile(const QString &path, const QByteArray &bytes);

// An opened PPD, closed when it goes.
struct PpdCloser { void operator()(ppd_file_t *ppd) const; };
using PpdPtr = std::unique_ptr<ppd_file_t, PpdCloser>;
PpdPtr openPpd(const QString &path);

// The ticket's keys all start so; tests spell the rest out, as a reader of the ticket does.
inline const QString kTicketPrefix = QStringLiteral("jp.co.nurat.print.PrintSettings.");

// The sample printer's queue and the preferences domain named after it.
inline constexpr char kSamplePrinter[] = "office";
inline constexpr char kSampleDomain[] = "jp.co.nurat.mfp.office";
// Replaces the domain's file whole, or removes it for nothing; reads it afresh.
void writeDomain(const std::optional<QVariantMap> &domain, const QString &name = QString::fromLatin1(kSampleDomain));
std::optional<QVariantMap> readDomain(const QString &name = QString::fromLatin1(kSampleDomain));
// The panel's record in the sample domain; empty when there is none.
QVariantMap readRecord();

// A host callback as a host without constraint handling gives it.
class TestCallback : public pde::PluginCallback
{
public:
    TestCallback(ppd_file_t *ppdFile = nullptr, const QString &printer = QString::fromLatin1(kSamplePrinter)) : ppd(ppdFile)
    {
        if (!printer.isEmpty())
            session.setCurrentPrinter(pde::Printer { printer, QString() });
    }

    pde::PrintSession *printSession() override { return &session; }
    pde::PrintSettings *printSettings() override { return settingsAvailable ? &settings : nullptr; }
    ppd_file_t *ppdFile() override { return ppd; }

    pde::PrintSession session;
    pde::PrintSettings settings;
    bool settingsAvailable = true;
    ppd_file_t *ppd = nullptr;
};

// The same with constraint handling, which allows every change.
class ConstraintTestCallback : public TestCallback, public pde::ConstraintHandling
{
public:
    using TestCallback::TestCallback;
    bool willChangePPDOptionKeyValue(const QString &, const QString &) override { return true; }
};

} // namespace pdetest

// Readable strings in test failure messages.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

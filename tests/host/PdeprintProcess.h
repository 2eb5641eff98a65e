#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <ostream>

namespace hosttest {

struct RunResult
{
    int exitCode = -1;
    QString out;
    QString err;
};

// Runs the built pdeprint with the arguments, headless unless `environment`
// says otherwise, with no standard input.
RunResult runPdeprint(const QStringList &arguments, QProcessEnvironment environment);

// The environment of this test with a private preferences folder `configHome`.
QProcessEnvironment testEnvironment(const QString &configHome);

QString samplePpd();
QString sampleText();

} // namespace hosttest

// Readable strings in test failure messages.
inline void PrintTo(const QString &text, std::ostream *os)
{
    *os << '"' << text.toStdString() << '"';
}

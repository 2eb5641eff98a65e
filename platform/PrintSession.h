#pragma once

#include <QString>

#include <optional>

#include "platform/Status.h"

namespace pde {

// A CUPS destination: queue name and optional instance.
struct Printer
{
    QString name;
    QString instance;
};

// The print session of a dialog: which destination is chosen.
class PrintSession
{
public:
    PrintSession() = default;
    explicit PrintSession(Printer printer) : m_printer(std::move(printer)) { }

    const std::optional<Printer> &currentPrinter() const { return m_printer; }
    void setCurrentPrinter(std::optional<Printer> printer) { m_printer = std::move(printer); }

private:
    std::optional<Printer> m_printer;
};

} // namespace pde

// noErr and the chosen printer, or kPMInvalidPrinter when none is chosen.
OSStatus PMSessionGetCurrentPrinter(const pde::PrintSession *session, const pde::Printer **printer);
// The printer's identifier: the queue name, "/instance" appended when there is one.
QString PMPrinterGetID(const pde::Printer *printer);

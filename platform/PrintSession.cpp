#include "platform/PrintSession.h"

OSStatus PMSessionGetCurrentPrinter(const pde::PrintSession *session, const pde::Printer **printer)
{
    if (!printer)
        return kPMInvalidParameter;
    *printer = nullptr;
    if (!session || !session->currentPrinter())
        return kPMInvalidPrinter;
    *printer = &*session->currentPrinter();
    return noErr;
}

QString PMPrinterGetID(const pde::Printer *printer)
{
    if (!printer)
        return {};
    if (printer->instance.isEmpty())
        return printer->name;
    return printer->name + QLatin1Char('/') + printer->instance;
}

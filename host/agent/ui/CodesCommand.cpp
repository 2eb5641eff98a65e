#include "host/agent/ui/CodesCommand.h"

#include "host/CupsQueue.h"
#include "host/PrintCommand.h"
#include "host/agent/JobPanelSession.h"
#include "host/agent/ui/CodesWindow.h"
#include "host/printer/Destination.h"

namespace pdeprint {

int runCodesCommand(const std::vector<LoadedPlugin> &plugins, CupsConnection &cups, const QString &queue,
                    QTextStream &err)
{
    auto fail = [&err](const QString &why) {
        err << "pdeprint: " << why << Qt::endl;
        return kExitFailure;
    };
    QString error;
    pde::Printer printer;
    if (!chooseQueue(cups, queue, &printer, &error))
        return fail(error);
    HeldJob noJob; // id 0: the panels see the queue's defaults and its record
    noJob.queue = printer.name;
    std::unique_ptr<JobPanelSession> session = JobPanelSession::open(plugins, cups, noJob, &error);
    if (!session)
        return fail(error);
    CodesWindow window(std::move(session));
    window.exec();
    return window.saved() ? kExitOk : kExitCancelled;
}

} // namespace pdeprint

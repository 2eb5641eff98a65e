#pragma once

#include <QObject>

class QDBusMessage;

namespace pdeprint {

// The local scheduler's notifier on the system bus: it runs for a
// subscription whose recipient is dbus:// and signals each event there.
// The signals only say "something happened"; the events themselves are
// still fetched over IPP, so a missed or foreign signal costs nothing.
class SchedulerBusSignals : public QObject
{
    Q_OBJECT
public:
    // False when the CUPS server is not on this machine (its notifier would
    // signal on another machine's bus) or there is no system bus.
    bool listen();

signals:
    void signalled();

private slots:
    void onSignal(const QDBusMessage &message);
};

} // namespace pdeprint

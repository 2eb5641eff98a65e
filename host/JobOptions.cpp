#include "host/JobOptions.h"

#include "platform/PrintSettings.h"

namespace pdeprint {

QMap<QString, QString> JobOptions::all() const
{
    QMap<QString, QString> merged = others;
    merged.insert(settings);
    return merged;
}

JobOptions makeJobOptions(const pde::PrintSettings &settings, const QStringList &panelOptionKeys,
                          const QList<std::pair<QString, QString>> &commandLineOptions,
                          const DialogSettings &dialog)
{
    JobOptions options;
    for (const auto &[name, value] : commandLineOptions) {
        if (!panelOptionKeys.contains(name))
            options.others.insert(name, value);
    }
    if (dialog.copies > 1)
        options.others.insert(QStringLiteral("copies"), QString::number(dialog.copies));
    if (!dialog.pageRanges.isEmpty())
        options.others.insert(QStringLiteral("page-ranges"), dialog.pageRanges);
    if (!dialog.sides.isEmpty())
        options.others.insert(QStringLiteral("sides"), dialog.sides);

    const QMap<QString, QString> values = settings.values();
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        if (!panelOptionKeys.contains(it.key()))
            options.settings.insert(it.key(), it.value());
    }
    return options;
}

} // namespace pdeprint

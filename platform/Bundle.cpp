#include "platform/Bundle.h"

#include "platform/PanelFactory.h"
#include "platform/ViewLoader_p.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonObject>
#include <QLocale>
#include <QMetaClassInfo>
#include <QMutex>
#include <QPluginLoader>
#include <QTranslator>
#include <QWidget>

namespace pde {

namespace {

constexpr char kClassInfoKey[] = "PDEBundleIdentifier";
constexpr char kDefaultTable[] = "Localizable";

struct Registry
{
    QMutex mutex;
    QHash<QString, std::shared_ptr<Bundle>> bundles;
};

Registry &registry()
{
    static Registry instance;
    return instance;
}

} // namespace

struct Bundle::Private
{
    std::unique_ptr<QPluginLoader> loader;
    // One translator per table, reloaded when the locale changes.
    mutable QMutex mutex;
    mutable QHash<QString, std::shared_ptr<QTranslator>> translators;
    mutable QString translatorsLocale;
};

Bundle::Bundle(const QString &identifier)
    : d(std::make_unique<Private>())
    , m_identifier(identifier)
{
}

Bundle::~Bundle() = default;

std::shared_ptr<Bundle> Bundle::bundleWithIdentifier(const QString &identifier)
{
    if (identifier.isEmpty())
        return nullptr;
    Registry &r = registry();
    QMutexLocker lock(&r.mutex);
    auto &slot = r.bundles[identifier];
    if (!slot)
        slot.reset(new Bundle(identifier));
    return slot;
}

std::shared_ptr<Bundle> Bundle::bundleForClass(const QMetaObject *metaObject)
{
    if (!metaObject)
        return nullptr;
    const int index = metaObject->indexOfClassInfo(kClassInfoKey);
    if (index < 0)
        return nullptr;
    return bundleWithIdentifier(QString::fromUtf8(metaObject->classInfo(index).value()));
}

std::shared_ptr<Bundle> Bundle::loadPlugIn(const QString &path, QString *errorMessage)
{
    auto fail = [errorMessage](const QString &why) -> std::shared_ptr<Bundle> {
        if (errorMessage)
            *errorMessage = why;
        return nullptr;
    };
    if (!QFileInfo(path).isFile())
        return fail(QStringLiteral("%1: no such plug-in file").arg(path));

    auto loader = std::make_unique<QPluginLoader>(path);
    const QJsonObject meta = loader->metaData();
    if (meta.value(QLatin1String("IID")).toString() != QLatin1String(PDE_PANEL_FACTORY_IID))
        return fail(QStringLiteral("%1: not a panel plug-in").arg(path));
    const QString identifier = meta.value(QLatin1String("MetaData")).toObject()
                                   .value(QLatin1String("BundleIdentifier")).toString();
    if (identifier.isEmpty())
        return fail(QStringLiteral("%1: plug-in names no BundleIdentifier").arg(path));
    if (!loader->load())
        return fail(QStringLiteral("%1: %2").arg(path, loader->errorString()));

    std::shared_ptr<Bundle> bundle = bundleWithIdentifier(identifier);
    QMutexLocker lock(&bundle->d->mutex);
    if (!bundle->d->loader)
        bundle->d->loader = std::move(loader);
    return bundle;
}

QString Bundle::resourcePath() const
{
    return QStringLiteral(":/") + m_identifier;
}

QObject *Bundle::principalObject() const
{
    QMutexLocker lock(&d->mutex);
    return d->loader ? d->loader->instance() : nullptr;
}

QString Bundle::modulePath() const
{
    QMutexLocker lock(&d->mutex);
    return d->loader ? d->loader->fileName() : QString();
}

bool Bundle::loadNibNamed(const QString &name, QObject *owner, QList<QObject *> *topLevelObjects) const
{
    QFile file(resourcePath() + QLatin1Char('/') + name + QStringLiteral(".ui"));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QWidget *view = loadViewWithOwner(&file, owner);
    if (!view)
        return false;
    // Tool tips are the view's own text, which no owner localises: the
    // bundle's default table does, with the text itself as the key.
    QList<QWidget *> widgets = view->findChildren<QWidget *>();
    widgets.prepend(view);
    for (QWidget *widget : widgets) {
        const QString tip = widget->toolTip();
        if (!tip.isEmpty())
            widget->setToolTip(localizedStringForKey(tip, tip));
    }
    // A view that neither an outlet nor the caller's list holds would be lost.
    if (topLevelObjects)
        topLevelObjects->append(view);
    else if (!ownerHolds(owner, view))
        delete view;
    return true;
}

QString Bundle::localizedStringForKey(const QString &key, const QString &value, const QString &table) const
{
    const QString tableName = table.isEmpty() ? QString::fromLatin1(kDefaultTable) : table;
    std::shared_ptr<QTranslator> translator;
    {
        QMutexLocker lock(&d->mutex);
        const QLocale locale;
        if (d->translatorsLocale != locale.name()) {
            d->translators.clear();
            d->translatorsLocale = locale.name();
        }
        auto &slot = d->translators[tableName];
        if (!slot) {
            slot = std::make_shared<QTranslator>();
            // A table without a translation for this locale stays empty.
            (void)slot->load(locale, tableName, QStringLiteral("_"), resourcePath() + QStringLiteral("/translations"));
        }
        translator = slot;
    }
    const QString translated = translator->translate(tableName.toUtf8().constData(), key.toUtf8().constData());
    if (!translated.isEmpty())
        return translated;
    return value.isEmpty() ? key : value;
}

} // namespace pde

#pragma once

#include <QList>
#include <QString>

#include <memory>

class QMetaObject;
class QObject;

namespace pde {

// A plug-in's bundle: its identifier, its compiled-in resources under
// ":/<identifier>/", its view descriptions and its localisation tables.
//
// A class names its bundle with Q_CLASSINFO("PDEBundleIdentifier", "..."), so
// the same code finds its resources whether it is linked statically (tests) or
// loaded as a plug-in module.
class Bundle
{
public:
    ~Bundle();
    Bundle(const Bundle &) = delete;
    Bundle &operator=(const Bundle &) = delete;

    static std::shared_ptr<Bundle> bundleForClass(const QMetaObject *metaObject);
    static std::shared_ptr<Bundle> bundleWithIdentifier(const QString &identifier);
    // Loads a plug-in module (a Qt plug-in whose metadata names its
    // "BundleIdentifier"). Null with a one-line reason on failure.
    static std::shared_ptr<Bundle> loadPlugIn(const QString &path, QString *errorMessage);

    QString bundleIdentifier() const { return m_identifier; }
    // ":/<identifier>"
    QString resourcePath() const;
    // The plug-in module's root object; null for a bundle not loaded as a plug-in.
    QObject *principalObject() const;
    QString modulePath() const;

    // Loads "<name>.ui" with `owner` as its owner: outlets are the owner's
    // properties named like objects of the view, actions the slots named by a
    // control's "action" property, sent on click with the control as sender.
    // The root view has no parent; it is appended to topLevelObjects if given.
    bool loadNibNamed(const QString &name, QObject *owner, QList<QObject *> *topLevelObjects) const;

    // Translation of `key` in `table` (default "Localizable") for the current
    // locale; a missing key answers `value`, or the key when `value` is empty.
    QString localizedStringForKey(const QString &key, const QString &value,
                                  const QString &table = QString()) const;

private:
    struct Private;
    explicit Bundle(const QString &identifier);
    std::unique_ptr<Private> d;
    QString m_identifier;
};

} // namespace pde

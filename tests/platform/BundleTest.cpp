#include "platform/Bundle.h"

#include "tests/support/TestSupport.h"

#include <QApplication>
#include <QCheckBox>
#include <QPointer>
#include <QPushButton>

#include <gtest/gtest.h>

// An owner as a panel is one: outlets are properties, actions are slots.
class ViewOwner : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("PDEBundleIdentifier", "pde.test.viewbundle")
    Q_PROPERTY(QWidget *rootView MEMBER rootView)
    Q_PROPERTY(QPushButton *okButton MEMBER okButton)
    Q_PROPERTY(QCheckBox *optionBox MEMBER optionBox)

public:
    QPointer<QWidget> rootView;
    QPointer<QPushButton> okButton;
    QPointer<QCheckBox> optionBox;
    QList<QObject *> senders;

public slots:
    void okProc(QObject *sender) { senders << sender; }
    void optionProc(QObject *sender) { senders << sender; }
};

namespace {

using pde::Bundle;

std::shared_ptr<Bundle> ownerBundle()
{
    return Bundle::bundleForClass(&ViewOwner::staticMetaObject);
}

TEST(Bundle, ViewFillsOutletsAndConnectsActionsForTheOwnersLifetime)
{
    auto owner = std::make_unique<ViewOwner>();
    QList<QObject *> topLevel;
    ASSERT_TRUE(ownerBundle()->loadNibNamed(QStringLiteral("OwnerView"), owner.get(), &topLevel));
    std::unique_ptr<QWidget> view(owner->rootView.data());
    ASSERT_TRUE(view);
    EXPECT_EQ(topLevel, QList<QObject *> { view.get() });
    ASSERT_TRUE(owner->okButton && owner->optionBox);

    owner->okButton->click();
    owner->optionBox->click();
    view->findChild<QCheckBox *>(QStringLiteral("wrongType"))->click(); // names no slot of the owner
    EXPECT_EQ(owner->senders, (QList<QObject *> { owner->okButton.data(), owner->optionBox.data() }));

    QPointer<QPushButton> ok = owner->okButton;
    owner.reset();
    ok->click(); // must not reach the deleted owner
}

// A missing view reads as an empty description, which fails the same way.
TEST(Bundle, BrokenViewAnswersFalse)
{
    ViewOwner owner;
    QList<QObject *> topLevel;
    EXPECT_FALSE(ownerBundle()->loadNibNamed(QStringLiteral("Truncated"), &owner, &topLevel));
    EXPECT_TRUE(topLevel.isEmpty());
    EXPECT_FALSE(owner.rootView);
    // Nobody to hold the view: it goes at once instead of lingering unowned.
    QObject bareOwner;
    const qsizetype widgets = QApplication::allWidgets().size();
    EXPECT_TRUE(ownerBundle()->loadNibNamed(QStringLiteral("OwnerView"), &bareOwner, nullptr));
    EXPECT_EQ(QApplication::allWidgets().size(), widgets);
}

TEST(Bundle, FilesThatAreNoPlugInGiveOneLineReasons)
{
    for (const QString &path : { pdetest::testDataPath(QStringLiteral("os-release-10.5")),
                                 pdetest::testDataPath(QStringLiteral("no-such-module.so")) }) {
        QString error;
        EXPECT_FALSE(Bundle::loadPlugIn(path, &error)) << path.toStdString();
        EXPECT_TRUE(error.contains(path) && !error.contains(QLatin1Char('\n'))) << error.toStdString();
        EXPECT_FALSE(Bundle::loadPlugIn(path, nullptr));
    }
}

} // namespace

#include "BundleTest.moc"

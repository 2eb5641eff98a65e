#include "platform/Bundle.h"

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QLocale>
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
    Q_PROPERTY(QLineEdit *nameField MEMBER nameField)
    Q_PROPERTY(QLineEdit *wrongType MEMBER wrongType)
    Q_PROPERTY(QPushButton *readOnlyButton READ readOnlyButtonOutlet)

public:
    QPushButton *readOnlyButtonOutlet() const { return nullptr; }

    QPointer<QWidget> rootView;
    QPointer<QPushButton> okButton;
    QPointer<QCheckBox> optionBox;
    QPointer<QLineEdit> nameField;
    QPointer<QLineEdit> wrongType;
    QList<QObject *> senders;
    QStringList calls;

public slots:
    void okProc(QObject *sender) { calls << QStringLiteral("okProc"); senders << sender; }
    void optionProc(QObject *sender) { calls << QStringLiteral("optionProc"); senders << sender; }
};

namespace {

using pde::Bundle;

std::shared_ptr<Bundle> ownerBundle()
{
    return Bundle::bundleForClass(&ViewOwner::staticMetaObject);
}

TEST(Bundle, BundleOfAClassComesFromItsClassInfo)
{
    const auto bundle = ownerBundle();
    ASSERT_TRUE(bundle);
    EXPECT_EQ(bundle->bundleIdentifier(), QStringLiteral("pde.test.viewbundle"));
    EXPECT_EQ(bundle.get(), ownerBundle().get());
    EXPECT_EQ(bundle->principalObject(), nullptr);
    EXPECT_FALSE(Bundle::bundleForClass(&QObject::staticMetaObject));
    EXPECT_FALSE(Bundle::bundleForClass(nullptr));
}

TEST(Bundle, ViewFillsOutletsAndConnectsActions)
{
    ViewOwner owner;
    QList<QObject *> topLevel;
    ASSERT_TRUE(ownerBundle()->loadNibNamed(QStringLiteral("OwnerView"), &owner, &topLevel));
    std::unique_ptr<QWidget> view(owner.rootView.data());
    ASSERT_TRUE(view);
    EXPECT_EQ(topLevel, QList<QObject *> { view.get() });
    EXPECT_EQ(view->parent(), nullptr);

    ASSERT_TRUE(owner.okButton && owner.optionBox && owner.nameField);
    EXPECT_EQ(owner.okButton->objectName(), QStringLiteral("okButton"));
    EXPECT_EQ(owner.okButton->window(), view.get());
    EXPECT_EQ(owner.nameField->objectName(), QStringLiteral("nameField"));
    // A property whose type cannot hold the object stays empty.
    EXPECT_FALSE(owner.wrongType);

    owner.okButton->click();
    owner.optionBox->click();
    view->findChild<QCheckBox *>(QStringLiteral("wrongType"))->click(); // names no slot of the owner
    view->findChild<QPushButton *>(QStringLiteral("readOnlyButton"))->click();
    EXPECT_EQ(owner.calls, (QStringList { QStringLiteral("okProc"), QStringLiteral("optionProc") }));
    EXPECT_EQ(owner.senders, (QList<QObject *> { owner.okButton.data(), owner.optionBox.data() }));
}

TEST(Bundle, ActionsDoNotOutliveTheirOwner)
{
    auto owner = std::make_unique<ViewOwner>();
    ASSERT_TRUE(ownerBundle()->loadNibNamed(QStringLiteral("OwnerView"), owner.get(), nullptr));
    std::unique_ptr<QWidget> view(owner->rootView.data());
    QPointer<QPushButton> ok = owner->okButton;
    owner.reset();
    ASSERT_TRUE(ok);
    ok->click(); // must not reach the deleted owner
}

TEST(Bundle, MissingOrBrokenViewAnswersFalse)
{
    for (const QString &name : { QStringLiteral("NoSuchView"), QStringLiteral("Truncated") }) {
        ViewOwner owner;
        QList<QObject *> topLevel;
        EXPECT_FALSE(ownerBundle()->loadNibNamed(name, &owner, &topLevel)) << name.toStdString();
        EXPECT_TRUE(topLevel.isEmpty());
        EXPECT_FALSE(owner.rootView);
    }
}

class LocalizedStrings : public ::testing::Test
{
protected:
    void TearDown() override { QLocale::setDefault(saved); }
    static std::shared_ptr<Bundle> panelBundle()
    {
        return Bundle::bundleForClass(&JpCoNuratPrintPdeQr7150kBC::staticMetaObject);
    }
    QLocale saved;
};

TEST_F(LocalizedStrings, FollowTheCurrentLocale)
{
    const auto bundle = panelBundle();
    ASSERT_TRUE(bundle);
    const QString key = QStringLiteral("Billing Code");

    QLocale::setDefault(QLocale(QStringLiteral("ja_JP")));
    EXPECT_EQ(bundle->localizedStringForKey(key, QString()), QStringLiteral("部門コード"));
    EXPECT_EQ(bundle->localizedStringForKey(QStringLiteral("Main Code"), QStringLiteral("x")), QStringLiteral("主コード"));

    QLocale::setDefault(QLocale(QStringLiteral("en_US")));
    EXPECT_EQ(bundle->localizedStringForKey(key, QString()), key);

    QLocale::setDefault(QLocale(QStringLiteral("ja_JP")));
    EXPECT_EQ(bundle->localizedStringForKey(key, QString()), QStringLiteral("部門コード"));
}

TEST_F(LocalizedStrings, FallBackToValueThenKey)
{
    QLocale::setDefault(QLocale(QStringLiteral("ja_JP")));
    const auto bundle = panelBundle();
    ASSERT_TRUE(bundle);
    const QString missing = QStringLiteral("No Such Label");
    EXPECT_EQ(bundle->localizedStringForKey(missing, QString()), missing);
    EXPECT_EQ(bundle->localizedStringForKey(missing, QStringLiteral("Fallback")), QStringLiteral("Fallback"));
    EXPECT_EQ(bundle->localizedStringForKey(QStringLiteral("Billing Code"), QString(), QStringLiteral("NoSuchTable")),
              QStringLiteral("Billing Code"));
    // A bundle without any tables.
    EXPECT_EQ(ownerBundle()->localizedStringForKey(missing, QString()), missing);
}

} // namespace

#include "BundleTest.moc"

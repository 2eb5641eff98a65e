#include "platform/Bundle.h"
#include "platform/DialogTypes.h"
#include "platform/PanelFactory.h"
#include "tests/support/TestSupport.h"

#include <QLineEdit>
#include <QPointer>

#include <gtest/gtest.h>

namespace {

// The host's road through the loaded module, not the linked-in library.
TEST(ModulePanel, HostDrivesThePanelOfTheLoadedModule)
{
    QString error;
    const auto bundle = pde::Bundle::loadPlugIn(pdetest::pluginBuildDirectory() + QStringLiteral("/billingcode.so"), &error);
    ASSERT_TRUE(bundle) << error.toStdString();
    auto *factory = qobject_cast<pde::PanelFactory *>(bundle->principalObject());
    ASSERT_NE(factory, nullptr);
    ASSERT_TRUE(factory->initWithBundle(bundle.get()));

    const auto ppd = pdetest::openPpd(pdetest::samplePpdPath());
    ASSERT_TRUE(ppd);
    auto host = std::make_shared<pdetest::ConstraintTestCallback>(ppd.get());

    const auto pageSetup = factory->PDEPanelsForType(QStringLiteral("page setup"), host);
    ASSERT_TRUE(pageSetup);
    EXPECT_TRUE(pageSetup->empty());

    auto panels = factory->PDEPanelsForType(QString::fromLatin1(pde::kPrintDialogType), host);
    ASSERT_TRUE(panels);
    ASSERT_EQ(panels->size(), 1u);
    pde::Panel &panel = *panels->front();
    EXPECT_EQ(panel.panelName(), QStringLiteral("Billing Code"));
    EXPECT_TRUE(panel.restoreValuesAndReturnError(nullptr));

    QWidget dialog;
    QPointer<QWidget> view = panel.panelView();
    ASSERT_TRUE(view);
    view->setParent(&dialog);
    EXPECT_NE(view->findChild<QLineEdit *>(QStringLiteral("mainCodeText")), nullptr);
    panel.willShow();
    EXPECT_TRUE(panel.saveValuesAndReturnError(nullptr));
    EXPECT_TRUE(panel.shouldPrint());
    panel.summaryInfo();

    panels.reset();
    EXPECT_TRUE(view) << "the host parented the view; it stays the host's";
    EXPECT_EQ(host.use_count(), 1);
}

} // namespace

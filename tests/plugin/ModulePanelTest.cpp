// The loaded module's factory, as a host meets it. What the panel then does
// for the host is driven through pdeprint in the host tests.

#include "platform/Bundle.h"
#include "platform/DialogTypes.h"
#include "platform/PanelFactory.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

TEST(ModulePanel, FactoryOfTheLoadedModuleAnswersOnePanelForThePrintDialogOnly)
{
    QString error;
    const auto bundle = pde::Bundle::loadPlugIn(pdetest::pluginBuildDirectory() + QStringLiteral("/billingcode.so"), &error);
    ASSERT_TRUE(bundle) << error.toStdString();
    auto *factory = qobject_cast<pde::PanelFactory *>(bundle->principalObject());
    ASSERT_TRUE(factory && factory->initWithBundle(bundle.get()));
    auto host = std::make_shared<pdetest::ConstraintTestCallback>();

    EXPECT_EQ(factory->PDEPanelsForType(QStringLiteral("page setup"), host), std::optional<pde::PanelList>(pde::PanelList()));
    auto panels = factory->PDEPanelsForType(QString::fromLatin1(pde::kPrintDialogType), host);
    ASSERT_TRUE(panels && panels->size() == 1);
    EXPECT_EQ(panels->front()->panelKind(), QStringLiteral("jp.co.nurat.print.pde.qr7150k.BillingCodeKind"));
    panels.reset();
    EXPECT_EQ(host.use_count(), 1) << "the panel lets the host's callback go";
}

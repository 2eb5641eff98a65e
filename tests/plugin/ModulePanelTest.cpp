#include "platform/Bundle.h"
#include "platform/DialogTypes.h"
#include "platform/PanelFactory.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
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
    EXPECT_EQ(bundle->bundleIdentifier(), QStringLiteral("jp.co.nurat.print.pde.qr7150k"));
    // Linked in or loaded, and loaded twice: one bundle.
    EXPECT_EQ(pde::Bundle::bundleForClass(&JpCoNuratPrintPdeQr7150kBC::staticMetaObject).get(), bundle.get());
    EXPECT_EQ(pde::Bundle::loadPlugIn(bundle->modulePath(), &error).get(), bundle.get());
    auto *factory = qobject_cast<pde::PanelFactory *>(bundle->principalObject());
    ASSERT_TRUE(factory && factory->initWithBundle(bundle.get()));
    const auto ppd = pdetest::openPpd(pdetest::samplePpdPath());
    ASSERT_TRUE(ppd);
    auto host = std::make_shared<pdetest::ConstraintTestCallback>(ppd.get());

    EXPECT_EQ(factory->PDEPanelsForType(QStringLiteral("page setup"), host), std::optional<pde::PanelList>(pde::PanelList()));
    auto panels = factory->PDEPanelsForType(QString::fromLatin1(pde::kPrintDialogType), host);
    ASSERT_TRUE(panels && panels->size() == 1);
    pde::Panel &panel = *panels->front();
    EXPECT_EQ(panel.panelName(), QStringLiteral("Billing Code"));
    EXPECT_EQ(panel.panelKind(), QStringLiteral("jp.co.nurat.print.pde.qr7150k.BillingCodeKind"));
    EXPECT_EQ(panel.supportedPPDOptionKeys(), (QStringList { QStringLiteral("ARMainCode"), QStringLiteral("ARSubCode") }));
    QWidget dialog;
    QPointer<QWidget> view = panel.panelView();
    ASSERT_TRUE(view);
    view->setParent(&dialog);
    EXPECT_NE(view->findChild<QLineEdit *>(QStringLiteral("mainCodeText")), nullptr);
    panel.willShow();
    EXPECT_TRUE(panel.restoreValuesAndReturnError(nullptr) && panel.saveValuesAndReturnError(nullptr) && panel.shouldPrint());

    panels.reset();
    EXPECT_TRUE(view) << "the host parented the view; it stays the host's";
    EXPECT_EQ(host.use_count(), 1) << "the panel lets the host's callback go";
}

} // namespace

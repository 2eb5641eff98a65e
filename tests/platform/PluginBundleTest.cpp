#include "platform/Bundle.h"
#include "platform/PanelFactory.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

namespace {

using pde::Bundle;

TEST(PluginBundle, LoadsTheModuleAndAnswersItsFactory)
{
    QString error;
    const auto bundle = Bundle::loadPlugIn(pdetest::pluginBuildDirectory() + QStringLiteral("/billingcode.so"), &error);
    ASSERT_TRUE(bundle) << error.toStdString();
    EXPECT_EQ(bundle->bundleIdentifier(), QStringLiteral("jp.co.nurat.print.pde.qr7150k"));
    EXPECT_TRUE(bundle->modulePath().endsWith(QStringLiteral("billingcode.so")));
    auto *factory = qobject_cast<pde::PanelFactory *>(bundle->principalObject());
    ASSERT_NE(factory, nullptr);
    EXPECT_TRUE(factory->initWithBundle(bundle.get()));
    // The panel class names the same bundle, linked in or loaded.
    EXPECT_EQ(Bundle::bundleForClass(&JpCoNuratPrintPdeQr7150kBC::staticMetaObject).get(), bundle.get());
    // Loading again answers the same bundle.
    EXPECT_EQ(Bundle::loadPlugIn(bundle->modulePath(), &error).get(), bundle.get());
}

TEST(PluginBundle, FilesThatAreNoPlugInGiveOneLineReasons)
{
    const QString paths[] = {
        pdetest::testDataPath(QStringLiteral("os-release-10.5")),
        pdetest::pluginBuildDirectory() + QStringLiteral("/no-such-module.so"),
        pdetest::testDataPath(QString()),
    };
    for (const QString &path : paths) {
        QString error;
        EXPECT_FALSE(Bundle::loadPlugIn(path, &error)) << path.toStdString();
        EXPECT_FALSE(error.isEmpty()) << path.toStdString();
        EXPECT_TRUE(error.contains(path)) << error.toStdString();
        EXPECT_FALSE(error.contains(QLatin1Char('\n'))) << error.toStdString();
    }
    EXPECT_FALSE(Bundle::loadPlugIn(paths[0], nullptr));
}

} // namespace

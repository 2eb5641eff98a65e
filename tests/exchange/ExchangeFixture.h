#pragma once

#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "tests/support/OpenSslReference.h"
#include "tests/support/TestSupport.h"

#include <gtest/gtest.h>

#include <memory>

namespace exchangetest {

using pdetest::kTicketPrefix;

// A panel with its view on the sample printer, whose queue has no
// preferences domain yet, under a host with constraint handling.
class PanelOnSamplePrinter : public ::testing::Test
{
protected:
    void SetUp() override
    {
        pdetest::writeDomain(std::nullopt);
        ASSERT_TRUE(ppd);
        createPanel();
    }
    void createPanel()
    {
        panel = std::make_unique<JpCoNuratPrintPdeQr7150kBC>(callback);
        ASSERT_TRUE(panel->panelView());
    }
    // A ticket value by its key without the common prefix.
    std::optional<QString> ticket(const QString &key) const { return callback->settings.value(kTicketPrefix + key); }
    // The plain stamp of the ticket, from its hex text.
    QByteArray stamp() const { return QByteArray::fromHex(ticket(QStringLiteral("spoolTime")).value_or(QString()).toLatin1()); }
    // A code's Base64 copy as the ticket must hold it: encrypted under the stamp's last 16 bytes.
    std::optional<QString> encrypted(const QByteArray &code) const
    {
        return code.isEmpty() ? std::nullopt : std::optional(QString::fromLatin1(pdetest::aes128Ecb(stamp().right(16), code).toBase64()));
    }

    pdetest::PpdPtr ppd = pdetest::openPpd(pdetest::samplePpdPath());
    std::shared_ptr<pdetest::ConstraintTestCallback> callback = std::make_shared<pdetest::ConstraintTestCallback>(ppd.get());
    std::unique_ptr<JpCoNuratPrintPdeQr7150kBC> panel;
};

inline QString hexOf(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex().toUpper());
}

} // namespace exchangetest

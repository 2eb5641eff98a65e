#include "tests/exchange/ExchangeFixture.h"

#include "platform/UserDefaults.h"

#include <QFile>

#include <openssl/evp.h>

namespace exchangetest {

void PanelOnSamplePrinter::SetUp()
{
    writeDomain(std::nullopt);
    ppd = pdetest::openPpd(pdetest::samplePpdPath());
    ASSERT_TRUE(ppd);
    callback = std::make_shared<RecordingCallback>(ppd.get(), QString::fromLatin1(kPrinter));
    panel = std::make_unique<JpCoNuratPrintPdeQr7150kBC>(callback);
    ASSERT_TRUE(panel->panelView());
}

void writeDomain(const std::optional<QVariantMap> &domain)
{
    pde::UserDefaults::resetStandardUserDefaults();
    QFile::remove(pde::UserDefaults::fileNameForDomain(QString::fromLatin1(kDomain)));
    if (!domain)
        return;
    auto defaults = pde::UserDefaults::standardUserDefaults();
    defaults->setPersistentDomain(*domain, QString::fromLatin1(kDomain));
    defaults->synchronize();
    pde::UserDefaults::resetStandardUserDefaults();
}

std::optional<QVariantMap> readDomain()
{
    pde::UserDefaults::resetStandardUserDefaults();
    return pde::UserDefaults::standardUserDefaults()->persistentDomainForName(QString::fromLatin1(kDomain));
}

QVariantMap record(const QVariantMap &domain)
{
    return domain.value(QStringLiteral("Billing Code")).toMap();
}

QByteArray stampOfTicket(const pde::PrintSettings &settings)
{
    return QByteArray::fromHex(settings.value(QStringLiteral("jp.co.nurat.print.PrintSettings.spoolTime"))
                                   .value_or(QString())
                                   .toLatin1());
}

QByteArray decryptTicketCode(const QString &base64, const QByteArray &stamp)
{
    const QByteArray cipher = QByteArray::fromBase64(base64.toLatin1());
    const QByteArray key = stamp.right(16);
    if (key.size() != 16 || cipher.isEmpty() || cipher.size() % 16 != 0)
        return QByteArray();
    QByteArray plain(cipher.size() + 16, '\0');
    EVP_CIPHER_CTX *ctx = EVP_CIPHER_CTX_new();
    int written = 0, last = 0;
    EVP_DecryptInit_ex(ctx, EVP_aes_128_ecb(), nullptr, reinterpret_cast<const unsigned char *>(key.constData()), nullptr);
    EVP_CIPHER_CTX_set_padding(ctx, 0);
    EVP_DecryptUpdate(ctx, reinterpret_cast<unsigned char *>(plain.data()), &written,
                      reinterpret_cast<const unsigned char *>(cipher.constData()), int(cipher.size()));
    EVP_DecryptFinal_ex(ctx, reinterpret_cast<unsigned char *>(plain.data()) + written, &last);
    EVP_CIPHER_CTX_free(ctx);
    plain.truncate(written + last);
    while (plain.endsWith('\0'))
        plain.chop(1);
    return plain;
}

QString hexOf(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex().toUpper());
}

} // namespace exchangetest

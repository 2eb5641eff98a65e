// What the panel costs the host in each call, beside a reference that does the
// same plain work without the panel: the bare view load, reading or writing
// the ticket's keys, OpenSSL's cipher, a bare JSON file replacement.

#include "bench/BenchEnvironment.h"
#include "platform/PrintSettings.h"
#include "platform/UserDefaults.h"
#include "plugin/JpCoNuratPrintPdeQr7150kBC.h"
#include "prefs/PreferenceKeys.h"
#include "settings/TicketKeys.h"
#include "tests/support/TestSupport.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QUiLoader>

#include <openssl/evp.h>

#include <array>
#include <cstring>
#include <memory>

namespace {

constexpr char kPrinter[] = "office";
constexpr char kMainCode[] = "1234567890ABCDEF1234";
constexpr char kSubCode[] = "SUB-0042";
const char *const kTicketKeys[] = { kSpoolTimeKey,     kMainCodeCBKey, kMainCodeTicketKey, kMainCodeCipherKey,
                                    kSubCodeCBKey,     kSubCodeTicketKey, kSubCodeCipherKey, kHoldButtonTicketKey };

QString domainName()
{
    return QString::fromLatin1(kPreferenceDomainPrefix) + QString::fromLatin1(kPrinter);
}

// The record a host finds after a first print with both codes on.
QVariantMap storedRecord()
{
    QVariantMap record;
    record.insert(QString::fromLatin1(kModelNameKey), QStringLiteral("Nurat QR7150K"));
    record.insert(QString::fromLatin1(kReleaseNumberKey), QString::fromLatin1(kReleaseNumber));
    record.insert(QString::fromLatin1(kMainCodeCheckBoxKey), true);
    record.insert(QString::fromLatin1(kMainCodeKey), QString::fromLatin1(kMainCode));
    record.insert(QString::fromLatin1(kSubCodeCheckBoxKey), true);
    record.insert(QString::fromLatin1(kSubCodeKey), QString::fromLatin1(kSubCode));
    record.insert(QString::fromLatin1(kHoldButtonKey), 0);
    return record;
}

// Writes the printer's domain, or removes it.
void setDomainExists(bool exists)
{
    pde::UserDefaults::resetStandardUserDefaults();
    QFile::remove(pde::UserDefaults::fileNameForDomain(domainName()));
    if (!exists)
        return;
    auto defaults = pde::UserDefaults::standardUserDefaults();
    defaults->setPersistentDomain({ { QString::fromLatin1(kRecordKey), storedRecord() } }, domainName());
    defaults->synchronize();
    pde::UserDefaults::resetStandardUserDefaults();
}

// The sample printer's PPD and a host with constraint handling, as pdeprint gives them.
struct Host
{
    Host()
        : ppd(pdetest::openPpd(pdetest::samplePpdPath()))
        , callback(std::make_shared<pdetest::ConstraintTestCallback>(ppd.get(), QString::fromLatin1(kPrinter)))
    {
    }
    pdetest::PpdPtr ppd;
    std::shared_ptr<pdetest::ConstraintTestCallback> callback;
};

// A panel with its view and both codes switched on and filled.
std::unique_ptr<JpCoNuratPrintPdeQr7150kBC> filledPanel(const Host &host)
{
    auto panel = std::make_unique<JpCoNuratPrintPdeQr7150kBC>(host.callback);
    panel->panelView();
    panel->restoreValuesAndReturnError(nullptr);
    panel->mainCodeCB->click();
    panel->mainCodeText->setText(QString::fromLatin1(kMainCode));
    panel->subCodeCB->click();
    panel->subCodeText->setText(QString::fromLatin1(kSubCode));
    return panel;
}

// Print settings holding all eight keys of a ticket, written by the panel itself.
pde::PrintSettings fullTicket()
{
    Host host;
    filledPanel(host)->saveValuesAndReturnError(nullptr);
    pde::PrintSettings ticket = host.callback->settings;
    for (const char *key : kTicketKeys) {
        if (!ticket.value(QString::fromLatin1(key)))
            qFatal("the panel's ticket lacks %s", key);
    }
    return ticket;
}

// --- creation with view ---------------------------------------------------

void panelWithView(benchmark::State &state)
{
    setDomainExists(state.range(0) != 0);
    Host host;
    for (auto _ : state) {
        auto panel = std::make_unique<JpCoNuratPrintPdeQr7150kBC>(host.callback);
        QWidget *view = panel->panelView();
        benchmark::DoNotOptimize(view);
        delete view; // the host owns the view once it has it
    }
}

void bareView(benchmark::State &state)
{
    QFile description(QStringLiteral(":/jp.co.nurat.print.pde.qr7150k/BillingCode.ui"));
    if (!description.open(QIODevice::ReadOnly)) {
        state.SkipWithError("no view description in the resources");
        return;
    }
    QUiLoader loader;
    for (auto _ : state) {
        description.seek(0);
        QWidget *view = loader.load(&description);
        benchmark::DoNotOptimize(view);
        delete view;
    }
}

// As the bundle loads a view: the description opened from the resources and a
// loader made for each view, but no owner, outlets, actions or panel.
void bareViewFreshLoader(benchmark::State &state)
{
    const QString path = QStringLiteral(":/jp.co.nurat.print.pde.qr7150k/BillingCode.ui");
    for (auto _ : state) {
        QFile description(path);
        description.open(QIODevice::ReadOnly);
        QUiLoader loader;
        QWidget *view = loader.load(&description);
        benchmark::DoNotOptimize(view);
        delete view;
    }
}

// --- restore ----------------------------------------------------------------

void panelRestore(benchmark::State &state)
{
    setDomainExists(false);
    Host host;
    host.callback->settings = fullTicket();
    auto panel = std::make_unique<JpCoNuratPrintPdeQr7150kBC>(host.callback);
    panel->panelView();
    for (auto _ : state)
        panel->restoreValuesAndReturnError(nullptr);
    if (panel->mainCodeText->text() != QLatin1String(kMainCode))
        state.SkipWithError("the restore did not fill the main code");
    delete panel->panelView();
}

void readTicketKeys(benchmark::State &state)
{
    const pde::PrintSettings ticket = fullTicket();
    for (auto _ : state) {
        for (const char *key : kTicketKeys) {
            QString value;
            PMPrintSettingsGetValue(&ticket, QString::fromLatin1(key), &value);
            benchmark::DoNotOptimize(value);
        }
    }
}

// --- save -------------------------------------------------------------------

// Arg 1: a stamped ticket (a second save); arg 0: the stamp is made anew (the first save).
void panelSave(benchmark::State &state)
{
    const bool stamped = state.range(0) != 0;
    setDomainExists(false);
    Host host;
    auto panel = filledPanel(host);
    panel->saveValuesAndReturnError(nullptr);
    const QString stampKey = QString::fromLatin1(kSpoolTimeKey);
    for (auto _ : state) {
        if (!stamped)
            host.callback->settings.setValue(stampKey, std::nullopt);
        panel->saveValuesAndReturnError(nullptr);
    }
    if (host.callback->settings.keys().size() != qsizetype(std::size(kTicketKeys)))
        state.SkipWithError("the save did not write a full ticket");
    delete panel->panelView();
}

// Encrypts a code with EVP AES-128-ECB without padding, as Base64 text.
QString evpCipherText(const QByteArray &code, const unsigned char *key)
{
    std::array<unsigned char, 256> plain {};
    std::memcpy(plain.data(), code.constData(), size_t(code.size()));
    const int length = (int(code.size()) + 15) & ~15;
    std::array<unsigned char, 256> cipher {};
    std::array<unsigned char, 352> text {};
    EVP_CIPHER_CTX *context = EVP_CIPHER_CTX_new();
    EVP_EncryptInit_ex(context, EVP_aes_128_ecb(), nullptr, key, nullptr);
    EVP_CIPHER_CTX_set_padding(context, 0);
    int written = 0;
    EVP_EncryptUpdate(context, cipher.data(), &written, plain.data(), length);
    EVP_CIPHER_CTX_free(context);
    EVP_EncodeBlock(text.data(), cipher.data(), written);
    return QString::fromLatin1(reinterpret_cast<const char *>(text.data()));
}

void evpAndWriteKeys(benchmark::State &state)
{
    const pde::PrintSettings ticket = fullTicket();
    const QByteArray stamp = QByteArray::fromHex(ticket.value(QString::fromLatin1(kSpoolTimeKey))->toLatin1());
    const auto *key = reinterpret_cast<const unsigned char *>(stamp.constData() + stamp.size() - 16);
    const QByteArray mainCode(kMainCode);
    const QByteArray subCode(kSubCode);
    pde::PrintSettings settings;
    for (auto _ : state) {
        const QString mainCipher = evpCipherText(mainCode, key);
        const QString subCipher = evpCipherText(subCode, key);
        PMPrintSettingsSetValue(&settings, QString::fromLatin1(kSpoolTimeKey), QString::fromLatin1(stamp.toHex().toUpper()), false);
        PMPrintSettingsSetValue(&settings, QString::fromLatin1(kMainCodeCBKey), QStringLiteral("1"), false);
        PMPrintSettingsSetValue(&settings, QString::fromLatin1(kMainCodeTicketKey), QString::fromLatin1(mainCode.toHex().toUpper()), false);
        PMPrintSettingsSetValue(&settings, QString::fromLatin1(kMainCodeCipherKey), mainCipher, false);
        PMPrintSettingsSetValue(&settings, QString::fromLatin1(kSubCodeCBKey), QStringLiteral("1"), false);
        PMPrintSettingsSetValue(&settings, QString::fromLatin1(kSubCodeTicketKey), QString::fromLatin1(subCode.toHex().toUpper()), false);
        PMPrintSettingsSetValue(&settings, QString::fromLatin1(kSubCodeCipherKey), subCipher, false);
        PMPrintSettingsSetValue(&settings, QString::fromLatin1(kHoldButtonTicketKey), QStringLiteral("0"), false);
    }
    if (settings.value(QString::fromLatin1(kMainCodeCipherKey)) != ticket.value(QString::fromLatin1(kMainCodeCipherKey)))
        state.SkipWithError("the reference's cipher text differs from the panel's");
}

// --- shouldPrint --------------------------------------------------------------

void panelShouldPrint(benchmark::State &state)
{
    setDomainExists(true);
    Host host;
    auto panel = filledPanel(host);
    panel->mainCodeText->setText(QStringLiteral("7150"));
    panel->saveValuesAndReturnError(nullptr); // restore and save are done: shouldPrint only stores
    for (auto _ : state)
        panel->shouldPrint();
    if (panel->prefMainCodeStringRef.toString() != QLatin1String("7150"))
        state.SkipWithError("shouldPrint did not store the main code");
    delete panel->panelView();
}

void bareJsonWrite(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("record.json"));
    QVariantMap record = storedRecord();
    int round = 0;
    for (auto _ : state) {
        // A value that changes each time, as a save changes the record.
        record.insert(QString::fromLatin1(kHoldButtonKey), ++round & 1);
        const QJsonObject domain { { QString::fromLatin1(kRecordKey), QJsonObject::fromVariantMap(record) } };
        QSaveFile file(path); // written beside, flushed to disk, renamed
        file.open(QIODevice::WriteOnly);
        file.write(QJsonDocument(domain).toJson());
        file.commit();
    }
}

} // namespace

BENCHMARK(panelWithView)->Name("create+panelView/panel,no_domain")->Arg(0)->Unit(benchmark::kMicrosecond);
BENCHMARK(panelWithView)->Name("create+panelView/panel,domain")->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(bareView)->Name("create+panelView/ref:QUiLoader_same_ui")->Unit(benchmark::kMicrosecond);
BENCHMARK(bareViewFreshLoader)->Name("create+panelView/ref:QUiLoader_same_ui,new_loader_and_file")
    ->Unit(benchmark::kMicrosecond);

BENCHMARK(panelRestore)->Name("restore/panel,full_ticket")->Unit(benchmark::kMicrosecond);
BENCHMARK(readTicketKeys)->Name("restore/ref:read_8_keys")->Unit(benchmark::kMicrosecond);

BENCHMARK(panelSave)->Name("save/panel,stamped_ticket")->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(panelSave)->Name("save/panel,new_stamp")->Arg(0)->Unit(benchmark::kMicrosecond);
BENCHMARK(evpAndWriteKeys)->Name("save/ref:EVP_ecb+EncodeBlock_x2+write_8_keys")->Unit(benchmark::kMicrosecond);

BENCHMARK(panelShouldPrint)->Name("shouldPrint/panel,store+reload")->Unit(benchmark::kMicrosecond);
BENCHMARK(bareJsonWrite)->Name("shouldPrint/ref:QJsonDocument_record+QSaveFile")->Unit(benchmark::kMicrosecond);

// The panel needs a QApplication and writes preferences: both are set up
// here, offscreen and in a private folder, before any benchmark runs.
int main(int argc, char **argv)
{
    BenchEnvironment environment;
    QApplication app(argc, argv);
    return runBenchmarks(argc, argv);
}

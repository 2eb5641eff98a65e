// Real jobs through a CUPS scheduler of the test's own: the ticket reaches the
// job's attributes, kept codes come back on the next job, bad input sends nothing.

#include "tests/host/PdeprintProcess.h"
#include "tests/support/TestSupport.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cups/cups.h>
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace hosttest;

namespace {

constexpr char kQueue[] = "qr7150k";
const QString kPrefix = QStringLiteral("jp.co.nurat.print.PrintSettings.");

int freeLoopbackPort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    const bool bound = ::bind(fd, reinterpret_cast<sockaddr *>(&address), length) == 0
        && ::getsockname(fd, reinterpret_cast<sockaddr *>(&address), &length) == 0;
    ::close(fd);
    return bound ? ntohs(address.sin_port) : 0;
}

// One scheduler for the test process on a free loopback port, every file in a
// temporary folder, with the queue. Stopped after the last test however the
// tests went, and with the test process should that die first.
class PrivateScheduler : public ::testing::Environment
{
public:
    void SetUp() override { error = start(); }
    void TearDown() override
    {
        cupsd->terminate();
        cupsd->waitForFinished(10000);
        cupsd.reset(); // kills it if it did not stop
    }

    QString error;

private:
    QString start()
    {
        cupsd = std::make_unique<QProcess>();
        const int port = freeLoopbackPort();
        if (!root.isValid() || port == 0)
            return QStringLiteral("no temporary folder or free port");
        for (const char *folder : { "etc/ppd", "spool/tmp", "cache", "state", "log" })
            QDir().mkpath(root.filePath(folder));
        auto write = [this](const char *name, const QString &text) {
            QFile file(root.filePath(name));
            return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) > 0;
        };
        auto log = [this] {
            QFile file(root.filePath("log/error_log"));
            return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll().right(4000)) : QString();
        };
        // Root hands filters to lp, which must reach the spool; anyone else runs them as themselves.
        const bool asRoot = ::geteuid() == 0;
        ::chmod(QFile::encodeName(root.path()).constData(), 0755);
        const passwd *user = ::getpwuid(::geteuid());
        const group *userGroup = ::getgrgid(::getegid());
        const QString userName = QString::fromLocal8Bit(asRoot ? "lp" : user ? user->pw_name : "nobody");
        const QString groupName = QString::fromLocal8Bit(asRoot ? "lp" : userGroup ? userGroup->gr_name : "nogroup");
        write("cupsd.conf", QStringLiteral("LogLevel info\nListen 127.0.0.1:%1\nListen %2/cups.sock\nServerName 127.0.0.1\n"
                                           "Browsing No\nWebInterface No\nDefaultAuthType None\nJobRetryLimit 0\n"
                                           "<Location />\n  Order allow,deny\n  Allow all\n</Location>\n"
                                           "<Policy default>\n  <Limit All>\n    Order deny,allow\n  </Limit>\n</Policy>\n")
                                .arg(port).arg(root.path()));
        write("cups-files.conf", QStringLiteral("ServerRoot %1/etc\nRequestRoot %1/spool\nTempDir %1/spool/tmp\n"
                                                "CacheDir %1/cache\nStateDir %1/state\nErrorLog %1/log/error_log\n"
                                                "AccessLog %1/log/access_log\nPageLog %1/log/page_log\nFileDevice Yes\n"
                                                "User %2\nGroup %3\nSystemGroup %4\nSandboxing Relaxed\n")
                                     .arg(root.path(), userName, groupName, asRoot ? QStringLiteral("root") : groupName));

        cupsd->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        cupsd->setStandardInputFile(QProcess::nullDevice());
        cupsd->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
        cupsd->start("/usr/sbin/cupsd", { "-f", "-c", root.filePath("cupsd.conf"), "-s", root.filePath("cups-files.conf") });
        const QByteArray server = QStringLiteral("127.0.0.1:%1").arg(port).toUtf8();
        qputenv("CUPS_SERVER", server); // for pdeprint and lpadmin
        cupsSetServer(server.constData());
        for (int attempt = 0; attempt < 100 && cupsd->waitForStarted(5000); ++attempt) {
            if (http_t *http = httpConnect2("127.0.0.1", port, nullptr, AF_INET, HTTP_ENCRYPTION_NEVER, 1, 200, nullptr)) {
                httpClose(http);
                const QStringList lpadmin { "-p", kQueue, "-E", "-v", "file:/dev/null", "-P", pdetest::samplePpdPath() };
                return QProcess::execute("/usr/sbin/lpadmin", lpadmin) == 0 ? QString() : "lpadmin failed:\n" + log();
            }
            ::usleep(100000);
        }
        return QStringLiteral("cupsd did not come up on %1:\n%2").arg(QString::fromUtf8(server), log());
    }

    QTemporaryDir root;
    std::unique_ptr<QProcess> cupsd;
};

PrivateScheduler *const scheduler =
    static_cast<PrivateScheduler *>(::testing::AddGlobalTestEnvironment(new PrivateScheduler));

// The job's attributes as text, read back over IPP; empty when there is no such job.
QMap<QString, QString> jobAttributes(int jobId)
{
    ipp_t *request = ippNewRequest(IPP_OP_GET_JOB_ATTRIBUTES);
    const QByteArray uri = QByteArray("ipp://127.0.0.1/jobs/") + QByteArray::number(jobId);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "job-uri", nullptr, uri.constData());
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
    ipp_t *response = cupsDoRequest(CUPS_HTTP_DEFAULT, request, "/");
    QMap<QString, QString> attributes;
    for (ipp_attribute_t *attribute = ippFirstAttribute(response); attribute; attribute = ippNextAttribute(response)) {
        char value[1024] = "";
        if (ippGetName(attribute) && ippGetGroupTag(attribute) == IPP_TAG_JOB) {
            ippAttributeString(attribute, value, sizeof(value));
            attributes.insert(ippGetName(attribute), QString::fromUtf8(value));
        }
    }
    ippDelete(response);
    return attributes;
}

int jobCount()
{
    cups_job_t *jobs = nullptr;
    const int count = cupsGetJobs2(CUPS_HTTP_DEFAULT, &jobs, nullptr, 0, CUPS_WHICHJOBS_ALL);
    cupsFreeJobs(count, jobs);
    return count;
}

class JobsThroughCups : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(scheduler->error.isEmpty()) << qPrintable(scheduler->error);
        qputenv("XDG_CONFIG_HOME", config.path().toUtf8()); // codes kept in one test stay out of the next
    }

    // Prints the sample held on the queue, so that no filter runs; answers the job's id, 0 on failure.
    int print(const QStringList &extra)
    {
        const QStringList held { "--no-dialog", "--printer", kQueue, "-o", "job-hold-until=indefinite" };
        const RunResult result = runPdeprint(held + extra + QStringList { sampleText() });
        EXPECT_EQ(result.exitCode, 0) << qPrintable(result.err);
        const QString id =
            QRegularExpression(QStringLiteral("request id is %1-(\\d+)").arg(kQueue)).match(result.out).captured(1);
        EXPECT_FALSE(id.isEmpty()) << qPrintable(result.out);
        return id.toInt();
    }

    QTemporaryDir config;
};

} // namespace

TEST_F(JobsThroughCups, TheTicketArrivesAsJobAttributesAndKeptCodesFillTheNextJob)
{
    const int first = print({ "--click", "mainCodeCB", "--type", "mainCodeText=77AB", "--click", "subCodeCB", "--type",
                              "subCodeText=9", "--click", "holdButton", "-o", "ARMainCode=On", "--copies", "2" });
    ASSERT_GT(first, 0);
    const QMap<QString, QString> ticket = jobAttributes(first);
    EXPECT_EQ(ticket.value("copies"), "2");
    EXPECT_FALSE(ticket.contains("ARMainCode")) << "the panel handles that option itself";
    const std::pair<const char *, const char *> expected[] = {
        { "bc.mainCodecb", "1" }, { "bc.mainCode", "37374142" }, { "bc.mainCode2", "[A-Za-z0-9+/]+=*" },
        { "bc.subCodecb", "1" }, { "bc.subCode", "39" }, { "bc.subCode2", "[A-Za-z0-9+/]+=*" },
        { "bc.holdButton", "1" }, { "spoolTime", "[0-9A-F]{16,}" }, // hexadecimal text keeping every digit
    };
    for (const auto &[key, pattern] : expected) {
        const QString value = ticket.value(kPrefix + key);
        EXPECT_TRUE(QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(value).hasMatch())
            << key << " = " << qPrintable(value);
    }

    const QMap<QString, QString> next = jobAttributes(print({}));
    for (const char *key : { "bc.mainCodecb", "bc.mainCode", "bc.subCodecb", "bc.subCode", "bc.holdButton" })
        EXPECT_EQ(next.value(kPrefix + key), ticket.value(kPrefix + key)) << key;
}

TEST_F(JobsThroughCups, BadQueuesAndChoicesSendNothing)
{
    const int jobsBefore = jobCount();
    const struct { const char *what; QStringList arguments; const char *reasonPart; } cases[] = {
        { "unknown printer", { "--printer", "nosuchqueue" }, "unknown printer" },
        { "conflicting PPD choice", { "--printer", kQueue, "-o", "ARSubCode=On" }, "conflict" },
        { "locked field", { "--printer", kQueue, "--click", "holdButton", "--type", "mainCodeText=1" }, "mainCodeText" },
    };
    for (const auto &c : cases) {
        const RunResult result = runPdeprint(QStringList { "--no-dialog" } + c.arguments + QStringList { sampleText() });
        EXPECT_GT(result.exitCode, 0) << c.what;
        EXPECT_EQ(result.err.count('\n'), 1) << c.what << ": " << qPrintable(result.err);
        EXPECT_TRUE(result.err.contains(c.reasonPart)) << c.what << ": " << qPrintable(result.err);
    }
    EXPECT_EQ(jobCount(), jobsBefore);
}

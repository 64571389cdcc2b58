#include "PostgresServer.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QUrl>
#include <algorithm>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tillbook::test {

namespace {

// The newest installed server's programs.
QString findServerBinaries() {
    QDir root(QStringLiteral("/usr/lib/postgresql"));
    QStringList versions = root.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    std::sort(versions.begin(), versions.end(),
              [](const QString& a, const QString& b) { return a.toInt() > b.toInt(); });
    for (const QString& version : versions)
        if (QFile::exists(root.filePath(version + QStringLiteral("/bin/initdb"))))
            return root.filePath(version + QStringLiteral("/bin"));
    return {};
}

int freeLoopbackPort() {
    // A port the kernel hands out; free again by the time the server starts (a clash fails the start).
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    if (fd < 0)
        return 0;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    int port = 0;
    if (::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0)
        port = ntohs(address.sin_port);
    ::close(fd);
    return port;
}

} // namespace

PostgresServer& PostgresServer::shared() {
    static PostgresServer server;
    return server;
}

PostgresServer::PostgresServer() {
    m_running = start();
}

PostgresServer::~PostgresServer() {
    if (!m_running)
        return;
    QString output;
    runServerTool("pg_ctl", {"-D", m_dir.filePath("data"), "-m", "immediate", "-w", "stop"}, output);
}

QString PostgresServer::urlTemplate() const {
    return QStringLiteral("postgresql://postgres@127.0.0.1:%1/tillbook_{id}").arg(m_port);
}

QString PostgresServer::urlTemplateAs(const QString& login, const QString& password) const {
    return QStringLiteral("postgresql://%1:%2@127.0.0.1:%3/tillbook_{id}")
        .arg(QString::fromLatin1(QUrl::toPercentEncoding(login)),
             QString::fromLatin1(QUrl::toPercentEncoding(password)))
        .arg(m_port);
}

bool PostgresServer::runServerTool(const QString& tool, const QStringList& arguments, QString& output) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    const QString program = m_binDir + u'/' + tool;
    if (m_asPostgresUser)
        process.start("runuser", QStringList{"-u", "postgres", "--", program} + arguments);
    else
        process.start(program, arguments);
    if (!process.waitForFinished(120000)) {
        output = process.errorString();
        return false;
    }
    output = QString::fromLocal8Bit(process.readAll());
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

bool PostgresServer::start() {
    const auto failed = [this](const QString& why) {
        m_failure = why;
        return false;
    };
    m_binDir = findServerBinaries();
    if (m_binDir.isEmpty())
        return failed(QStringLiteral("no PostgreSQL server binaries under /usr/lib/postgresql/*/bin"));
    // The server refuses to run as root: run it as postgres, in a folder that user may write.
    m_asPostgresUser = ::geteuid() == 0;
    if (m_asPostgresUser)
        ::chmod(QFile::encodeName(m_dir.path()).constData(), 0777);
    const QString data = m_dir.filePath(QStringLiteral("data"));
    QString output;
    if (!runServerTool("initdb", {"-D", data, "-U", "postgres", "-A", "trust", "-E", "UTF8", "--no-sync"},
                       output))
        return failed(QStringLiteral("initdb failed: ") + output);
    // The owner (postgres) is trusted over loopback; every other role, the companies' clerks' logins,
    // signs in with its password, checked by SCRAM as on a real server.
    QFile hba(data + QStringLiteral("/pg_hba.conf"));
    if (!hba.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        hba.write("local all all trust\nhost all postgres 127.0.0.1/32 trust\n"
                  "host all all 127.0.0.1/32 scram-sha-256\n") < 0)
        return failed(QStringLiteral("cannot write pg_hba.conf: ") + hba.errorString());
    hba.close();
    m_port = freeLoopbackPort();
    const QString options = QStringLiteral("-p %1 -c listen_addresses=127.0.0.1 -k %2 -c fsync=off")
                                .arg(m_port)
                                .arg(m_dir.path());
    if (!runServerTool(
            "pg_ctl", {"-D", data, "-o", options, "-l", m_dir.filePath("server.log"), "-w", "start"}, output))
        return failed(QStringLiteral("pg_ctl start failed: ") + output);
    return true;
}

} // namespace tillbook::test

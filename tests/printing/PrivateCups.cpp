#include "PrivateCups.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QThread>

namespace tillbook::test {

namespace {

constexpr const char* Backend = R"(#!/bin/sh
# Copies each job into the folder named by the device URI, as job-ID.prn.
if [ $# -eq 0 ]; then echo 'direct receiptfile "Unknown" "Receipt file"'; exit 0; fi
dir="${DEVICE_URI#receiptfile:}"
if [ -n "$6" ]; then cat "$6" > "$dir/job-$1.part"; else cat > "$dir/job-$1.part"; fi
chmod 644 "$dir/job-$1.part"
mv "$dir/job-$1.part" "$dir/job-$1.prn"
)";

bool writeFile(const QString& path, const QByteArray& text, QFile::Permissions permissions = {}) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        return false;
    file.close();
    return permissions == QFile::Permissions() || file.setPermissions(permissions);
}

constexpr QFile::Permissions Open = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                    QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
constexpr QFile::Permissions Everyone = Open | QFile::WriteGroup | QFile::WriteOther;

} // namespace

PrivateCups::PrivateCups() : m_savedServer(qgetenv("CUPS_SERVER")) {
    const QString cupsd =
        QStandardPaths::findExecutable(QStringLiteral("cupsd"), {"/usr/sbin", "/usr/local/sbin"});
    const QString socket = m_dir.filePath("cups.sock");
    if (cupsd.isEmpty() || QStandardPaths::findExecutable(QStringLiteral("lpadmin")).isEmpty())
        m_unavailable = QStringLiteral("CUPS (cupsd, lpadmin) is not installed");
    else if (!m_dir.isValid() || !writeConfiguration())
        m_unavailable = QStringLiteral("the scheduler's folder could not be made");
    if (!m_unavailable.isEmpty())
        return;
    m_cupsd.setProcessChannelMode(QProcess::MergedChannels);
    m_cupsd.start(cupsd, {"-f", "-c", m_dir.filePath("cupsd.conf"), "-s", m_dir.filePath("cups-files.conf")});
    for (int i = 0; i < 100 && m_cupsd.state() != QProcess::NotRunning && !QFileInfo::exists(socket); ++i)
        QThread::msleep(100);
    if (!QFileInfo::exists(socket))
        m_unavailable = QStringLiteral("cupsd did not open its socket: ") + m_cupsd.errorString() + u' ' +
                        QString::fromUtf8(m_cupsd.readAll());
    else
        qputenv("CUPS_SERVER", socket.toUtf8());
}

PrivateCups::~PrivateCups() {
    if (m_cupsd.state() != QProcess::NotRunning) {
        m_cupsd.terminate();
        if (!m_cupsd.waitForFinished(10000))
            m_cupsd.kill();
        m_cupsd.waitForFinished(5000);
    }
    if (m_savedServer.isEmpty())
        qunsetenv("CUPS_SERVER");
    else
        qputenv("CUPS_SERVER", m_savedServer);
}

bool PrivateCups::writeConfiguration() {
    const QDir dir(m_dir.path());
    // The scheduler hands jobs to its backends as the user "lp": the folders must let it through.
    if (!QFile::setPermissions(dir.path(), Open))
        return false;
    for (const char* sub : {"spool", "cache", "state", "out", "tmp", "bin/backend"})
        if (!dir.mkpath(sub))
            return false;
    for (const char* sub : {"out", "tmp"})
        QFile::setPermissions(dir.filePath(sub), Everyone);
    QFile::setPermissions(dir.filePath("bin"), Open);
    QFile::setPermissions(dir.filePath("bin/backend"), Open);
    for (const char* sub : {"filter", "daemon", "notifier", "monitor", "driver", "cgi-bin"})
        if (QFileInfo::exists(QStringLiteral("/usr/lib/cups/") + sub))
            QFile::link(QStringLiteral("/usr/lib/cups/") + sub, dir.filePath(QStringLiteral("bin/") + sub));

    const QByteArray root = dir.path().toUtf8();
    const QByteArray conf =
        "Listen " + root +
        "/cups.sock\nLogLevel warn\nBrowsing No\nWebInterface No\n"
        "DefaultAuthType None\n<Location />\n  Order allow,deny\n  Allow all\n</Location>\n"
        "<Location /admin>\n  Order allow,deny\n  Allow all\n</Location>\n"
        "<Policy default>\n  <Limit All>\n    Order deny,allow\n  </Limit>\n</Policy>\n";
    const QByteArray files = "ServerRoot " + root + "\nRequestRoot " + root + "/spool\nTempDir " + root +
                             "/tmp\nCacheDir " + root + "/cache\nStateDir " + root + "/state\nErrorLog " +
                             root + "/error_log\nAccessLog " + root + "/access_log\nPageLog " + root +
                             "/page_log\nDataDir /usr/share/cups\nServerBin " + root + "/bin\n";
    return writeFile(dir.filePath("cupsd.conf"), conf) && writeFile(dir.filePath("cups-files.conf"), files) &&
           writeFile(dir.filePath("bin/backend/receiptfile"), Backend, Open);
}

bool PrivateCups::admin(const QStringList& arguments) {
    QProcess lpadmin;
    lpadmin.setProcessChannelMode(QProcess::MergedChannels);
    lpadmin.start(QStringLiteral("lpadmin"), QStringList{"-h", m_dir.filePath("cups.sock")} + arguments);
    if (lpadmin.waitForFinished(30000) && lpadmin.exitCode() == 0)
        return true;
    m_unavailable = QStringLiteral("lpadmin %1 failed: %2")
                        .arg(arguments.join(u' '), QString::fromUtf8(lpadmin.readAll()).trimmed());
    return false;
}

bool PrivateCups::addQueue(const QString& name, bool makeDefault) {
    const QString out = m_dir.filePath(QStringLiteral("out/") + name);
    QDir().mkpath(out);
    QFile::setPermissions(out, Everyone);
    if (!admin({"-p", name, "-E", "-v", deviceUri(name)}))
        return false;
    return !makeDefault || admin({"-d", name});
}

QString PrivateCups::deviceUri(const QString& name) const {
    return QStringLiteral("receiptfile:") + m_dir.filePath(QStringLiteral("out/") + name);
}

QStringList PrivateCups::jobFiles(const QString& name) const {
    const QDir out(m_dir.filePath(QStringLiteral("out/") + name));
    QStringList files;
    for (const QString& file : out.entryList({"job-*.prn"}, QDir::Files, QDir::Time | QDir::Reversed))
        files << out.filePath(file);
    return files;
}

bool PrivateCups::waitForJobs(const QString& name, int count, int seconds) const {
    for (int i = 0; i < seconds * 10; ++i) {
        if (jobFiles(name).size() >= count)
            return true;
        QThread::msleep(100);
    }
    return false;
}

} // namespace tillbook::test

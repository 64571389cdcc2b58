#pragma once

// A CUPS scheduler of the test's own, on a socket in a temporary folder, with raw queues whose backend copies
// every job into a folder per queue. While it runs, CUPS_SERVER points the program's printing at it; it must
// be started before the first printer is looked up.

#include <QDir>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace tillbook::test {

class PrivateCups {
public:
    PrivateCups();
    ~PrivateCups();
    PrivateCups(const PrivateCups&) = delete;
    PrivateCups& operator=(const PrivateCups&) = delete;

    // Empty when the scheduler runs; otherwise why it does not (for GTEST_SKIP).
    QString unavailableReason() const { return m_unavailable; }

    // Adds an enabled raw queue; returns false (and says why in unavailableReason) when lpadmin fails.
    bool addQueue(const QString& name, bool makeDefault);
    QString deviceUri(const QString& name) const;
    // The jobs that queue's backend has finished writing, oldest first.
    QStringList jobFiles(const QString& name) const;
    // Waits up to `seconds` for the queue's job count to reach `count`.
    bool waitForJobs(const QString& name, int count, int seconds = 30) const;

private:
    bool writeConfiguration();
    bool admin(const QStringList& arguments);

    QTemporaryDir m_dir;
    QProcess m_cupsd;
    QString m_unavailable;
    QByteArray m_savedServer;
};

} // namespace tillbook::test

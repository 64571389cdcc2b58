#pragma once

// A throwaway PostgreSQL server for the tests of one run: initdb into a temporary folder, started on a
// free loopback port, stopped and removed at exit. Started only when a test first asks for it. The role
// postgres (the companies' owner) is trusted; every other login is checked by SCRAM-SHA-256.

#include <QString>
#include <QTemporaryDir>

namespace tillbook::test {

class PostgresServer {
public:
    static PostgresServer& shared();
    ~PostgresServer();

    bool isRunning() const { return m_running; }
    QString failure() const { return m_failure; } // why it is not running
    // postgresql://postgres@127.0.0.1:PORT/tillbook_{id}
    QString urlTemplate() const;
    // The same as `login` with `password`: what a clerk who knows the server, and their own password, has.
    QString urlTemplateAs(const QString& login, const QString& password) const;

private:
    PostgresServer();
    bool start();
    bool runServerTool(const QString& tool, const QStringList& arguments, QString& output);

    QTemporaryDir m_dir;
    QString m_binDir;
    bool m_asPostgresUser = false;
    int m_port = 0;
    bool m_running = false;
    QString m_failure;
};

} // namespace tillbook::test

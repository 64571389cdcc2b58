#pragma once

// One sample company per size, shared by every benchmark of a run: made once into a cache folder (it takes a
// while at 100,000 customers) and copied into a temporary folder for the run, so that what the benchmarks
// write never reaches the cached file. The size comes from the command line:
//   --customers=N (default 10000), --documents=M (default ten per customer), --cache=DIR.
// One customer gets a thousand more open documents, for the open-document list.

#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/SampleCompany.h"
#include "ledger/engine/Transaction.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdio>
#include <cstring>

namespace tillbook::bench {

constexpr int ExtraDocuments = 1000;

struct SizeOptions {
    int customers = 10000;
    int documents = 0; // 0 = ten per customer
    QString cache;
};

inline SizeOptions& sizeOptions() {
    static SizeOptions options;
    return options;
}

// Takes this file's options out of argv, leaving the rest for Google Benchmark.
inline void takeSizeOptions(int& argc, char** argv) {
    SizeOptions& options = sizeOptions();
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        const QString arg = QString::fromLocal8Bit(argv[i]);
        if (arg.startsWith(u"--customers="))
            options.customers = arg.mid(12).toInt();
        else if (arg.startsWith(u"--documents="))
            options.documents = arg.mid(12).toInt();
        else if (arg.startsWith(u"--cache="))
            options.cache = arg.mid(8);
        else
            argv[kept++] = argv[i];
    }
    argc = kept;
    if (options.documents <= 0)
        options.documents = options.customers * 10;
    if (options.cache.isEmpty())
        options.cache = QDir::temp().filePath(QStringLiteral("tillbook-bench"));
}

// A raw connection to the run's copy, for the floors.
inline QSqlDatabase rawConnection(const QString& path) {
    const QString name = QStringLiteral("bench-floor");
    if (!QSqlDatabase::contains(name)) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        db.open();
        QSqlQuery(db).exec(QStringLiteral("PRAGMA journal_mode=WAL"));
        QSqlQuery(db).exec(QStringLiteral("PRAGMA synchronous=NORMAL"));
        QSqlQuery(db).exec(QStringLiteral("PRAGMA busy_timeout=10000"));
    }
    return QSqlDatabase::database(name);
}

struct SizedCompany {
    QTemporaryDir work;
    QString id;
    QString path;
    QString busyCustomer; // the customer with a thousand more open documents

    SizedCompany() {
        const SizeOptions& options = sizeOptions();
        id = QStringLiteral("SIZE%1X%2").arg(options.customers).arg(options.documents);
        QDir().mkpath(options.cache);
        const QString cached = QDir(options.cache).filePath(id + QStringLiteral(".sqlite"));
        qputenv("TILLBOOK_TODAY", "2025-03-14");
        qunsetenv("TILLBOOK_LEDGER_URL");
        if (!QFile::exists(cached))
            make(options);
        path = work.filePath(id + QStringLiteral(".sqlite"));
        QFile::copy(cached, path);
        qputenv("TILLBOOK_DATA", work.path().toUtf8());
        qputenv("TILLBOOK_SETTINGS", work.filePath(QStringLiteral("settings.ini")).toUtf8());
        QSqlQuery query(rawConnection(path));
        query.exec(QStringLiteral("SELECT MIN(\"IDCUST\") FROM \"ARCUS\""));
        query.next();
        busyCustomer = query.value(0).toString();
    }

private:
    void make(const SizeOptions& options) {
        std::fprintf(stderr, "making company %s in %s (once)\n", qPrintable(id), qPrintable(options.cache));
        qputenv("TILLBOOK_DATA", options.cache.toUtf8());
        engine::SampleOptions sample;
        sample.customers = options.customers;
        sample.documents = options.documents;
        sample.seed = 3;
        sample.today = QDate(2025, 3, 14);
        engine::createSampleCompany(id, sample, true);
        auto store = engine::CompanyStore::open(id);
        const auto first = engine::readRecords(
            *store, QStringLiteral("AR0024"), {}, {QStringLiteral("IDCUST")}, {QStringLiteral("IDCUST")},
            QStringLiteral("\"IDCUST\" = (SELECT MIN(\"IDCUST\") FROM \"ARCUS\")"));
        const QString customer = first.front().value(QStringLiteral("IDCUST")).toString();
        engine::Transaction transaction(*store);
        for (int i = 1; i <= ExtraDocuments; ++i) {
            const QVariant amount = QVariant::fromValue(Money::fromWhole(100 + i % 50));
            engine::insertRecord(
                *store, QStringLiteral("AR0036"),
                {{QStringLiteral("IDCUST"), customer},
                 {QStringLiteral("IDINVC"), QStringLiteral("BX%1").arg(i, 7, 10, QLatin1Char('0'))},
                 {QStringLiteral("TRXTYPETXT"), 1},
                 {QStringLiteral("TRXTYPEID"), 11},
                 {QStringLiteral("DESCINVC"), QStringLiteral("Bench invoice %1").arg(i)},
                 {QStringLiteral("DATEINVC"), QDate(2025, 1, 1).addDays(i % 60)},
                 {QStringLiteral("DATEDUE"), QDate(2025, 2, 1).addDays(i % 60)},
                 {QStringLiteral("AMTINVCTC"), amount},
                 {QStringLiteral("AMTDUETC"), amount},
                 {QStringLiteral("AMTDUEHC"), amount}});
        }
        engine::addToRecord(*store, QStringLiteral("AR0024"), {{QStringLiteral("IDCUST"), customer}},
                            {{QStringLiteral("CNTOPENINV"), ExtraDocuments}});
        transaction.commit();
    }
};

inline SizedCompany& sized() {
    static SizedCompany company;
    return company;
}

} // namespace tillbook::bench

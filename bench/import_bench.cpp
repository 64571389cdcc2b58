// tillbook-ledger import of a company's customers and their documents (default 100,000 customers with
// ten documents each), against its floor: the same rows inserted into an empty company of the same
// store with plain prepared Qt SQL statements, one row an execution, in one transaction, in the same run.
//   import_bench [--customers=N] [--documents=M]

#include "ledger/engine/CompanyStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdio>

namespace {

using namespace tillbook;

int Customers = 100000;
int Documents = 1000000;

const QStringList CustomerFields = {"IDCUST",    "NAMECUST", "TEXTSTRE1", "NAMECITY",
                                    "TEXTPHON1", "SWACTV",   "CODECURN"};
const QStringList DocumentFields = {"IDCUST",   "IDINVC",    "TRXTYPEID", "TRXTYPETXT", "DATEINVC",
                                    "DESCINVC", "AMTINVCTC", "AMTINVCHC", "AMTDUETC"};

struct Rows {
    QStringList customers; // CSV lines
    QStringList documents;
    std::vector<QVariantList> customerValues; // the same rows as the store holds them
    std::vector<QVariantList> documentValues;
};

QTemporaryDir& work() {
    static QTemporaryDir dir;
    return dir;
}

// The files and the floor's values, made once.
const Rows& rows() {
    static const Rows made = [] {
        Rows r;
        for (int c = 0; c < Customers; ++c) {
            const QString id = QStringLiteral("C%1").arg(c + 1, 7, 10, QLatin1Char('0'));
            const QString name = QStringLiteral("Customer %1 Ltd.").arg(c + 1);
            const QString street = QStringLiteral("%1 Main Street").arg(c % 9000 + 1);
            const QString phone = QStringLiteral("902555%1").arg(c % 10000, 4, 10, QLatin1Char('0'));
            r.customers << QStringLiteral("%1,%2,%3,Halifax,%4,1,CAD").arg(id, name, street, phone);
            r.customerValues.push_back(
                {id, name, street, QStringLiteral("Halifax"), phone, 1, QStringLiteral("CAD")});
        }
        for (int d = 0; d < Documents; ++d) {
            const QString customer =
                QStringLiteral("C%1").arg(qint64(d) * Customers / Documents + 1, 7, 10, QLatin1Char('0'));
            const QString number = QStringLiteral("IN%1").arg(d + 1, 8, 10, QLatin1Char('0'));
            const qint64 cents = 1000 + (d * 7919) % 500000;
            const qint64 due = d % 3 == 0 ? 0 : cents;
            const QString amount =
                QStringLiteral("%1.%2").arg(cents / 100).arg(cents % 100, 2, 10, QLatin1Char('0'));
            const QString owed =
                QStringLiteral("%1.%2").arg(due / 100).arg(due % 100, 2, 10, QLatin1Char('0'));
            const QDate date = QDate(2025, 1, 1).addDays(d % 365);
            r.documents << QStringLiteral("%1,%2,11,1,%3,Goods %2,%4,%4,%5")
                               .arg(customer, number, date.toString(Qt::ISODate), amount, owed);
            r.documentValues.push_back({customer, number, 11, 1,
                                        date.year() * 10000 + date.month() * 100 + date.day(),
                                        QStringLiteral("Goods ") + number, cents * 10, cents * 10, due * 10});
        }
        return r;
    }();
    return made;
}

QString writeFiles() {
    const QString folder = work().filePath(QStringLiteral("files"));
    QDir().mkpath(folder);
    const auto write = [&](const char* name, const QStringList& header, const QStringList& lines) {
        QFile file(QDir(folder).filePath(QLatin1String(name)));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("cannot write %s", name);
        file.write((header.join(u',') + QStringLiteral("\r\n")).toUtf8());
        for (const QString& line : lines)
            file.write((line + QStringLiteral("\r\n")).toUtf8());
    };
    write("AR0024.csv", CustomerFields, rows().customers);
    write("AR0036.csv", DocumentFields, rows().documents);
    return folder;
}

QString freshCompany(const char* stem) {
    static int n = 0;
    const QString id = QStringLiteral("%1%2").arg(QLatin1String(stem)).arg(++n);
    engine::CompanyStore::create(id, true, [](engine::CompanyStore& s) {
        s.setUser(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"));
    });
    return id;
}

void Import(benchmark::State& state) {
    const QString folder = writeFiles();
    for (auto _ : state) {
        state.PauseTiming();
        const QString id = freshCompany("IMP");
        state.ResumeTiming();
        QProcess tool;
        tool.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        tool.start(QStringLiteral(TILLBOOK_LEDGER_TOOL), {QStringLiteral("import"), id, folder});
        tool.waitForFinished(-1);
        if (tool.exitCode() != 0)
            state.SkipWithError("import failed");
    }
}

void insertAll(QSqlDatabase& db, const QString& table, const QStringList& fields,
               const std::vector<QVariantList>& values) {
    QStringList columns;
    QStringList marks;
    for (const QString& field : fields) {
        columns << u'"' + field + u'"';
        marks << QStringLiteral("?");
    }
    QSqlQuery insert(db);
    if (!insert.prepare(QStringLiteral("INSERT INTO \"%1\" (%2) VALUES (%3)")
                            .arg(table, columns.join(u','), marks.join(u','))))
        qFatal("floor statement refused: %s", qPrintable(insert.lastError().text()));
    for (const QVariantList& row : values) {
        for (int i = 0; i < row.size(); ++i)
            insert.bindValue(i, row[i]);
        if (!insert.exec())
            qFatal("floor insert failed: %s", qPrintable(insert.lastError().text()));
    }
}

void Floor(benchmark::State& state) {
    rows();
    for (auto _ : state) {
        state.PauseTiming();
        const QString id = freshCompany("FLR");
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), id);
        db.setDatabaseName(
            QDir(qEnvironmentVariable("TILLBOOK_DATA")).filePath(id + QStringLiteral(".sqlite")));
        db.open();
        state.ResumeTiming();
        db.transaction();
        insertAll(db, QStringLiteral("ARCUS"), CustomerFields, rows().customerValues);
        insertAll(db, QStringLiteral("AROBL"), DocumentFields, rows().documentValues);
        db.commit();
        state.PauseTiming();
        db.close();
        state.ResumeTiming();
    }
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        const QString arg = QString::fromLocal8Bit(argv[i]);
        if (arg.startsWith(u"--customers="))
            Customers = arg.mid(12).toInt();
        else if (arg.startsWith(u"--documents="))
            Documents = arg.mid(12).toInt();
        else
            argv[kept++] = argv[i];
    }
    argc = kept;
    qputenv("TILLBOOK_DATA", work().path().toUtf8());
    qunsetenv("TILLBOOK_LEDGER_URL");
    std::fprintf(stderr, "%d customers, %d documents\n", Customers, Documents);
    benchmark::RegisterBenchmark("import", Import)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();
    benchmark::RegisterBenchmark("import:floor", Floor)
        ->Unit(benchmark::kSecond)
        ->Iterations(1)
        ->UseRealTime();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

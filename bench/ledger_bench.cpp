// The start-up read of the customer list: 100,000 customers browsed with "CNTOPENINV>0", five fields
// read from every record. The view is measured against the same rows read by a plain Qt SQL query
// and by the sqlite3 C interface, in the same run on the same file.

#include "BenchCompany.h"
#include "ledger/Session.h"
#include "ledger/engine/CompanyStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <sqlite3.h>

namespace {

using namespace tillbook;

const QStringList Fields = {"IDCUST", "NAMECUST", "TEXTSTRE1", "TEXTSTRE2", "TEXTPHON1"};
const char* const RawSelect =
    "SELECT \"IDCUST\",\"NAMECUST\",\"TEXTSTRE1\",\"TEXTSTRE2\",\"TEXTPHON1\" FROM \"ARCUS\" "
    "WHERE \"CNTOPENINV\" > 0 ORDER BY \"IDCUST\"";

using bench::sample;

void ViewBrowseFetch(benchmark::State& state) {
    sample();
    Session session;
    session.open(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), QStringLiteral("BENCH"),
                 QDate(2025, 3, 14));
    qint64 rows = 0;
    for (auto _ : state) {
        auto view = session.openView(QStringLiteral("AR0024"), QStringLiteral("AR"));
        std::vector<Field*> fields;
        for (const QString& name : Fields)
            fields.push_back(&view->fields().item(name));
        view->browse(QStringLiteral("CNTOPENINV>0"), true);
        while (view->fetch()) {
            for (Field* field : fields)
                benchmark::DoNotOptimize(field->value().toString());
            ++rows;
        }
    }
    state.counters["rows"] = benchmark::Counter(double(rows) / double(state.iterations()));
}

// As a form would write it: each field looked up by name on every record.
void ViewBrowseFetchByName(benchmark::State& state) {
    sample();
    Session session;
    session.open(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), QStringLiteral("BENCH"),
                 QDate(2025, 3, 14));
    for (auto _ : state) {
        auto view = session.openView(QStringLiteral("AR0024"), QStringLiteral("AR"));
        view->browse(QStringLiteral("CNTOPENINV>0"), true);
        while (view->fetch())
            for (const QString& name : Fields)
                benchmark::DoNotOptimize(view->fields().item(name).value().toString());
    }
}

void QtSqlRaw(benchmark::State& state) {
    const QString path = sample().path;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bench-raw"));
        db.setDatabaseName(path);
        db.open();
        qint64 rows = 0;
        for (auto _ : state) {
            QSqlQuery query(db);
            query.setForwardOnly(true);
            query.exec(QString::fromLatin1(RawSelect));
            while (query.next()) {
                for (int i = 0; i < 5; ++i)
                    benchmark::DoNotOptimize(query.value(i).toString());
                ++rows;
            }
        }
        state.counters["rows"] = benchmark::Counter(double(rows) / double(state.iterations()));
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("bench-raw"));
}

void Sqlite3Api(benchmark::State& state) {
    sqlite3* db = nullptr;
    sqlite3_open_v2(sample().path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    for (auto _ : state) {
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(db, RawSelect, -1, &statement, nullptr);
        while (sqlite3_step(statement) == SQLITE_ROW)
            for (int i = 0; i < 5; ++i)
                benchmark::DoNotOptimize(sqlite3_column_text(statement, i));
        sqlite3_finalize(statement);
    }
    sqlite3_close(db);
}

BENCHMARK(ViewBrowseFetch)->Unit(benchmark::kMillisecond);
BENCHMARK(ViewBrowseFetchByName)->Unit(benchmark::kMillisecond);
BENCHMARK(QtSqlRaw)->Unit(benchmark::kMillisecond);
BENCHMARK(Sqlite3Api)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv); // Qt's SQL drivers are plugins
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

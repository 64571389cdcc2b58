// Sign-in to a ready receipt window on a company of 100,000 customers with open documents: the session and
// the receipt views opened, the fiscal calendar read, and the customer list read, sorted by name and put into
// its list. Measured against the floor of the same work: the same customer rows read by a plain query and
// sorted by their collation keys, in the same run on the same file.

#include "BenchCompany.h"
#include "SignInLoop.h"
#include "entry/ReceiptDesk.h"
#include "entry/frmCR.h"
#include "fetching/NameCollation.h"

#include <QApplication>
#include <QCollatorSortKey>
#include <QDir>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <algorithm>
#include <benchmark/benchmark.h>

namespace {

using namespace tillbook;

using bench::sample;

void SignInToReadyReceiptWindow(benchmark::State& state) {
    sample();
    Desk().SignInDatabaseID = QStringLiteral("BENCH");
    Desk().SignInUser = QStringLiteral("ADMIN");
    Desk().CurrentDatabase = 1;
    bench::signInLoop(state);
}

struct Row {
    QString name, id, street1, street2, phone;
};

void FloorRawReadAndCollationSort(benchmark::State& state) {
    sample();
    if (!QSqlDatabase::contains(QStringLiteral("floor"))) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("floor"));
        db.setDatabaseName(sample().path);
        db.open();
    }
    QSqlDatabase db = QSqlDatabase::database(QStringLiteral("floor"));
    const QCollator collator = NameCollator();
    qint64 rows = 0;
    for (auto _ : state) {
        QSqlQuery query(db);
        query.setForwardOnly(true);
        query.exec(
            QStringLiteral("SELECT \"NAMECUST\",\"IDCUST\",\"TEXTSTRE1\",\"TEXTSTRE2\",\"TEXTPHON1\" FROM "
                           "\"ARCUS\" WHERE \"CNTOPENINV\" > 0 ORDER BY \"IDCUST\""));
        std::vector<std::pair<QCollatorSortKey, Row>> keyed;
        while (query.next()) {
            Row row{query.value(0).toString(), query.value(1).toString(), query.value(2).toString(),
                    query.value(3).toString(), query.value(4).toString()};
            keyed.emplace_back(collator.sortKey(row.name), std::move(row));
        }
        std::sort(keyed.begin(), keyed.end(),
                  [](const auto& a, const auto& b) { return a.first.compare(b.first) < 0; });
        rows = static_cast<qint64>(keyed.size());
        benchmark::DoNotOptimize(keyed.data());
    }
    state.counters["customers"] = static_cast<double>(rows);
}

} // namespace

BENCHMARK(FloorRawReadAndCollationSort)->Unit(benchmark::kMillisecond)->MinTime(3.0);
BENCHMARK(SignInToReadyReceiptWindow)->Unit(benchmark::kMillisecond)->MinTime(3.0);

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

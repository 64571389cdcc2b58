// The finder opened on a chart of 10,000 G/L accounts and on 1,000 distribution codes: the records read
// through the ledger's view, turned into their display texts, put into the finder's grid and painted once.
// Measured against floors of the same run on the same file: the same rows read by a plain query, and the
// grid filled the way a naive loader does it, one row and one cell at a time.

#include "entry/dialogs/FinderTexts.h"
#include "entry/dialogs/frmFinder.h"
#include "fetching/FinderRecords.h"
#include "ledger/Session.h"
#include "ledger/engine/BulkInserter.h"
#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/SampleCompany.h"
#include "ui/FlexGrid.h"

#include <QApplication>
#include <QDir>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <memory>

namespace {

using namespace tillbook;

constexpr int AccountCount = 10000;
constexpr int CodeCount = 1000;

struct FinderCompany {
    QTemporaryDir dir;
    QString path;
    Session session;

    FinderCompany() {
        qputenv("TILLBOOK_DATA", dir.path().toUtf8());
        qunsetenv("TILLBOOK_LEDGER_URL");
        engine::SampleOptions options;
        options.customers = 10;
        options.documents = 20;
        options.today = QDate(2025, 3, 14);
        engine::createSampleCompany(QStringLiteral("FINDER"), options, true);
        {
            auto store = engine::CompanyStore::open(QStringLiteral("FINDER"));
            store->beginWrite();
            engine::BulkInserter accounts(*store, *engine::Schema::instance().view(QStringLiteral("GL0001")),
                                          {"ACCTID", "ACCTFMTTD", "ACCTDESC", "ACCTTYPE", "ACTIVESW",
                                           "ABRKID", "ALLOCSW", "MCSW", "QTYSW", "UOM"});
            for (int i = 0; i < AccountCount; ++i) {
                const QString id = QString::number(7000000 + i);
                accounts.add({id, HyphenatedAccount(id), QStringLiteral("Account %1").arg(i),
                              i % 3 == 0 ? "B" : "I", i % 10 == 0 ? 0 : 1, "ACCT", 0, 0, i % 2, "EA"});
            }
            accounts.flush();
            engine::BulkInserter codes(
                *store, *engine::Schema::instance().view(QStringLiteral("AR0015")),
                {"IDDIST", "TEXTDESC", "SWACTV", "IDACCTREV", "IDACCTINV", "IDACCTCOGS"});
            for (int i = 0; i < CodeCount; ++i)
                codes.add({QStringLiteral("C%1").arg(i, 5, 10, QChar(u'0')), QStringLiteral("Code %1").arg(i),
                           1, QString::number(7000000 + i), "1200", "5000"});
            codes.flush();
            store->commit();
        }
        path = QDir(dir.path()).filePath(QStringLiteral("FINDER.sqlite"));
        session.open(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), QStringLiteral("FINDER"),
                     QDate(2025, 3, 14), 0);
    }
};

// Made on first use; released before the application, with the session it holds.
std::unique_ptr<FinderCompany> madeCompany;

FinderCompany& company() {
    if (!madeCompany)
        madeCompany = std::make_unique<FinderCompany>();
    return *madeCompany;
}

// Read, fill, show and paint the finder once.
void OpenFinder(benchmark::State& state, int kind) {
    Session& session = company().session;
    qint64 rows = 0;
    for (auto _ : state) {
        const std::vector<QStringList> records = Read_FinderRecords(session, kind);
        frmFinder finder(kind, records);
        finder.show();
        QApplication::processEvents();
        rows = static_cast<qint64>(records.size());
    }
    state.counters["rows"] = static_cast<double>(rows);
}

void OpenFinderOnAccounts(benchmark::State& state) {
    OpenFinder(state, FinderAccounts);
}
void OpenFinderOnDistCodes(benchmark::State& state) {
    OpenFinder(state, FinderDistCodes);
}

// The finder filled and painted from records already read.
void FillFinderOnAccounts(benchmark::State& state) {
    const std::vector<QStringList> records = Read_FinderRecords(company().session, FinderAccounts);
    for (auto _ : state) {
        frmFinder finder(FinderAccounts, records);
        finder.show();
        QApplication::processEvents();
    }
}

// Floor: the same account rows read by a plain query into texts.
void FloorRawReadOfAccounts(benchmark::State& state) {
    if (!QSqlDatabase::contains(QStringLiteral("floor"))) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("floor"));
        db.setDatabaseName(company().path);
        db.open();
    }
    QSqlDatabase db = QSqlDatabase::database(QStringLiteral("floor"));
    const QStringList fields = FinderFields(FinderAccounts);
    QStringList quoted;
    for (const QString& field : fields)
        quoted << u'"' + field + u'"';
    const QString sql = QStringLiteral("SELECT %1 FROM \"GLAMF\" ORDER BY \"ACCTID\"").arg(quoted.join(u','));
    for (auto _ : state) {
        QSqlQuery query(db);
        query.setForwardOnly(true);
        query.exec(sql);
        std::vector<QStringList> rows;
        while (query.next()) {
            QStringList row;
            for (int c = 0; c < fields.size(); ++c)
                row << query.value(c).toString().trimmed();
            rows.push_back(std::move(row));
        }
        benchmark::DoNotOptimize(rows.data());
    }
}

// Contrast: the grid grown by one row and written cell by cell on screen, as a naive loader would.
void NaiveFillOneRowAtATime(benchmark::State& state) {
    const std::vector<QStringList> records = Read_FinderRecords(company().session, FinderAccounts);
    for (auto _ : state) {
        FlexGrid grid;
        grid.resize(620, 340);
        grid.setRows(1);
        grid.setFormatString(FinderFormat(FinderAccounts));
        grid.show();
        int row = 0;
        for (const QStringList& record : records) {
            grid.setRows(++row + 1);
            const QStringList shown = FinderDisplayRow(FinderAccounts, record);
            for (int c = 0; c < shown.size(); ++c)
                grid.setTextMatrix(row, c, shown[c]);
        }
        QApplication::processEvents();
    }
}

} // namespace

BENCHMARK(FloorRawReadOfAccounts)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(OpenFinderOnAccounts)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(FillFinderOnAccounts)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(NaiveFillOneRowAtATime)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(OpenFinderOnDistCodes)->Unit(benchmark::kMillisecond)->MinTime(2.0);

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    QSqlDatabase::removeDatabase(QStringLiteral("floor"));
    madeCompany.reset();
    return 0;
}

// The clerk's Invoice Search for a customer with about 1,000 open documents: the open-document list built by
// the ledger and written into the apply grid. Measured against its floor, the same customer's open documents
// read from the document table with one plain query, in the same run on the same file.

#include "ManyDocumentsCompany.h"
#include "entry/GridColumnSets.h"
#include "entry/ReceiptDesk.h"
#include "entry/ReceiptWindowParts.h"
#include "entry/frmCR.h"
#include "fetching/Batches.h"
#include "fetching/OpenDocuments.h"
#include "ui/ComboBox.h"
#include "ui/FlexGrid.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

using namespace tillbook;
using bench::company;
using bench::openWindow;

void InvoiceSearchToFilledGrid(benchmark::State& state) {
    frmCR* window = openWindow(state);
    if (!window)
        return;
    Create_Batch(Desk(), QDate(2025, 3, 14));
    window->findChild<ComboBox*>("cboCustomers")->setListIndex(0);
    window->findChild<QLineEdit*>("txtAmount")->setText("100.00");
    auto* grid = window->findChild<FlexGrid*>("MSFlexGrid1");
    for (auto _ : state) {
        state.PauseTiming();
        window->Parts().grid.Set_GridHeaders();
        state.ResumeTiming();
        window->cmdSearch_Click();
    }
    state.counters["documents"] = grid->Rows() - 1;
    delete window;
    Close_Ledger(Desk());
}

// The ledger's part alone: the open-document list read row by row, nothing written to the grid.
void OpenDocumentListRead(benchmark::State& state) {
    frmCR* window = openWindow(state);
    if (!window)
        return;
    int rows = 0;
    for (auto _ : state) {
        rows = 0;
        Read_OpenDocuments(Desk(), QStringLiteral("0001"), ApplyGridFields,
                           [&](const QStringList&) { ++rows; });
    }
    state.counters["documents"] = rows;
    delete window;
    Close_Ledger(Desk());
}

void FloorOneQueryOfTheOpenDocuments(benchmark::State& state) {
    company();
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("floor"));
    db.setDatabaseName(company().path);
    db.open();
    qint64 rows = 0;
    for (auto _ : state) {
        QSqlQuery query(db);
        query.setForwardOnly(true);
        query.prepare(QStringLiteral(
            "SELECT "
            "\"IDINVC\",\"TRXTYPETXT\",\"AMTDUEHC\",\"AMTDISCHC\",\"AMTINVCHC\",\"IDCUSTPO\",\"IDORDERNBR\","
            "\"DATEINVC\",\"DATEDUE\",\"DATEDISC\",\"CNTTOTPAYM\" FROM \"AROBL\" WHERE \"IDCUST\" = ? AND "
            "\"AMTDUEHC\" <> 0 ORDER BY \"IDINVC\""));
        query.addBindValue(QStringLiteral("0001"));
        query.exec();
        QStringList values;
        rows = 0;
        while (query.next()) {
            for (int c = 0; c < 11; ++c)
                values << query.value(c).toString();
            ++rows;
        }
        benchmark::DoNotOptimize(values.data());
    }
    state.counters["documents"] = static_cast<double>(rows);
}

} // namespace

BENCHMARK(FloorOneQueryOfTheOpenDocuments)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(OpenDocumentListRead)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(InvoiceSearchToFilledGrid)->Unit(benchmark::kMillisecond)->MinTime(2.0);

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

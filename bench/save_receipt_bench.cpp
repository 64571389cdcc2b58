// Saving a receipt applied to 10 documents and reading it back onto the window: posting through the kept
// receipt views, the batch's figures, the entry list and the saved entry shown again. Measured against its
// floor, the same rows (a header, 10 applications, the batch's count and total) inserted with prepared
// statements in one transaction and read back, in the same run on the same file.

#include "ManyDocumentsCompany.h"
#include "entry/ReceiptDesk.h"
#include "entry/ReceiptWindowParts.h"
#include "fetching/Batches.h"
#include "fetching/CustomerList.h"
#include "ledger/Formats.h"
#include "ui/ComboBox.h"
#include "ui/FlexGrid.h"

#include <QApplication>
#include <QLineEdit>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <benchmark/benchmark.h>

namespace {

using namespace tillbook;
using bench::openWindow;

constexpr int Applications = 10;

// A hundred customers with about 26 open documents each: every entry is a different customer's.
bench::ReceiptBenchCompany& company() {
    static bench::ReceiptBenchCompany made(QStringLiteral("TENAPPS"), 100, 4000);
    return made;
}

void SaveReceiptWithTenApplications(benchmark::State& state) {
    frmCR* window = openWindow(state, company());
    if (!window)
        return;
    Create_Batch(Desk(), QDate(2025, 3, 14));
    auto* batches = window->findChild<ComboBox*>("cboBatch");
    window->Parts().selection.Load_Batches();
    batches->setListIndex(batches->ListCount() - 1);
    auto* grid = window->findChild<FlexGrid*>("MSFlexGrid1");
    auto* amount = window->findChild<QLineEdit*>("txtAmount");
    auto* unapplied = window->findChild<QLineEdit*>("txtUnapplied");
    int applied = 0;
    size_t customer = 0;
    for (auto _ : state) {
        state.PauseTiming();
        window->cmdNewEntry_Click();
        window->findChild<ComboBox*>("cboCustomers")->setListIndex(customer++ % Desk().Customers.size());
        amount->setText(QStringLiteral("1,000,000.00"));
        unapplied->setText(amount->text());
        window->cmdSearch_Click();
        // Up to ten invoices with something left to pay, applied as the clerk double-clicks them.
        applied = 0;
        for (int row = 1; row < grid->Rows() && applied < Applications; ++row) {
            if (!grid->TextMatrix(row, 2).startsWith(u"IN") ||
                !(Strip_Commas(grid->TextMatrix(row, 8)) > Money()))
                continue;
            grid->setRow(row);
            grid->setCol(0);
            window->MSFlexGrid1_DblClick();
            ++applied;
        }
        state.ResumeTiming();
        window->cmdSave_Click();
        if (!window->LastPosting().PostOK)
            state.SkipWithError("the receipt was not saved");
    }
    state.counters["applications"] = applied; // of the last entry
    delete window;
    Close_Ledger(Desk());
}

void FloorSameRowsInOneTransaction(benchmark::State& state) {
    company();
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("floor"));
    db.setDatabaseName(company().path);
    db.open();
    const qint64 batch = 900000;
    QSqlQuery(db).exec(
        QStringLiteral("INSERT INTO \"ARBTA\" (\"CODEPYMTYP\",\"CNTBTCH\") VALUES ('CA',%1)").arg(batch));
    QSqlQuery header(db), line(db), figures(db), readHeader(db), readLines(db);
    header.prepare(QStringLiteral(
        "INSERT INTO \"ARTCR\" "
        "(\"CODEPYMTYP\",\"CNTBTCH\",\"CNTITEM\",\"IDCUST\",\"AMTRMIT\",\"IDRMIT\",\"DATERMIT\","
        "\"TEXTPAYOR\",\"FISCYR\",\"FISCPER\") VALUES ('CA',?,?,'0001',?,?,20250314,'Payer','2025','03')"));
    line.prepare(
        QStringLiteral("INSERT INTO \"ARTCP\" (\"CODEPAYM\",\"CNTBTCH\",\"CNTITEM\",\"CNTLINE\",\"IDCUST\","
                       "\"IDINVC\",\"AMTPAYM\") VALUES ('CA',?,?,?,'0001',?,?)"));
    figures.prepare(
        QStringLiteral("UPDATE \"ARBTA\" SET \"CNTENTER\"=\"CNTENTER\"+1, \"AMTENTER\"=\"AMTENTER\"+? "
                       "WHERE \"CODEPYMTYP\"='CA' AND \"CNTBTCH\"=?"));
    readHeader.prepare(QStringLiteral(
        "SELECT * FROM \"ARTCR\" WHERE \"CODEPYMTYP\"='CA' AND \"CNTBTCH\"=? AND \"CNTITEM\"=?"));
    readLines.prepare(QStringLiteral("SELECT * FROM \"ARTCP\" WHERE \"CODEPAYM\"='CA' AND \"CNTBTCH\"=? AND "
                                     "\"CNTITEM\"=? ORDER BY \"CNTLINE\""));
    qint64 entry = 0;
    for (auto _ : state) {
        ++entry;
        db.transaction();
        header.addBindValue(batch);
        header.addBindValue(entry);
        header.addBindValue(1000000000);
        header.addBindValue(QStringLiteral("0001-%1-20250314").arg(entry));
        header.exec();
        for (int l = 1; l <= Applications; ++l) {
            line.addBindValue(batch);
            line.addBindValue(entry);
            line.addBindValue(l);
            line.addBindValue(QStringLiteral("IN%1").arg(l, 7, 10, QLatin1Char('0')));
            line.addBindValue(100000);
            line.exec();
        }
        figures.addBindValue(1000000000);
        figures.addBindValue(batch);
        figures.exec();
        db.commit();
        readHeader.addBindValue(batch);
        readHeader.addBindValue(entry);
        readHeader.exec();
        QStringList values;
        while (readHeader.next())
            for (int c = 0; c < 128; ++c)
                values << readHeader.value(c).toString();
        readLines.addBindValue(batch);
        readLines.addBindValue(entry);
        readLines.exec();
        while (readLines.next())
            for (int c = 0; c < 70; ++c)
                values << readLines.value(c).toString();
        benchmark::DoNotOptimize(values.data());
    }
}

} // namespace

BENCHMARK(FloorSameRowsInOneTransaction)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(SaveReceiptWithTenApplications)->Unit(benchmark::kMillisecond)->Iterations(100);

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

// Printing a saved miscellaneous receipt of 10 lines into a PDF file, three copies to the page: the entry
// read back through the receipt views, the template bound and rendered, the page laid out and written.
// Measured against the floor of the same run: the same finished HTML of the three copies drawn into a PDF by
// the text engine alone.

#include "BenchCompany.h"
#include "entry/ReceiptDesk.h"
#include "ledger/Formats.h"
#include "printing/Printing.h"
#include "printing/Report.h"
#include "printing/data/ReceiptData.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QPdfWriter>
#include <QTextDocument>
#include <benchmark/benchmark.h>

namespace {

using namespace tillbook;

QVariant text(const char* value) {
    return QString::fromLatin1(value);
}

// A new batch holding one miscellaneous receipt of 10 lines; returns its batch number.
QString saveTenLineReceipt() {
    View& batch = *Desk().BatchView;
    View& header = *Desk().ReceiptHeaderView;
    View& misc = *Desk().ReceiptMiscView;
    batch.fields().item("CODEPYMTYP").putWithoutVerification(text("CA"));
    batch.fields().item("CNTBTCH").putWithoutVerification(0);
    batch.fields().item("BATCHDESC").setValue(text("Print benchmark"));
    batch.insert();
    const QString number = batch.fields().item("CNTBTCH").text();
    batch.fields().item("IDBANK").putWithoutVerification(text("TDOPER"));
    batch.update();
    batch.read();
    header.fields().item("CNTITEM").putWithoutVerification(0);
    header.init();
    header.fields().item("RMITTYPE").setValue(5);
    header.fields().item("DATERMIT").setValue(QDate(2025, 3, 14));
    header.fields().item("AMTRMIT").setValue(text("55"));
    header.fields().item("FISCYR").setValue(text("2025"));
    header.fields().item("FISCPER").setValue(text("03"));
    header.fields().item("IDRMIT").setValue(text("R-BENCH"));
    header.fields().item("TEXTPAYOR").setValue(text("Walk-in customer"));
    for (int line = 1; line <= 10; ++line) {
        misc.init();
        misc.fields().item("IDACCT").setValue(text("4100-100"));
        misc.fields().item("AMTDIST").setValue(QString::number(line));
        misc.fields().item("GLDESC").setValue(QStringLiteral("Benchmark line %1").arg(line));
        misc.insert();
    }
    header.insert();
    return number;
}

struct PrintSetup {
    QTemporaryDir pdfs;
    PrintRequest request;
    QStringList finishedHtml; // the three copies, as the receipt renders them

    PrintSetup() {
        bench::sample();
        Desk().LedgerSession = std::make_unique<Session>();
        Desk().LedgerSession->open(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), QStringLiteral("BENCH"),
                                   Today());
        Open_ReceiptViews(Desk());
        request.batch = saveTenLineReceipt().toInt();
        request.entry = 1;
        request.kind = ReceiptKind::Misc;
        request.threePart = true;
        request.reportFolder = QStringLiteral(TILLBOOK_REPORTS_DIR);
        qputenv("TILLBOOK_PDF_DIR", pdfs.path().toUtf8());

        auto data = std::make_shared<DataSet>(Read_ReceiptData(*Desk().LedgerSession, request));
        auto report =
            Report::open(QDir(request.reportFolder).filePath(ReceiptTemplateName(request.kind, true)));
        report->setDataSource(data);
        for (const QString& name : report->subreportNames())
            report->subreport(name).setDataSource(data);
        for (const QString& copy : report->copyLabels())
            finishedHtml << report->render(copy);
    }
};

PrintSetup& setup() {
    static PrintSetup s;
    return s;
}

void emptyFolder(const QString& path) {
    QDir dir(path);
    for (const QString& file : dir.entryList(QDir::Files))
        dir.remove(file);
}

void PrintSavedReceiptToPdf(benchmark::State& state) {
    PrintSetup& s = setup();
    for (auto _ : state) {
        const PrintOutcome outcome = Print_Receipt(Desk().LedgerSession.get(), s.request);
        if (!outcome.printed)
            state.SkipWithError("nothing was printed");
        state.PauseTiming();
        emptyFolder(s.pdfs.path());
        state.ResumeTiming();
    }
}

void FloorFinishedHtmlToPdf(benchmark::State& state) {
    PrintSetup& s = setup();
    const QString file = QDir(s.pdfs.path()).filePath(QStringLiteral("floor.pdf"));
    for (auto _ : state) {
        QPdfWriter writer(file);
        writer.setResolution(600);
        writer.setPageSize(QPageSize(QPageSize::Letter));
        QPainter painter(&writer);
        const double band = writer.height() / double(s.finishedHtml.size());
        for (qsizetype i = 0; i < s.finishedHtml.size(); ++i) {
            QTextDocument doc;
            doc.documentLayout()->setPaintDevice(&writer);
            doc.setHtml(s.finishedHtml[i]);
            doc.setTextWidth(writer.width());
            painter.save();
            painter.translate(0, double(i) * band);
            doc.drawContents(&painter);
            painter.restore();
        }
        painter.end();
    }
}

} // namespace

BENCHMARK(FloorFinishedHtmlToPdf)->Unit(benchmark::kMillisecond)->MinTime(3.0);
BENCHMARK(PrintSavedReceiptToPdf)->Unit(benchmark::kMillisecond)->MinTime(3.0);

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    Close_Ledger(Desk());
    return 0;
}

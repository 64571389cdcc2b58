#pragma once

// A sample company with five saved entries in batch 1, made once per test program with the ledger tool:
//   1 a receipt of 4,000.00 from customer 0001 applied to two invoices
//   2 a prepayment of 1,250.00 from customer 0003 on IN0000018
//   3 a miscellaneous receipt of 1,500.00 in two lines
//   4 a miscellaneous receipt of 465.00 in 30 lines, with a long payer
//   5 a receipt of 100.00 applied to nothing, from customer 0005 with a long name and address
// Each test gets its own settings and the ledger session signed in; PDFs go to a fresh folder.

#include "entry/ReceiptDesk.h"
#include "ledger/Formats.h"
#include "printing/data/PrintRequest.h"
#include "support/AnswerMessageBoxes.h"
#include "support/QtPrinters.h"
#include "support/TempSettings.h"
#include "support/TestCompany.h"

#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace tillbook::test {

inline QString sourcePath(const QString& relative) {
    return QStringLiteral(TILLBOOK_SOURCE_DIR "/") + relative;
}

inline void runTool(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral(TILLBOOK_LEDGER_TOOL), arguments);
    ASSERT_TRUE(process.waitForFinished(120000));
    ASSERT_EQ(process.exitCode(), arguments.value(0) == QLatin1String("run") ? 1 : 0)
        << process.readAllStandardError().toStdString();
}

// The text of a PDF, as pdftotext reads it with its layout.
inline QString pdfText(const QString& file) {
    QProcess process;
    process.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), file, QStringLiteral("-")});
    if (!process.waitForFinished(60000))
        return {};
    return QString::fromUtf8(process.readAllStandardOutput());
}

inline PrintRequest requestFor(int entry, ReceiptKind kind, bool threePart) {
    PrintRequest request;
    request.batch = 1;
    request.entry = entry;
    request.kind = kind;
    request.threePart = threePart;
    request.reportFolder = sourcePath(QStringLiteral("Reports"));
    return request;
}

class PrintedCompany : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        qputenv("TILLBOOK_TODAY", "2025-03-15");
        store = new TestStore;
        runTool({"create", "SAMINC", "--sample", "--customers", "20", "--documents", "120"});
        // receipts.script ends with refused operations, so it exits with 1, as does every "run" here.
        runTool({"run", "SAMINC", sourcePath("tests/ledger/rules/scripts/receipts.script"), "--date",
                 "2025-03-15"});
        QProcess more;
        more.start(QStringLiteral(TILLBOOK_LEDGER_TOOL),
                   {"run", "SAMINC", sourcePath("tests/printing/print-entries.script"), "--date",
                    "2025-03-15", "--stop-on-error"});
        ASSERT_TRUE(more.waitForFinished(120000));
        ASSERT_EQ(more.exitCode(), 0) << more.readAllStandardOutput().toStdString();
    }
    static void TearDownTestSuite() {
        delete store;
        store = nullptr;
    }

    void SetUp() override {
        ASSERT_TRUE(pdfs.isValid());
        // TILLBOOK_TEST_PDF_DIR keeps the printed receipts to be looked at.
        const QString kept = qEnvironmentVariable("TILLBOOK_TEST_PDF_DIR");
        qputenv("TILLBOOK_PDF_DIR", (kept.isEmpty() ? pdfs.path() : kept).toUtf8());
        Desk().LedgerSession = std::make_unique<Session>();
        Desk().LedgerSession->open(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), QStringLiteral("SAMINC"),
                                   Today());
        Open_ReceiptViews(Desk());
    }
    void TearDown() override {
        Close_Ledger(Desk());
        qunsetenv("TILLBOOK_PDF_DIR");
    }

    static inline TestStore* store = nullptr;
    TempSettings settings;
    QTemporaryDir pdfs;
    AnswerMessageBoxes boxes;
};

} // namespace tillbook::test

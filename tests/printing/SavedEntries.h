#pragma once

// The ledger tool's sample company (seed 1, 20 customers) with five saved entries in batch 1, made once per
// test program:
//   1 a receipt of 4,000.00 from customer 0001 applied to two invoices
//   2 a prepayment of 1,250.00 from customer 0003 on IN0000018
//   3 a miscellaneous receipt of 1,500.00 in two lines
//   4 a miscellaneous receipt of 465.00 in 30 lines, with a long payer
//   5 a receipt of 100.00 applied to nothing, from customer 0005 with a long name and address
// Each test gets its own settings and the ledger session signed in; PDFs go to a fresh folder.

#include "entry/ReceiptDesk.h"
#include "ledger/Formats.h"
#include "ledger/engine/SampleCompany.h"
#include "printing/data/PrintRequest.h"
#include "support/Company.h"
#include "support/ExpectBox.h"
#include "support/QtPrinters.h"
#include "support/ReceiptWindow.h"

namespace tillbook::test {

inline PrintRequest requestFor(int entry, ReceiptKind kind, bool threePart) {
    return {1, entry, kind, threePart, sourceFile(QStringLiteral("Reports"))};
}

class SavedEntries : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        qputenv("TILLBOOK_TODAY", "2025-03-15");
        company = new Company;
        engine::SampleOptions sample;
        sample.customers = 20;
        sample.documents = 120;
        engine::createSampleCompany(company->id(), sample, true);
        for (const char* script :
             {"tests/ledger/rules/scripts/receipts.script", "tests/printing/print-entries.script"})
            company->script(sourceFile(QString::fromLatin1(script)), QStringLiteral("2025-03-15"));
    }
    static void TearDownTestSuite() {
        delete company;
        company = nullptr;
    }
    void SetUp() override {
        qputenv("TILLBOOK_PDF_DIR", pdfs.path().toUtf8());
        Desk().LedgerSession = company->signIn(Today());
        Open_ReceiptViews(Desk());
    }
    void TearDown() override {
        Close_Ledger(Desk());
        qunsetenv("TILLBOOK_PDF_DIR");
    }

    static inline Company* company = nullptr;
    TempSettings settings;
    QTemporaryDir pdfs;
    ExpectBox boxes;
};

} // namespace tillbook::test

#pragma once

// The companies of the receipt window's benchmarks, and the receipt window signed in to one of them.

#include "entry/ReceiptDesk.h"
#include "entry/frmCR.h"
#include "ledger/engine/SampleCompany.h"
#include "ui/Platform.h"

#include <QDir>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace tillbook::bench {

// A sample company made once per run in a temporary folder, with its settings file there too.
struct ReceiptBenchCompany {
    QTemporaryDir dir;
    QString id;
    QString path;
    ReceiptBenchCompany(const QString& companyId, int customers, int documents) : id(companyId) {
        qputenv("TILLBOOK_DATA", dir.path().toUtf8());
        qputenv("TILLBOOK_SETTINGS", QDir(dir.path()).filePath(QStringLiteral("settings.ini")).toUtf8());
        qputenv("TILLBOOK_TODAY", "2025-03-14");
        qunsetenv("TILLBOOK_LEDGER_URL");
        engine::SampleOptions options;
        options.customers = customers;
        options.documents = documents;
        options.seed = 3;
        options.today = QDate(2025, 3, 14);
        engine::createSampleCompany(id, options, true);
        path = QDir(dir.path()).filePath(id + QStringLiteral(".sqlite"));
    }
};

// One customer holding all of the company's documents, about two in three of them open.
inline ReceiptBenchCompany& company() {
    static ReceiptBenchCompany made(QStringLiteral("MANYDOCS"), 1, 1540);
    return made;
}

// The receipt window signed in to the company, or nullptr when it could not be opened.
inline frmCR* openWindow(benchmark::State& state, const ReceiptBenchCompany& on = company()) {
    qputenv("TILLBOOK_DATA", on.dir.path().toUtf8());
    Desk().SignInDatabaseID = on.id;
    Desk().SignInUser = QStringLiteral("ADMIN");
    Desk().CurrentDatabase = 1;
    // A message box would wait for a clerk who is not there: its text is printed and it is answered.
    setMsgBoxResponder([](const MsgBoxRequest& box) {
        qWarning("message box: %s", qPrintable(box.prompt));
        return vbOK;
    });
    auto* window = new frmCR();
    if (!window->Form_Load(QStringLiteral("ADMIN"))) {
        state.SkipWithError("the company could not be opened");
        delete window;
        return nullptr;
    }
    return window;
}

} // namespace tillbook::bench

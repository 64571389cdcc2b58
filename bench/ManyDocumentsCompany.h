#pragma once

// The company of the receipt window's benchmarks: one customer holding all of the company's documents, about
// two in three of them open, made once per run in a temporary folder; and the receipt window signed in to it.

#include "entry/frmCR.h"
#include "ledger/engine/SampleCompany.h"
#include "settings/Globals.h"

#include <QDir>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace tillbook::bench {

struct ManyDocumentsCompany {
    QTemporaryDir dir;
    QString path;
    ManyDocumentsCompany() {
        qputenv("TILLBOOK_DATA", dir.path().toUtf8());
        qputenv("TILLBOOK_SETTINGS", QDir(dir.path()).filePath(QStringLiteral("settings.ini")).toUtf8());
        qputenv("TILLBOOK_TODAY", "2025-03-14");
        qunsetenv("TILLBOOK_LEDGER_URL");
        engine::SampleOptions options;
        options.customers = 1;
        options.documents = 1540;
        options.seed = 3;
        options.today = QDate(2025, 3, 14);
        engine::createSampleCompany(QStringLiteral("MANYDOCS"), options, true);
        path = QDir(dir.path()).filePath(QStringLiteral("MANYDOCS.sqlite"));
    }
};

inline ManyDocumentsCompany& company() {
    static ManyDocumentsCompany made;
    return made;
}

// The receipt window signed in to the company, or nullptr when it could not be opened.
inline frmCR* openWindow(benchmark::State& state) {
    company();
    SignInDatabaseID = QStringLiteral("MANYDOCS");
    SignInUser = QStringLiteral("ADMIN");
    SignInPassword = QStringLiteral("ADMIN");
    CurrentDatabase = 1;
    auto* window = new frmCR();
    if (!window->Form_Load()) {
        state.SkipWithError("the company could not be opened");
        delete window;
        return nullptr;
    }
    return window;
}

} // namespace tillbook::bench

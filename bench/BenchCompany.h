#pragma once

// The company the benchmarks measure on: a sample of 100,000 customers and 400,000 documents, made once per
// run in a temporary folder, whose settings file lives there too.

#include "ledger/engine/SampleCompany.h"

#include <QDir>
#include <QTemporaryDir>

namespace tillbook::bench {

struct BenchCompany {
    QTemporaryDir dir;
    QString path;
    BenchCompany() {
        qputenv("TILLBOOK_DATA", dir.path().toUtf8());
        qputenv("TILLBOOK_SETTINGS", QDir(dir.path()).filePath(QStringLiteral("settings.ini")).toUtf8());
        qputenv("TILLBOOK_TODAY", "2025-03-14");
        qunsetenv("TILLBOOK_LEDGER_URL");
        engine::SampleOptions options;
        options.customers = 100000;
        options.documents = 400000;
        options.today = QDate(2025, 3, 14);
        engine::createSampleCompany(QStringLiteral("BENCH"), options, true);
        path = QDir(dir.path()).filePath(QStringLiteral("BENCH.sqlite"));
    }
};

inline BenchCompany& sample() {
    static BenchCompany company;
    return company;
}

} // namespace tillbook::bench

// libFuzzer target for the filter language: any bytes, read as UTF-8, go through the whole public entry
// point. A filter is either refused with a FilterError that points into it, or compiled into SQL that
// SQLite (whose parser is the tighter of the two stores') prepares and runs.
#include "ReceiptView.h"
#include "ledger/filter/Limits.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sqlite3.h>

namespace {

using namespace tillbook::filter;

[[noreturn]] void fault(const char* what, const QString& detail) {
    std::fprintf(stderr, "filter fuzzer: %s\n%s\n", what, detail.left(2000).toUtf8().constData());
    std::abort();
}

sqlite3* receiptTable() {
    static sqlite3* db = [] {
        sqlite3* opened = nullptr;
        sqlite3_open(":memory:", &opened);
        sqlite3_exec(
            opened,
            "PRAGMA case_sensitive_like=ON;"
            "CREATE TABLE R (CNTBTCH INTEGER, CNTITEM INTEGER, CNTOPENINV INTEGER, BATCHSTAT INTEGER,"
            " RMITTYPE INTEGER, CODEPYMTYP TEXT, CODEPAYM TEXT, IDCUST TEXT, ORGID TEXT, NAMECUST TEXT,"
            " ACTIVE INTEGER, AMT INTEGER, AMTDISC INTEGER, DATEBTCH INTEGER, DATEDUE INTEGER);"
            "INSERT INTO R VALUES (12, 1, 2, 1, 5, 'CA', 'CHQ', 'ACME-01', 'SAMINC', 'Say \"hi\" 50%',"
            " 1, 1250500, 125050, 20240105, 0);",
            nullptr, nullptr, nullptr);
        return opened;
    }();
    return db;
}

void runOnSqlite(const SqlFilter& sql) {
    if (sql.where.isEmpty()) // every record
        return;
    const QByteArray text = "SELECT COUNT(*) FROM R WHERE " + sql.where.toUtf8();
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(receiptTable(), text.constData(), int(text.size()), &statement, nullptr) !=
        SQLITE_OK)
        fault("SQLite cannot prepare the compiled filter", QString::fromUtf8(sqlite3_errmsg(receiptTable())));
    if (sqlite3_bind_parameter_count(statement) != sql.parameters.size())
        fault("placeholders and parameters differ in number", sql.where);
    QList<QByteArray> texts; // kept alive until the statement has run
    for (int i = 0; i < sql.parameters.size(); ++i) {
        const QVariant& value = sql.parameters[i];
        if (value.typeId() == QMetaType::LongLong) {
            sqlite3_bind_int64(statement, i + 1, value.toLongLong());
        } else {
            texts << value.toString().toUtf8();
            sqlite3_bind_text(statement, i + 1, texts.last().constData(), int(texts.last().size()),
                              SQLITE_STATIC);
        }
    }
    int status = SQLITE_ROW;
    while (status == SQLITE_ROW)
        status = sqlite3_step(statement);
    if (status != SQLITE_DONE)
        fault("SQLite cannot run the compiled filter", QString::fromUtf8(sqlite3_errmsg(receiptTable())));
    sqlite3_finalize(statement);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString filter = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    try {
        runOnSqlite(compileFilter(filter, receiptView()));
    } catch (const FilterError& error) {
        if (error.position() < 1 || error.position() > filter.size() + 1)
            fault("the error points outside the filter", error.message());
        if (!error.message().startsWith(QStringLiteral("Filter \"")))
            fault("the error does not name the filter", error.message());
    }
    return 0;
}

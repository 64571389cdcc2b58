// Filters as text, the SQL and parameters each compiles to, and the records it selects on SQLite and on
// PostgreSQL: one table. Every filter is compiled on a thread with a small stack, as a Windows main thread
// has.
#include "ReceiptView.h"
#include "ledger/engine/ValueCodec.h"
#include "ledger/filter/ExactNumber.h"
#include "ledger/filter/Limits.h"
#include "support/Company.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>
#include <gtest/gtest.h>
#include <limits>

namespace tillbook::filter {
namespace {

using Ids = QList<int>;
const QString Everything = QStringLiteral("*"); // a row whose SQL text is not compared

struct Row {
    QString filter;
    QString where; // Everything: not compared
    QVariantList parameters;
    Ids selected;
};

// The largest filter accepted: brackets as deep as allowed, each needed in SQL, around as many clauses as
// allowed, padded with % to the longest length allowed. The innermost run selects records 1 and 3.
QString largestFilter() {
    QString filter = R"(IDCUST = "1200")" + times(MaxClauses - MaxNesting - 3, R"( OR IDCUST = "-")") +
                     R"( OR IDCUST LIKE "ACME-PAD")";
    for (int level = 0; level < MaxNesting; ++level)
        filter = QString(level % 2 ? R"(IDCUST = "-" OR (%1))" : "CNTOPENINV >= 0 AND (%1)").arg(filter);
    filter = "AMT > -100 AND " + filter;
    return filter.replace("PAD", QString(MaxFilterLength - filter.size() + 3, u'%'));
}

// Records 1..6 carry values the receipt window filters by; 7..14 only names, for LIKE.
const char* const Columns =
    R"("ID" BIGINT, "CNTBTCH" BIGINT, "CNTITEM" BIGINT, "BATCHSTAT" BIGINT, "RMITTYPE" BIGINT, "CODEPYMTYP" %1,)"
    R"( "CODEPAYM" %1, "IDCUST" %1, "ORGID" %1, "CNTOPENINV" BIGINT, "SWACTV" BIGINT, "AMT" BIGINT,)"
    R"( "AMTDISC" BIGINT, "DATEBTCH" BIGINT, "DATEDUE" BIGINT, "NAMECUST" %1)";
const char* const Records = R"(INSERT INTO R VALUES
    (1, 12, 0, 1, 1, 'CA',  'CA',  '1200',    'SAMINC', 0, 1, 1250500, 125050, 20240105, 20240205, 'Say "hi"'),
    (2, 12, 1, 1, 5, 'CA',  'CHQ', '001200',  'SAMINC', 3, 0, 1234,    123,    20240110, 0,        'Plain'),
    (3, 12, 2, 3, 6, 'CHQ', 'CA',  'ACME-01', 'OTHER',  2, 1, 1235,    124,    0,        20240301, 'Plain'),
    (4, 13, 0, 6, 2, 'CA',  'CA',  'ACME01',  'SAMINC', 0, 1, -1234,   -123,   20231231, 20240101, 'Plain'),
    (5, 13, 1, 7, 5, 'ca',  'CA',  'acme01',  'SAMINC', 1, 0, -1235,   -124,   20240229, 20240229, 'Plain'),
    (6, 12, 1, 4, 7, 'CA',  'CA',  'ACME01',  'OTHER',  0, 1, 0,       0,      20240301, 20240331, 'Plain'))";
const char* const Names[] = {R"(back\slash)", "backslash", "50% off",  "50 off",
                             "a_b",           "axb",       R"(ends\)", "x!y"};

// The records table on one store; an empty connection name when the store cannot run here.
QString openStore(test::StoreKind kind) {
    const QString name = test::storeName(kind);
    QSqlDatabase db;
    if (kind == test::StoreKind::Sqlite) {
        db = QSqlDatabase::addDatabase("QSQLITE", name);
        db.setDatabaseName(":memory:");
    } else {
        static test::TestStore server(kind); // starts the throwaway server for this program's life
        if (!server.unavailableReason().isEmpty())
            return {};
        const QUrl url(qEnvironmentVariable("TILLBOOK_LEDGER_URL"));
        db = QSqlDatabase::addDatabase("QPSQL", name);
        db.setHostName(url.host());
        db.setPort(url.port());
        db.setUserName(url.userName());
        db.setDatabaseName("postgres");
    }
    EXPECT_TRUE(db.open()) << db.lastError().text().toStdString();
    QSqlQuery q(db);
    const QString text = kind == test::StoreKind::Sqlite ? "TEXT" : "TEXT COLLATE \"C\"";
    if (kind == test::StoreKind::Sqlite) {
        EXPECT_TRUE(q.exec("PRAGMA case_sensitive_like=ON"));
    }
    EXPECT_TRUE(q.exec(QString("CREATE TEMP TABLE R (%1)").arg(QString(Columns).arg(text))))
        << q.lastError().text().toStdString();
    EXPECT_TRUE(q.exec(Records)) << q.lastError().text().toStdString();
    int id = 7;
    for (const char* customer : Names) {
        q.prepare(R"(INSERT INTO R ("ID", "NAMECUST") VALUES (?, ?))");
        q.addBindValue(id++);
        q.addBindValue(QString::fromUtf8(customer));
        EXPECT_TRUE(q.exec()) << q.lastError().text().toStdString();
    }
    return name;
}

Ids select(const QString& connection, const SqlFilter& sql) {
    QSqlQuery q(QSqlDatabase::database(connection));
    const QString where = sql.where.isEmpty() ? QString() : " WHERE " + sql.where;
    EXPECT_TRUE(q.prepare("SELECT \"ID\" FROM R" + where + " ORDER BY \"ID\""))
        << q.lastError().text().toStdString();
    for (const QVariant& parameter : sql.parameters)
        q.addBindValue(parameter);
    EXPECT_TRUE(q.exec()) << q.lastError().text().toStdString();
    Ids ids;
    while (q.next())
        ids.append(q.value(0).toInt());
    return ids;
}

class FilterTable : public ::testing::TestWithParam<test::StoreKind> {};

TEST_P(FilterTable, TextToSqlAndTheRecordsSelected) {
    const QString connection = openStore(GetParam());
    if (connection.isEmpty())
        GTEST_SKIP() << "PostgreSQL is not available";
    const qlonglong largest = std::numeric_limits<qlonglong>::max();
    const Ids all{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14};
    const std::vector<Row> rows = {
        // Joined strictly left to right: SQL brackets only where its precedence would read otherwise.
        {"CNTOPENINV>0", R"("CNTOPENINV" > ?)", {0LL}, {2, 3, 5}},
        {"CODEPYMTYP = \"CA\" AND (BATCHSTAT < 3 OR BATCHSTAT >= 6)",
         R"(("CODEPYMTYP" = ? AND ("BATCHSTAT" < ? OR "BATCHSTAT" >= ?)))",
         {"CA", 3LL, 6LL},
         {1, 2, 4}},
        {"CNTBTCH=12 AND CNTITEM=1 OR RMITTYPE=2",
         R"(("CNTBTCH" = ? AND "CNTITEM" = ? OR "RMITTYPE" = ?))",
         {12LL, 1LL, 2LL},
         {2, 4, 6}},
        {"CNTBTCH = 13 or ACTIVE = 1 And CNTITEM = 0",
         R"((("CNTBTCH" = ? OR "SWACTV" = ?) AND "CNTITEM" = ?))",
         {13LL, 1LL, 0LL},
         {1, 4}},
        {"CNTBTCH = 13 OR (ACTIVE = 1 AND CNTITEM = 0)", Everything, {}, {1, 4, 5}},
        {"((CNTBTCH  = 12      ))", R"("CNTBTCH" = ?)", {12LL}, {1, 2, 3, 6}},
        {"CNTBTCH=12 AND (CNTITEM=1 AND RMITTYPE=5) OR (CNTITEM=0 AND RMITTYPE=2)",
         R"(("CNTBTCH" = ? AND "CNTITEM" = ? AND "RMITTYPE" = ? OR ("CNTITEM" = ? AND "RMITTYPE" = ?)))",
         {12LL, 1LL, 5LL, 0LL, 2LL},
         {2, 4}},
        {"", "", {}, all},
        {"   \t ", "", {}, all},
        {"(Active=1)", R"("SWACTV" = ?)", {1LL}, {1, 3, 4, 6}},
        // Text: a parameter as typed, case counts; bare words are text unless they name a field.
        {"IDCUST = 001200", R"("IDCUST" = ?)", {"001200"}, {2}},
        {"IDCUST =1200", Everything, {}, {1}},
        {"ORGID = SAMINC", Everything, {}, {1, 2, 4, 5}},
        {"IDCUST = \"ACME01  \"", Everything, {}, {4, 6}},
        {"IDCUST > ACME01", Everything, {}, {5}},
        {"NAMECUST = \"Say \"\"hi\"\"\"", Everything, {}, {1}},
        {"IDCUST != A AND IDCUST<>B AND IDCUST like \"A%\"",
         R"(("IDCUST" <> ? AND "IDCUST" <> ? AND "IDCUST" LIKE ? ESCAPE '!'))",
         {"A", "B", "A%"},
         {3, 4, 6}},
        {"IDCUST like \"ACME_01\"", Everything, {}, {3}},
        {"IDCUST LIKE %1200", Everything, {}, {1, 2}},
        // LIKE: % and _ are wildcards, \% \_ \\ literals, any other \ and ! literal.
        {R"(NAMECUST LIKE "back\slash")", Everything, {}, {7}},
        {R"(NAMECUST LIKE "%\")", Everything, {}, {13}},
        {R"(NAMECUST LIKE "%\\")", Everything, {}, {13}},
        {R"(NAMECUST LIKE "50\% off")", Everything, {}, {9}},
        {R"(NAMECUST LIKE "50% off")", Everything, {}, {9, 10}},
        {R"(NAMECUST LIKE "a\_b")", Everything, {}, {11}},
        {R"(NAMECUST LIKE "a_b")", Everything, {}, {11, 12}},
        {R"(NAMECUST LIKE "%!%")", Everything, {}, {14}},
        // Whatever a filter holds is a value, never SQL.
        {"IDCUST = \"x' OR 1=1 --\"", R"("IDCUST" = ?)", {"x' OR 1=1 --"}, {}},
        {"IDCUST = \"1200'; DROP TABLE R; --\"", Everything, {}, {}},
        {"IDCUST LIKE \"%' OR '1'='1\"", Everything, {}, {}},
        // Numbers as a put reads them, scaled; more places than the scale still compare exactly.
        {"AMT = １,２５０.５ OR IDCUST = １２", R"(("AMT" = ? OR "IDCUST" = ?))", {1250500LL, "１２"}, {1}},
        {"AMT = -1.234", R"("AMT" = ?)", {-1234LL}, {4}},
        {"AMT > 1.2345", R"("AMT" > ?)", {1234LL}, {1, 3}},
        {"AMT >= 1.2345", Everything, {}, {1, 3}},
        {"AMT < 1.2345", R"("AMT" <= ?)", {1234LL}, {2, 4, 5, 6}},
        {"AMT <= 1.2345", Everything, {}, {2, 4, 5, 6}},
        {"AMT = 1.2345", "0 = 1", {}, {}},
        {"AMT != 1.2345", R"("AMT" IS NOT NULL)", {}, {1, 2, 3, 4, 5, 6}},
        {"AMT = 1.2340", Everything, {}, {2}},
        {"AMT < -1.2345", R"("AMT" <= ?)", {-1235LL}, {5}},
        {"AMT >= -1.2345", Everything, {}, {1, 2, 3, 4, 6}},
        {"AMT < -.0001", Everything, {}, {4, 5}},
        {"BATCHSTAT < 2.5", Everything, {}, {1, 2}},
        {"BATCHSTAT >= 2.5", Everything, {}, {3, 4, 5, 6}},
        {"AMT = 9223372036854775.807", R"("AMT" = ?)", {largest}, {}},
        // Dates written yyyymmdd or "yyyy-mm-dd", kept as yyyymmdd.
        {"DATEBTCH >= 20240101", Everything, {}, {1, 2, 5, 6}},
        {"DATEBTCH <= \"2024-02-29\"", R"("DATEBTCH" <= ?)", {20240229LL}, {1, 2, 3, 4, 5}},
        {"DATEBTCH = 0", Everything, {}, {3}},
        // Field to field, at the finer scale of the two.
        {"DATEBTCH < DATEDUE", R"("DATEBTCH" < "DATEDUE")", {}, {1, 3, 4, 6}},
        {"AMT = amtdisc", R"("AMT" = "AMTDISC" * 10)", {}, {1, 6}},
        {"AMTDISC < AMT", R"("AMTDISC" * 10 < "AMT")", {}, {2, 5}},
        {"CODEPYMTYP = CODEPAYM", Everything, {}, {1, 4, 6}},
        // The limits, each reached.
        {times(MaxClauses, "CNTBTCH=13", " OR "), Everything, {}, {4, 5}},
        {times(MaxNesting, "(") + "CNTBTCH=13" + times(MaxNesting, ")"), R"("CNTBTCH" = ?)", {13LL}, {4, 5}},
        {impliedBrackets(MaxNesting), Everything, {}, {}},
        {largestFilter(), Everything, {}, {1, 3}},
        {"NAMECUST LIKE \"" + QString(MaxFilterLength - 16, u'€') + "\"", Everything, {}, {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.filter.left(200).toStdString());
        std::optional<SqlFilter> sql;
        onSmallStack([&] { sql = compileFilter(row.filter, receiptView()); });
        ASSERT_TRUE(sql);
        if (row.where != Everything) {
            EXPECT_EQ(sql->where, row.where);
            EXPECT_EQ(sql->parameters, row.parameters);
        }
        EXPECT_EQ(select(connection, *sql), row.selected);
    }
}

TILLBOOK_EACH_STORE(FilterTable);

TEST(FilterNumbers, ReadAsPutsReadThem) {
    for (const char* word :
         {"+1,2", "-.5", "1.", ",7", "١٢", "1.2.3", "1,2.3,4", ".", ",", "1e5", "½", "①"}) {
        bool extra = false;
        const auto put = engine::parseScaled(word, 3, extra);
        const auto read = readNumber(word);
        ASSERT_EQ(read.has_value(), put.has_value()) << word;
        EXPECT_EQ(read ? scaleNumber(*read, 3)->floor : 0, put.value_or(0)) << word;
    }
}

} // namespace
} // namespace tillbook::filter

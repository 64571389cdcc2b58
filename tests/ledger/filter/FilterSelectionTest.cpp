// Filters run against a SQLite table: each selects exactly the rows it says.
#include "ReceiptView.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <bitset>
#include <gtest/gtest.h>
#include <random>

namespace tillbook::filter {
namespace {

using Ids = QList<int>;

class FilterSelection : public ::testing::Test {
protected:
    static constexpr auto Connection = "filter-selection";

    static void SetUpTestSuite() {
        auto db = QSqlDatabase::addDatabase("QSQLITE", Connection);
        db.setDatabaseName(":memory:");
        ASSERT_TRUE(db.open());
        QSqlQuery q(db);
        ASSERT_TRUE(q.exec("PRAGMA case_sensitive_like=ON"));
        ASSERT_TRUE(q.exec("CREATE TABLE R (ID INTEGER, CNTBTCH INTEGER, CNTITEM INTEGER, BATCHSTAT INTEGER,"
                           " RMITTYPE INTEGER, CODEPYMTYP TEXT, CODEPAYM TEXT, IDCUST TEXT, ORGID TEXT,"
                           " CNTOPENINV INTEGER, ACTIVE INTEGER, AMT INTEGER, AMTDISC INTEGER,"
                           " DATEBTCH INTEGER, DATEDUE INTEGER, NAMECUST TEXT)"));
        ASSERT_TRUE(q.exec(R"(INSERT INTO R VALUES
            (1, 12, 0, 1, 1, 'CA',  'CA',  '1200',    'SAMINC', 0, 1, 1250500, 125050, 20240105, 20240205, 'Say "hi"'),
            (2, 12, 1, 1, 5, 'CA',  'CHQ', '001200',  'SAMINC', 3, 0, 1234,    123,    20240110, 0,        'Plain'),
            (3, 12, 2, 3, 6, 'CHQ', 'CA',  'ACME-01', 'OTHER',  2, 1, 1235,    124,    0,        20240301, 'Plain'),
            (4, 13, 0, 6, 2, 'CA',  'CA',  'ACME01',  'SAMINC', 0, 1, -1234,   -123,   20231231, 20240101, 'Plain'),
            (5, 13, 1, 7, 5, 'ca',  'CA',  'acme01',  'SAMINC', 1, 0, -1235,   -124,   20240229, 20240229, 'Plain'),
            (6, 12, 1, 4, 7, 'CA',  'CA',  'ACME01',  'OTHER',  0, 1, 0,       0,      20240301, 20240331, 'Plain'))"))
            << q.lastError().text().toStdString();
    }

    static void TearDownTestSuite() { QSqlDatabase::removeDatabase(Connection); }

    static Ids select(const QString& filter) {
        const SqlFilter sql = compileFilter(filter, receiptView());
        QSqlQuery q(QSqlDatabase::database(Connection));
        const QString where = sql.where.isEmpty() ? QString() : " WHERE " + sql.where;
        EXPECT_TRUE(q.prepare("SELECT ID FROM R" + where + " ORDER BY ID"))
            << q.lastError().text().toStdString();
        for (const QVariant& parameter : sql.parameters)
            q.addBindValue(parameter);
        EXPECT_TRUE(q.exec()) << q.lastError().text().toStdString();
        Ids ids;
        while (q.next())
            ids.append(q.value(0).toInt());
        return ids;
    }

    static void expectSelects(const std::vector<std::pair<QString, Ids>>& cases) {
        for (const auto& [filter, ids] : cases)
            EXPECT_EQ(select(filter), ids) << "filter: " << filter.toStdString();
    }
};

TEST_F(FilterSelection, FiltersTheProgramBuilds) {
    const QString b = QString::number(12), e = QString::number(1), n = QString::number(13);
    const QString c = "ACME-01";
    expectSelects({
        {"CNTOPENINV>0", {2, 3, 5}},
        {"CODEPYMTYP = \"CA\" AND (BATCHSTAT < 3 OR BATCHSTAT >= 6)", {1, 2, 4}},
        {"(Active=1)", {1, 3, 4, 6}},
        {"CNTBTCH=" + n, {4, 5}},
        {"IDCUST =1200", {1}},
        {"IDCUST =ACME01", {4, 6}},
        {"(CNTBTCH=" + b + " AND CNTITEM=" + e + ")", {2, 6}},
        {"", {1, 2, 3, 4, 5, 6}},
        {"(BATCHSTAT=1 and CODEPYMTYP=CA)", {1, 2}},
        {"(CNTBTCH=" + n + ")", {4, 5}},
        {"(CNTBTCH  = " + b + "      )", {1, 2, 3, 6}},
        {"(CODEPYMTYP = \"CA\" AND CNTBTCH = " + b + "       AND RMITTYPE <= 5)", {1, 2}},
        {"CNTBTCH  =" + b, {1, 2, 3, 6}},
        {"CODEPAYM = \"CA\" AND CNTBTCH = " + b + " AND CNTITEM =" + "0", {1}},
        {"(CNTBTCH  = " + b + ")", {1, 2, 3, 6}},
        {"ORGID = SAMINC", {1, 2, 4, 5}},
        {"CNTBTCH = " + b + " AND CNTITEM = " + e, {2, 6}},
        {"IDCUST = " + c, {3}},
        {"IDCUST=ACME01 AND CNTBTCH =" + b + " AND CNTITEM =" + e, {6}},
        {"CNTBTCH =" + n + " AND CNTITEM =" + e, {5}},
    });
}

TEST_F(FilterSelection, AndAndOrHaveNoPrecedence) {
    expectSelects({
        {"CNTBTCH = 13 OR ACTIVE = 1 AND CNTITEM = 0", {1, 4}},
        {"ACTIVE = 1 AND CNTITEM = 0 OR CNTBTCH = 13", {1, 4, 5}},
        {"CNTBTCH = 13 OR (ACTIVE = 1 AND CNTITEM = 0)", {1, 4, 5}},
    });
}

TEST_F(FilterSelection, TextComparesCaseSensitivelyAsTyped) {
    expectSelects({
        {"IDCUST LIKE ACME%", {3, 4, 6}},
        {"IDCUST like \"ACME_01\"", {3}},
        {"IDCUST LIKE %1200", {1, 2}},
        {"IDCUST = 001200", {2}},
        {"IDCUST = \"ACME01  \"", {4, 6}},
        {"IDCUST > ACME01", {5}},
        {"NAMECUST = \"Say \"\"hi\"\"\"", {1}},
    });
}

TEST_F(FilterSelection, DecimalsWithExtraPlacesSelectExactly) {
    expectSelects({
        {"AMT > 1.2345", {1, 3}},
        {"AMT >= 1.2345", {1, 3}},
        {"AMT < 1.2345", {2, 4, 5, 6}},
        {"AMT <= 1.2345", {2, 4, 5, 6}},
        {"AMT = 1.2345", {}},
        {"AMT != 1.2345", {1, 2, 3, 4, 5, 6}},
        {"AMT = 1.2340", {2}},
        {"AMT = 1250.5", {1}},
        {"AMT < -1.2345", {5}},
        {"AMT >= -1.2345", {1, 2, 3, 4, 6}},
        {"AMT < -.0001", {4, 5}},
        {"BATCHSTAT < 2.5", {1, 2}},
        {"BATCHSTAT >= 2.5", {3, 4, 5, 6}},
    });
}

TEST_F(FilterSelection, DatesInEveryWrittenForm) {
    expectSelects({
        {"DATEBTCH >= 20240101", {1, 2, 5, 6}},
        {"DATEBTCH < \"2024-01-06\"", {1, 3, 4}},
        {"DATEBTCH = \"20240229\"", {5}},
        {"DATEBTCH = 0", {3}},
    });
}

TEST_F(FilterSelection, FieldToField) {
    expectSelects({
        {"DATEBTCH < DATEDUE", {1, 3, 4, 6}},
        {"DATEBTCH = datedue", {5}},
        {"AMT = AMTDISC", {1, 6}},
        {"AMTDISC < AMT", {2, 5}},
        {"CODEPYMTYP = CODEPAYM", {1, 4, 6}},
    });
}

TEST_F(FilterSelection, InjectedSqlIsOnlyEverAValue) {
    expectSelects({
        {"IDCUST = \"x' OR 1=1 --\"", {}},
        {"IDCUST = \"1200'; DROP TABLE R; --\"", {}},
        {"IDCUST = x';DROP", {}},
        {"IDCUST LIKE \"%' OR '1'='1\"", {}},
    });
    EXPECT_EQ(select("").size(), 6);
}

// A random filter over the yes/no fields F0..F4, and which of their 32 combinations it selects when
// read strictly left to right.
using Selecting = std::pair<QString, std::bitset<32>>;

Selecting randomRun(std::mt19937& random, int depth) {
    Selecting run;
    for (int t = 0, terms = int(random() % 5) + 1; t < terms; ++t) {
        Selecting term;
        if (depth > 0 && random() % 3 == 0) {
            term = randomRun(random, depth - 1);
            term.first = "(" + term.first + ")";
        } else {
            const int field = int(random() % 5), value = int(random() % 2);
            term.first = QString("F%1 = %2").arg(field).arg(value);
            for (int row = 0; row < 32; ++row)
                term.second[size_t(row)] = ((row >> field) & 1) == value;
        }
        const bool isAnd = random() % 2;
        run = t == 0 ? term
                     : Selecting{run.first + (isAnd ? " AND " : " OR ") + term.first,
                                 isAnd ? run.second & term.second : run.second | term.second};
    }
    return run;
}

TEST_F(FilterSelection, SqlKeepsTheStrictLeftToRightReading) {
    QSqlQuery q(QSqlDatabase::database(Connection));
    ASSERT_TRUE(q.exec("CREATE TABLE B AS WITH RECURSIVE N(ID) AS (SELECT 0 UNION ALL SELECT ID + 1 FROM N "
                       "WHERE ID < 31) SELECT ID, ID & 1 F0, ID >> 1 & 1 F1, ID >> 2 & 1 F2, ID >> 3 & 1 F3, "
                       "ID >> 4 & 1 F4 FROM N"));
    const FieldResolver flags = [](const QString& name) { return FieldRef{name, FieldType::Boolean}; };
    std::mt19937 random(14);
    for (int i = 0; i < 500; ++i) {
        const auto [filter, expected] = randomRun(random, 3);
        const SqlFilter sql = compileFilter(filter, flags);
        ASSERT_TRUE(q.prepare("SELECT ID FROM B WHERE " + sql.where));
        for (const QVariant& parameter : sql.parameters)
            q.addBindValue(parameter);
        ASSERT_TRUE(q.exec());
        std::bitset<32> selected;
        while (q.next())
            selected[size_t(q.value(0).toInt())] = true;
        ASSERT_EQ(selected, expected) << filter.toStdString() << "\n  as " << sql.where.toStdString();
    }
}

} // namespace
} // namespace tillbook::filter

// The SQL text and parameters that filters compile to.
#include "ReceiptView.h"
#include "ledger/engine/ValueCodec.h"
#include "ledger/filter/ExactNumber.h"

#include <gtest/gtest.h>
#include <limits>

namespace tillbook::filter {
namespace {

void expectSql(const QString& filter, const QString& where, const QVariantList& parameters) {
    const SqlFilter sql = compileFilter(filter, receiptView());
    EXPECT_EQ(sql.where, where) << filter.toStdString();
    EXPECT_EQ(sql.parameters, parameters) << filter.toStdString();
}

TEST(FilterSql, ClausesJoinLeftToRightWithBracketsOnlyWhereSqlNeedsThem) {
    expectSql("CNTOPENINV>0", R"("CNTOPENINV" > ?)", {0LL});
    expectSql("CODEPYMTYP = \"CA\" AND (BATCHSTAT < 3 OR BATCHSTAT >= 6)",
              R"(("CODEPYMTYP" = ? AND ("BATCHSTAT" < ? OR "BATCHSTAT" >= ?)))", {"CA", 3LL, 6LL});
    // AND binds before OR in SQL, so an OR after ANDs needs nothing; an AND after an OR brackets the left.
    expectSql("CNTBTCH=1 AND CNTITEM=2 OR RMITTYPE=3",
              R"(("CNTBTCH" = ? AND "CNTITEM" = ? OR "RMITTYPE" = ?))", {1LL, 2LL, 3LL});
    expectSql("CNTBTCH=1 or CNTITEM=2 And RMITTYPE=3",
              R"((("CNTBTCH" = ? OR "CNTITEM" = ?) AND "RMITTYPE" = ?))", {1LL, 2LL, 3LL});
    expectSql("CNTBTCH=1 OR CNTBTCH=2 AND CNTITEM=3 OR CNTBTCH=4 AND CNTITEM=5",
              R"(((("CNTBTCH" = ? OR "CNTBTCH" = ?) AND "CNTITEM" = ? OR "CNTBTCH" = ?) AND "CNTITEM" = ?))",
              {1LL, 2LL, 3LL, 4LL, 5LL});
    expectSql("((CNTBTCH  = 12      ))", R"("CNTBTCH" = ?)", {12LL});
    expectSql("IDCUST != A AND IDCUST<>B AND IDCUST like \"A%\"",
              R"(("IDCUST" <> ? AND "IDCUST" <> ? AND "IDCUST" LIKE ? ESCAPE '!'))", {"A", "B", "A%"});
    // Written brackets around a run of the joining operator vanish; around the other operator they stay.
    expectSql("CNTBTCH=1 AND (CNTITEM=2 AND (RMITTYPE=3)) AND CNTITEM=4",
              R"(("CNTBTCH" = ? AND "CNTITEM" = ? AND "RMITTYPE" = ? AND "CNTITEM" = ?))",
              {1LL, 2LL, 3LL, 4LL});
    expectSql("(CNTBTCH=1 OR CNTITEM=2) OR (RMITTYPE=3 AND CNTITEM=4)",
              R"(("CNTBTCH" = ? OR "CNTITEM" = ? OR ("RMITTYPE" = ? AND "CNTITEM" = ?)))",
              {1LL, 2LL, 3LL, 4LL});
}

TEST(FilterSql, LikePatternsNameTheirEscapeAndKeepBackslashesThatEscapeNothing) {
    const auto pattern = [](const QString& written) {
        const SqlFilter sql = compileFilter("NAMECUST LIKE \"" + written + "\"", receiptView());
        EXPECT_EQ(sql.where, R"("NAMECUST" LIKE ? ESCAPE '!')");
        return sql.parameters.value(0).toString();
    };
    EXPECT_EQ(pattern(R"(50\% off_)"), "50!% off_");
    EXPECT_EQ(pattern(R"(a\_b)"), "a!_b");
    EXPECT_EQ(pattern(R"(back\slash)"), R"(back\slash)");
    EXPECT_EQ(pattern(R"(%\)"), R"(%\)");
    EXPECT_EQ(pattern(R"(\\%)"), R"(\%)");
    EXPECT_EQ(pattern(R"(\\\%)"), R"(\!%)");
    EXPECT_EQ(pattern("hey! %  "), "hey!! %  "); // the escape character itself, and trailing blanks kept
}

TEST(FilterSql, NumbersReadAsPutsReadThem) {
    expectSql("CNTBTCH = １２", R"("CNTBTCH" = ?)", {12LL});
    expectSql("AMT = １,２５０.５", R"("AMT" = ?)", {1250500LL});
    expectSql("AMT >= -1,250.5", R"("AMT" >= ?)", {-1250500LL});
    expectSql("IDCUST = １２", R"("IDCUST" = ?)", {QString("１２")}); // text stays as typed

    // Whatever a put reads as a number, a filter reads alike, and nothing else.
    for (const QString& word :
         {QString("12"), QString("+1,2"), QString("-.5"), QString("1."), QString(",7"), QString("١٢"),
          QString("１.５"), QString("1.2.3"), QString("1,2.3,4"), QString("."), QString("-"), QString(","),
          QString("1e5"), QString("0x10"), QString("½"), QString("①"), QString("--1")}) {
        bool extra = false;
        const auto put = engine::parseScaled(word, 3, extra);
        const auto read = readNumber(word);
        ASSERT_EQ(read.has_value(), put.has_value()) << word.toStdString();
        if (put) {
            EXPECT_EQ(scaleNumber(*read, 3)->floor, *put) << word.toStdString();
        }
    }
}

TEST(FilterSql, EmptyFilterSelectsEverything) {
    for (const QString& filter : {QString(), QString(""), QString("   \t ")}) {
        const SqlFilter sql = compileFilter(filter, receiptView());
        EXPECT_TRUE(sql.where.isEmpty());
        EXPECT_TRUE(sql.parameters.isEmpty());
    }
}

TEST(FilterSql, ParametersAreTextForTextFieldsAndIntegersOtherwise) {
    expectSql("IDCUST = 001200", R"("IDCUST" = ?)", {QString("001200")});
    expectSql("DATEBTCH <= \"2024-02-29\"", R"("DATEBTCH" <= ?)", {20240229LL});
    expectSql("Active=1", R"("ACTIVE" = ?)", {1LL});
    const SqlFilter sql = compileFilter("AMT = -1250.5 AND IDCUST = 12", receiptView());
    EXPECT_EQ(sql.parameters[0].typeId(), QMetaType::LongLong);
    EXPECT_EQ(sql.parameters[0].toLongLong(), -1250500);
    EXPECT_EQ(sql.parameters[1].typeId(), QMetaType::QString);
}

TEST(FilterSql, DecimalsWithMorePlacesThanTheScaleCompareExactly) {
    expectSql("AMT > 1.2345", R"("AMT" > ?)", {1234LL});
    expectSql("AMT < 1.2345", R"("AMT" <= ?)", {1234LL});
    expectSql("AMT = 1.2345", "0 = 1", {});
    expectSql("AMT != 1.2345", R"("AMT" IS NOT NULL)", {});
    expectSql("AMT < -1.2345", R"("AMT" <= ?)", {-1235LL});
    expectSql("AMT = 9223372036854775.807", R"("AMT" = ?)", {std::numeric_limits<qlonglong>::max()});
}

TEST(FilterSql, FieldToFieldMeetsAtTheFinerScaleAndColumnsComeFromTheResolver) {
    expectSql("AMT = amtdisc", R"("AMT" = "AMTDISC" * 10)", {});
    expectSql("AMTDISC < AMT", R"("AMTDISC" * 10 < "AMT")", {});
    const FieldResolver renamed = [](const QString& name) -> std::optional<FieldRef> {
        if (name.compare("active", Qt::CaseInsensitive) == 0)
            return FieldRef{"SWACTV", FieldType::Boolean};
        return std::nullopt;
    };
    EXPECT_EQ(compileFilter("(Active=1)", renamed).where, R"("SWACTV" = ?)");
}

} // namespace
} // namespace tillbook::filter

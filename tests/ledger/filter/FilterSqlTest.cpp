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
    expectSql("((CNTBTCH  = 12      ))", R"("CNTBTCH" = ?)", {12LL});
    expectSql("IDCUST != A AND IDCUST<>B AND IDCUST like \"A%\"",
              R"(("IDCUST" <> ? AND "IDCUST" <> ? AND "IDCUST" LIKE ? ESCAPE '!'))", {"A", "B", "A%"});
    // Written brackets around a run of the joining operator vanish; around the other operator they stay.
    expectSql("CNTBTCH=1 AND (CNTITEM=2 AND RMITTYPE=3) OR (CNTITEM=4 AND RMITTYPE=5)",
              R"(("CNTBTCH" = ? AND "CNTITEM" = ? AND "RMITTYPE" = ? OR ("CNTITEM" = ? AND "RMITTYPE" = ?)))",
              {1LL, 2LL, 3LL, 4LL, 5LL});
}

TEST(FilterSql, NumbersReadAsPutsReadThem) {
    expectSql("AMT = １,２５０.５ OR IDCUST = １２", R"(("AMT" = ? OR "IDCUST" = ?))",
              {1250500LL, QString("１２")});
    for (const char* word :
         {"+1,2", "-.5", "1.", ",7", "١٢", "1.2.3", "1,2.3,4", ".", ",", "1e5", "½", "①"}) {
        bool extra = false;
        const auto put = engine::parseScaled(word, 3, extra);
        const auto read = readNumber(word);
        ASSERT_EQ(read.has_value(), put.has_value()) << word;
        EXPECT_EQ(read ? scaleNumber(*read, 3)->floor : 0, put.value_or(0)) << word;
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

// Filters that cannot be compiled say what is wrong and where.
#include "ReceiptView.h"

#include <gtest/gtest.h>

namespace tillbook::filter {
namespace {

void expectError(const QString& filter, int position, const QString& fragment) {
    try {
        const SqlFilter sql = compileFilter(filter, receiptView());
        ADD_FAILURE() << "no error for " << filter.toStdString() << ", got " << sql.where.toStdString();
    } catch (const InputError& error) {
        EXPECT_EQ(error.position(), position) << error.what();
        EXPECT_TRUE(error.message().contains(fragment))
            << error.what() << "\n  lacks: " << fragment.toStdString();
        EXPECT_TRUE(error.message().startsWith("Filter \"" + filter + "\": ")) << error.what();
        EXPECT_EQ(QString::fromStdString(error.what()), error.message());
    }
}

TEST(FilterErrors, SyntaxErrorsNameTheOffendingTokenAndPosition) {
    expectError("(CNTBTCH= AND X)", 11, R"(expected a value after "=" at position 11, found "AND")");
    expectError("CNTBTCH =", 10, "expected a value after \"=\" at position 10, found the end of the filter");
    expectError("CNTBTCH 12", 9, R"(expected an operator (= != <> < > <= >= LIKE) after "CNTBTCH")");
    expectError("CNTBTCH =< 5", 9, R"("=<" is not an operator)");
    expectError("CNTBTCH = 12 CNTITEM = 1", 14,
                R"(expected AND, OR or the end of the filter at position 14, found "CNTITEM")");
    expectError("CNTBTCH = 1 AND", 16, "expected a field name after \"AND\"");
    expectError("AND CNTBTCH = 1", 1, "expected a field name at the start");
    expectError("()", 2, R"x(expected a field name after "(" at position 2, found ")")x");
    expectError("IDCUST = \"ACME", 10, "the quote opened here is never closed at position 10");
}

TEST(FilterErrors, UnbalancedBrackets) {
    expectError("(CNTBTCH = 12 AND (CNTITEM = 1)", 1,
                "the bracket opened here is never closed at position 1");
    expectError("CNTBTCH = 12)", 13, "closes a bracket that was never opened");
    expectError("(CNTBTCH = 12 CNTITEM = 1)", 15,
                R"x(expected AND, OR or ")" at position 15, found "CNTITEM")x");
}

TEST(FilterErrors, FieldsAndTypes) {
    expectError("CNTBTCH = 1 AND NOSUCH = 1", 17, R"(unknown field "NOSUCH" at position 17)");
    expectError("CNTBTCH = ABC", 11, R"(field "CNTBTCH" expects a number at position 11, found "ABC")");
    expectError("CNTBTCH = \"12\"", 11, R"(expects a number at position 11, found "12")");
    expectError("CNTBTCH = 99999999999999999999", 11, "too large");
    expectError("AMT = 9223372036854775.808", 7, "too large");
    expectError("Active = 2", 10, R"(field "Active" is yes or no and expects 0 or 1)");
    expectError("CNTBTCH LIKE 1%", 9, R"(LIKE needs a text field, but "CNTBTCH" is a number field)");
    expectError("IDCUST = CNTBTCH", 10,
                "cannot compare field \"IDCUST\" (a text field) with field \"CNTBTCH\"");
    for (const char* date : {"20240230", "2024-01-05", "\"05/01/2024\"", "\"2024-1-5\"", "2024"})
        expectError(QString("DATEBTCH = ") + date, 12,
                    R"(field "DATEBTCH" expects a date written yyyymmdd or "yyyy-mm-dd")");
}

TEST(FilterErrors, InjectionThroughNamesOrStructureFailsCleanly) {
    expectError(R"("IDCUST; DROP TABLE x" = 1)", 1, "expected a field name (written without quotes)");
    expectError("IDCUST;DROP = 1", 1, R"(unknown field "IDCUST;DROP")");
    expectError(R"(IDCUST = "1200" OR "1"="1")", 20, "expected a field name");
    expectError("IDCUST = x' OR '1'='1'", 16, R"(unknown field "'1'")");
}

TEST(FilterErrors, MessagesQuoteTheFilterAsWritten) {
    expectError("IDCUST = %1 AND", 16, R"(expected a field name after "AND" at position 16)");
    expectError("IDCUST LIKE ORGID", 13, R"(LIKE needs a pattern, but "ORGID" is a field of the view)");
}

} // namespace
} // namespace tillbook::filter

// Filters that cannot be compiled, each with where and what the error says: one table. Compiled on a
// thread with a 1 MB stack, as a Windows main thread has, so that no filter of any size or depth crashes.
#include "ReceiptView.h"
#include "ledger/filter/Limits.h"

#include <gtest/gtest.h>

namespace tillbook::filter {
namespace {

struct Refusal {
    QString filter;
    qsizetype position;
    QString fragment; // a part of the message after the quoted filter
};

TEST(FilterErrors, TextToItsError) {
    const QString tooMany = times(MaxClauses + 1, "CNTBTCH=1", " OR ");
    const QString implied = impliedBrackets(MaxNesting + 1);
    const QString both = times(MaxNesting, "(") + impliedBrackets(1) + times(MaxNesting, ")");
    std::vector<Refusal> refusals = {
        // Syntax: the offending token and its position.
        {"(CNTBTCH= AND X)", 11, R"(expected a value after "=" at position 11, found "AND")"},
        {"CNTBTCH =", 10, "expected a value after \"=\" at position 10, found the end of the filter"},
        {"CNTBTCH 12", 9, R"(expected an operator (= != <> < > <= >= LIKE) after "CNTBTCH")"},
        {"CNTBTCH =< 5", 9, R"("=<" is not an operator)"},
        {"CNTBTCH = 12 CNTITEM = 1", 14,
         R"(expected AND, OR or the end of the filter at position 14, found "CNTITEM")"},
        {"CNTBTCH = 1 AND", 16, "expected a field name after \"AND\""},
        {"AND CNTBTCH = 1", 1, "expected a field name at the start"},
        {"()", 2, R"x(expected a field name after "(" at position 2, found ")")x"},
        {"IDCUST = \"ACME", 10, "the quote opened here is never closed at position 10"},
        {"IDCUST = %1 AND", 16, R"(expected a field name after "AND" at position 16)"},
        // Brackets.
        {"(CNTBTCH = 12 AND (CNTITEM = 1)", 1, "the bracket opened here is never closed at position 1"},
        {"CNTBTCH = 12)", 13, "closes a bracket that was never opened"},
        {"(CNTBTCH = 12 CNTITEM = 1)", 15, R"x(expected AND, OR or ")" at position 15, found "CNTITEM")x"},
        // Fields and the values their types take.
        {"CNTBTCH = 1 AND NOSUCH = 1", 17, R"(unknown field "NOSUCH" at position 17)"},
        {"CNTBTCH = ABC", 11, R"(field "CNTBTCH" expects a number at position 11, found "ABC")"},
        {"CNTBTCH = \"12\"", 11, R"(expects a number at position 11, found "12")"},
        {"CNTBTCH = 99999999999999999999", 11, "too large"},
        {"AMT = 9223372036854775.808", 7, "too large"},
        {"Active = 2", 10, R"(field "Active" is yes or no and expects 0 or 1)"},
        {"CNTBTCH LIKE 1%", 9, R"(LIKE needs a text field, but "CNTBTCH" is a number field)"},
        {"IDCUST LIKE ORGID", 13, R"(LIKE needs a pattern, but "ORGID" is a field of the view)"},
        {"IDCUST = CNTBTCH", 10, "cannot compare field \"IDCUST\" (a text field) with field \"CNTBTCH\""},
        // SQL through names or structure.
        {R"("IDCUST; DROP TABLE x" = 1)", 1, "expected a field name (written without quotes)"},
        {"IDCUST;DROP = 1", 1, R"(unknown field "IDCUST;DROP")"},
        {R"(IDCUST = "1200" OR "1"="1")", 20, "expected a field name"},
        {"IDCUST = x' OR '1'='1'", 16, R"(unknown field "'1'")"},
        // The limits, each passed by one.
        {times(20000, "CNTBTCH = 12", " AND "), MaxFilterLength + 1,
         "at most 16384 characters long, and this one goes on at position 16385"},
        {times(65000, "("), MaxFilterLength + 1, "((((...\" (65000 characters): a filter may be"},
        {times(3899, "("), MaxNesting + 1, "brackets may nest at most 25 deep at position 26"},
        {tooMany, tooMany.size() - 8, "at most 500 clauses, and this is clause 501"},
        {implied, implied.lastIndexOf(" AND ") + 2, "counting the one this AND implies"},
        {both, both.indexOf(" AND ") + 2, "counting the one this AND implies"},
    };
    for (const char* date : {"20240230", "2024-01-05", "\"05/01/2024\"", "\"2024-1-5\"", "2024"})
        refusals.push_back({QString("DATEBTCH = ") + date, 12,
                            R"(field "DATEBTCH" expects a date written yyyymmdd or "yyyy-mm-dd")"});

    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.filter.left(200).toStdString());
        std::optional<InputError> error;
        onSmallStack([&] {
            try {
                compileFilter(refusal.filter, receiptView());
            } catch (const InputError& e) {
                error = e;
            }
        });
        ASSERT_TRUE(error) << "compiled";
        EXPECT_EQ(error->position(), refusal.position) << error->what();
        EXPECT_TRUE(error->message().contains(refusal.fragment)) << error->what();
        // The filter quoted as written, shortened when long.
        if (refusal.filter.size() <= 80) {
            EXPECT_TRUE(error->message().startsWith("Filter \"" + refusal.filter + "\": ")) << error->what();
        }
        EXPECT_EQ(QString::fromStdString(error->what()), error->message());
    }
}

} // namespace
} // namespace tillbook::filter

// Reading typed numbers, showing amounts and dates.
#include "ledger/Formats.h"

#include "support/Company.h"

#include <gtest/gtest.h>

using namespace tillbook;
using tillbook::test::ScopedEnv;

namespace {

Money m(std::int64_t thousandths) {
    return Money::fromThousandths(thousandths);
}

} // namespace

TEST(MoneyParse, ExactTextWithCommasSignsAndRefusals) {
    const std::pair<const char*, std::int64_t> read[] = {
        {"1,250.00", 1250000}, {" -12.5 ", -12500}, {".25", 250}, {"0.1", 100}}; // no binary fraction drift
    for (const auto& [text, thousandths] : read)
        EXPECT_EQ(Money::parse(text), m(thousandths)) << text;
    for (const char* refused : {"1.2345", "12abc", "", "-", "99999999999999999999"})
        EXPECT_FALSE(Money::parse(refused).has_value()) << refused;
}

TEST(MoneyArithmetic, ResultsBeyondTheRangeThrowInsteadOfWrapping) {
    const Money top = m(std::numeric_limits<std::int64_t>::max());
    EXPECT_THROW(top + m(1), InputError);
    EXPECT_THROW(-top - m(1), InputError); // the lowest 64-bit value is no amount: it has no negation
    EXPECT_THROW(-top - top, InputError);
    EXPECT_THROW(Money::fromWhole(std::numeric_limits<std::int64_t>::max() / 100), InputError);
    EXPECT_THROW(Money::fromCents(std::numeric_limits<std::int64_t>::min() / 5), InputError);
    Money total = top;
    EXPECT_THROW(total += m(1), InputError);
    EXPECT_EQ(total, top); // a refused addition changes nothing
    EXPECT_EQ(top - top + m(-5), m(-5));
    EXPECT_EQ(-(-top), top);
}

// Kept amounts round half to even; formats round half away from zero.
TEST(MoneyRounding, BankersForKeptAmountsAwayFromZeroForFormats) {
    const std::int64_t cases[][3] = {
        {12345, 12340, 12350}, {12355, 12360, 12360}, {-12345, -12340, -12350}, {12341, 12340, 12340}};
    for (const auto& [amount, bankers, away] : cases) {
        EXPECT_EQ(m(amount).roundedToCentsBankers(), m(bankers)) << amount;
        EXPECT_EQ(m(amount).roundedToCentsAwayFromZero(), m(away)) << amount;
    }
}

// The leading number only, whatever follows it; amounts exact to the thousandth, half to even beyond.
TEST(LenientParse, LeadingNumberOnly) {
    QList<int> shorts; // 0 where the number does not fit
    for (const char* text :
         {"7", "", "2.5", "3.5", "-1", "32767", "40000", "12abc", "  -3.5x", "1,250", "2.51"})
        shorts << Int16Of(text);
    EXPECT_EQ(shorts, QList<int>({7, 0, 2, 4, -1, 32767, 0, 12, -4, 1, 3}));
    const std::pair<const char*, std::int64_t> stripped[] = {
        {"1,2,3", 123000},      {"12abc", 12000}, {"", 0},       {"1,234.50", 1234500},
        {"1234.5678", 1234568}, {"0.0005", 0},    {"0.0015", 2}, {"0.00051", 1},
        {"-7.25abc", -7250},    {"1.2.3", 1200},  {"abc", 0}};
    for (const auto& [text, thousandths] : stripped)
        EXPECT_EQ(Strip_Commas(text), m(thousandths)) << text;
}

// A format rounds half away from zero.
TEST(AmountFormat, ThousandsAndTwoDecimals) {
    QStringList shown;
    for (std::int64_t thousandths :
         {0LL, 5LL, -5LL, 999990LL, 1000000LL, -1234500LL, 1234567891LL, 123456789012345LL})
        shown << FormatAmount(m(thousandths));
    EXPECT_EQ(shown.join(u' '), "0.00 0.01 -0.01 999.99 1,000.00 -1,234.50 1,234,567.89 123,456,789,012.35");
}

TEST(DigitsAndDates, FixedForms) {
    EXPECT_EQ(FormatDigits(7, 4), "0007");
    EXPECT_EQ(FormatDigits(123, 2), "123");
    EXPECT_EQ(FormatDateCompact(QDate(2026, 3, 5)), "20260305");
    EXPECT_EQ(FormatDateLong(QDate(2026, 3, 5)), "March 05, 2026");
}

TEST(DigitsAndDates, ShortDateFormFollowsTheSettingAndHasAFixedLength) {
    {
        ScopedEnv env("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
        EXPECT_EQ(FormatShortDate(QDate(2026, 3, 5)), "03/05/2026");
        EXPECT_EQ(ParseShortDate("03/05/2026"), QDate(2026, 3, 5));
        for (const char* bad : {"3/5/2026", "02/30/2026", ""})
            EXPECT_FALSE(ParseShortDate(bad).isValid()) << bad;
    }
    {
        ScopedEnv env("TILLBOOK_SHORT_DATE", "dd.MM.yyyy");
        EXPECT_EQ(FormatShortDate(QDate(2026, 3, 5)), "05.03.2026");
    }
    const QString pattern = ShortDatePattern();
    EXPECT_EQ(pattern.size(), 10) << pattern.toStdString();
    EXPECT_EQ(pattern.count(u'y'), 4);
}

// An unusable value is said, and the system's own is used instead of a misreading.
TEST(DigitsAndDates, TodayCanBeFixedAndUnusableSettingsAreSaidAndPassedOver) {
    {
        ScopedEnv env("TILLBOOK_TODAY", "2026-03-15");
        EXPECT_EQ(Today(), QDate(2026, 3, 15));
        EXPECT_TRUE(EnvironmentProblems().isEmpty());
    }
    const QString systemPattern = [] {
        ScopedEnv none("TILLBOOK_SHORT_DATE", "");
        return ShortDatePattern();
    }();
    for (const char* form : {"garbage", "M/d/yyyy", "dd/MM/yy", "MM/MM/yyyy"}) {
        ScopedEnv env("TILLBOOK_SHORT_DATE", form);
        EXPECT_EQ(ShortDatePattern(), systemPattern) << form;
        ASSERT_EQ(EnvironmentProblems().size(), 1) << form;
        EXPECT_TRUE(EnvironmentProblems().front().startsWith("TILLBOOK_SHORT_DATE")) << form;
    }
    ScopedEnv env("TILLBOOK_TODAY", "15/03/2026");
    EXPECT_EQ(Today(), QDate::currentDate());
    ASSERT_EQ(EnvironmentProblems().size(), 1);
    EXPECT_TRUE(EnvironmentProblems().front().startsWith("TILLBOOK_TODAY"));
}

// Reading typed numbers, showing amounts and dates.
#include "ledger/Formats.h"

#include <gtest/gtest.h>

using namespace tillbook;

namespace {

Money m(std::int64_t thousandths) {
    return Money::fromThousandths(thousandths);
}

class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value)
        : m_name(name), m_old(qgetenv(name)), m_had(qEnvironmentVariableIsSet(name)) {
        qputenv(name, value);
    }
    ~ScopedEnv() {
        if (m_had)
            qputenv(m_name, m_old);
        else
            qunsetenv(m_name);
    }

private:
    const char* m_name;
    QByteArray m_old;
    bool m_had;
};

} // namespace

TEST(MoneyParse, ExactTextWithCommasSignsAndRefusals) {
    EXPECT_EQ(Money::parse("1,250.00"), m(1250000));
    EXPECT_EQ(Money::parse(" -12.5 "), m(-12500));
    EXPECT_EQ(Money::parse(".25"), m(250));
    EXPECT_EQ(Money::parse("0.1"), m(100)); // no binary fraction drift
    EXPECT_FALSE(Money::parse("1.2345").has_value());
    EXPECT_FALSE(Money::parse("12abc").has_value());
    EXPECT_FALSE(Money::parse("").has_value());
    EXPECT_FALSE(Money::parse("-").has_value());
    EXPECT_FALSE(Money::parse("99999999999999999999").has_value());
}

TEST(MoneyParse, SumsOfTenthsDoNotDrift) {
    Money total;
    for (int i = 0; i < 1000; ++i)
        total += *Money::parse("0.10");
    EXPECT_EQ(total, Money::fromWhole(100));
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

TEST(MoneyRounding, BankersForKeptAmountsAwayFromZeroForFormats) {
    EXPECT_EQ(m(12345).roundedToCentsBankers(), m(12340)); // 12.345 -> 12.34
    EXPECT_EQ(m(12355).roundedToCentsBankers(), m(12360)); // 12.355 -> 12.36
    EXPECT_EQ(m(-12345).roundedToCentsBankers(), m(-12340));
    EXPECT_EQ(m(12345).roundedToCentsAwayFromZero(), m(12350));
    EXPECT_EQ(m(-12345).roundedToCentsAwayFromZero(), m(-12350));
    EXPECT_EQ(m(12341).roundedToCentsAwayFromZero(), m(12340));
}

TEST(LenientParse, LeadingNumberOnly) {
    EXPECT_DOUBLE_EQ(Val("12abc"), 12.0);
    EXPECT_DOUBLE_EQ(Val(""), 0.0);
    EXPECT_DOUBLE_EQ(Val("abc"), 0.0);
    EXPECT_DOUBLE_EQ(Val("  -3.5x"), -3.5);
    EXPECT_DOUBLE_EQ(Val("1,250"), 1.0);
    EXPECT_DOUBLE_EQ(Val("1.2.3"), 1.2);
    EXPECT_EQ(ValMoney("1234.5678"), m(1234568));
    EXPECT_EQ(ValMoney("0.0005"), m(0)); // half to even
    EXPECT_EQ(ValMoney("0.0015"), m(2));
    EXPECT_EQ(ValMoney("0.00051"), m(1));
    EXPECT_EQ(ValMoney("-7.25abc"), m(-7250));
}

TEST(LenientParse, SixteenBitReadingOfStoredNumbers) {
    EXPECT_EQ(Int16Of("7"), 7);
    EXPECT_EQ(Int16Of(""), 0);
    EXPECT_EQ(Int16Of("2.5"), 2); // half to even
    EXPECT_EQ(Int16Of("3.5"), 4);
    EXPECT_EQ(Int16Of("-1"), -1);
    EXPECT_EQ(Int16Of("32767"), 32767);
    EXPECT_EQ(Int16Of("40000"), 0); // does not fit: none
}

TEST(StripCommas, RemovesEveryCommaThenReadsTheNumber) {
    EXPECT_EQ(Strip_Commas("1,2,3"), Money::fromWhole(123));
    EXPECT_EQ(Strip_Commas("12abc"), Money::fromWhole(12));
    EXPECT_EQ(Strip_Commas(""), Money());
    EXPECT_EQ(Strip_Commas("1,234.50"), m(1234500));
}

TEST(AmountFormat, ThousandsAndTwoDecimals) {
    EXPECT_EQ(FormatAmount(Money()), "0.00");
    EXPECT_EQ(FormatAmount(m(5)), "0.01"); // a format rounds half away from zero
    EXPECT_EQ(FormatAmount(m(-5)), "-0.01");
    EXPECT_EQ(FormatAmount(m(999990)), "999.99");
    EXPECT_EQ(FormatAmount(m(1000000)), "1,000.00");
    EXPECT_EQ(FormatAmount(m(1234567891)), "1,234,567.89");
    EXPECT_EQ(FormatAmount(m(-1234500)), "-1,234.50");
    EXPECT_EQ(FormatAmount(m(123456789012345)), "123,456,789,012.35");
}

TEST(DigitsAndDates, FixedForms) {
    EXPECT_EQ(FormatDigits(7, 4), "0007");
    EXPECT_EQ(FormatDigits(12, 3), "012");
    EXPECT_EQ(FormatDigits(123, 2), "123");
    EXPECT_EQ(FormatDateCompact(QDate(2026, 3, 5)), "20260305");
    EXPECT_EQ(FormatDateLong(QDate(2026, 3, 5)), "March 05, 2026");
}

TEST(DigitsAndDates, ShortDateFormFollowsTheSettingAndHasAFixedLength) {
    {
        ScopedEnv env("TILLBOOK_SHORT_DATE", "MM/dd/yyyy");
        EXPECT_EQ(FormatShortDate(QDate(2026, 3, 5)), "03/05/2026");
        EXPECT_EQ(ParseShortDate("03/05/2026"), QDate(2026, 3, 5));
        EXPECT_FALSE(ParseShortDate("3/5/2026").isValid());
        EXPECT_FALSE(ParseShortDate("02/30/2026").isValid());
        EXPECT_FALSE(ParseShortDate("").isValid());
    }
    {
        ScopedEnv env("TILLBOOK_SHORT_DATE", "dd.MM.yyyy");
        EXPECT_EQ(FormatShortDate(QDate(2026, 3, 5)), "05.03.2026");
    }
    const QString pattern = ShortDatePattern();
    EXPECT_EQ(pattern.size(), 10) << pattern.toStdString();
    EXPECT_EQ(pattern.count(u'd'), 2);
    EXPECT_EQ(pattern.count(u'M'), 2);
    EXPECT_EQ(pattern.count(u'y'), 4);
}

TEST(DigitsAndDates, TodayCanBeFixed) {
    ScopedEnv env("TILLBOOK_TODAY", "2026-03-15");
    EXPECT_EQ(Today(), QDate(2026, 3, 15));
    EXPECT_TRUE(EnvironmentProblems().isEmpty());
}

// An unusable value is said, and the system's own is used instead of a misreading.
TEST(DigitsAndDates, UnusableSettingsAreSaidAndPassedOver) {
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

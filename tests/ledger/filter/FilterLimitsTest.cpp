// Filters of any size or depth are compiled or refused, never crash, even on a 1 MB stack.
#include "ReceiptView.h"
#include "ledger/filter/Limits.h"

#include <QThread>
#include <gtest/gtest.h>
#include <memory>

namespace tillbook::filter {
namespace {

constexpr qsizetype SmallStack = 1024 * 1024; // the main thread's stack on Windows

struct Outcome {
    bool compiled = false;
    QString message;
    int position = 0;
};

// Compiles on a thread with a small stack, as a till's main thread may have.
Outcome compileOnSmallStack(const QString& filter) {
    Outcome outcome;
    std::unique_ptr<QThread> thread(QThread::create([&] {
        try {
            compileFilter(filter, receiptView());
            outcome.compiled = true;
        } catch (const FilterError& error) {
            outcome.message = error.message();
            outcome.position = error.position();
        }
    }));
    thread->setStackSize(SmallStack);
    thread->start();
    thread->wait();
    return outcome;
}

QString repeated(const QString& piece, int times, const QString& separator = {}) {
    QStringList pieces;
    for (int i = 0; i < times; ++i)
        pieces << piece;
    return pieces.join(separator);
}

// CNTBTCH=1 AND (CNTBTCH=1 OR (CNTBTCH=1 AND (... CNTBTCH=1 ...))): every bracket needed in SQL.
QString nestedBrackets(int depth) {
    QString filter = "CNTBTCH=1";
    for (int i = 0; i < depth; ++i)
        filter = QString("CNTBTCH=1 %1 (%2)").arg(i % 2 ? "AND" : "OR", filter);
    return filter;
}

// A OR B AND C OR D AND ...: each AND after an OR brackets everything before it.
QString impliedBrackets(int depth) {
    return "CNTBTCH=1" + repeated(" OR CNTBTCH=2 AND CNTITEM=3", depth);
}

void expectRefused(const QString& filter, int position, const QString& fragment) {
    const Outcome outcome = compileOnSmallStack(filter);
    ASSERT_FALSE(outcome.compiled) << filter.left(200).toStdString();
    EXPECT_EQ(outcome.position, position) << outcome.message.toStdString();
    EXPECT_TRUE(outcome.message.contains(fragment)) << outcome.message.toStdString();
    EXPECT_LT(outcome.message.size(), 400) << "a long filter is quoted by its start only";
}

TEST(FilterLimits, HostileSizesAreRefusedWithTheLimitAndPosition) {
    const QString beyond = QString(" at position %1").arg(MaxFilterLength + 1);
    expectRefused(repeated("CNTBTCH = 12", 20000, " AND "), MaxFilterLength + 1,
                  "at most 16384 characters long, and this one goes on" + beyond);
    expectRefused(repeated("(", 65000), MaxFilterLength + 1, "(65000 characters)");
    expectRefused(repeated("(", 3899), MaxNesting + 1, "brackets may nest at most 25 deep at position 26");
    expectRefused(repeated("(", 3899) + "CNTBTCH=1" + repeated(")", 3899), MaxNesting + 1, "at most 25 deep");
    expectRefused(QString(MaxFilterLength + 1, u' '), MaxFilterLength + 1, "at most 16384 characters");
}

TEST(FilterLimits, EachLimitIsReachableAndOneBeyondIsRefused) {
    EXPECT_TRUE(compileOnSmallStack(repeated("CNTBTCH=1", MaxClauses, " OR ")).compiled);
    const QString tooMany = repeated("CNTBTCH=1", MaxClauses + 1, " OR ");
    expectRefused(tooMany, int(tooMany.size()) - 8, "at most 500 clauses, and this is clause 501");

    EXPECT_TRUE(compileOnSmallStack(nestedBrackets(MaxNesting)).compiled);
    const QString deep = nestedBrackets(MaxNesting + 1);
    qsizetype lastOpen = -1;
    for (int i = 0; i <= MaxNesting; ++i)
        lastOpen = deep.indexOf(u'(', lastOpen + 1);
    expectRefused(deep, int(lastOpen) + 1, "at most 25 deep");

    EXPECT_TRUE(compileOnSmallStack(impliedBrackets(MaxNesting)).compiled);
    const QString implied = impliedBrackets(MaxNesting + 1);
    expectRefused(implied, int(implied.lastIndexOf(" AND ")) + 2, "counting the one this AND implies");

    // Written and implied brackets add up.
    const QString both = repeated("(", MaxNesting) + impliedBrackets(1) + repeated(")", MaxNesting);
    expectRefused(both, int(both.indexOf(" AND ")) + 2, "counting the one this AND implies");

    const QString longest = "NAMECUST LIKE \"" + QString(MaxFilterLength - 16, u'€') + "\"";
    ASSERT_EQ(longest.size(), MaxFilterLength);
    EXPECT_TRUE(compileOnSmallStack(longest).compiled);
}

} // namespace
} // namespace tillbook::filter

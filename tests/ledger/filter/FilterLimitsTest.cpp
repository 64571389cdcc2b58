// Filters of any size or depth are compiled or refused, never crash, even on a 1 MB stack.
#include "ReceiptView.h"
#include "ledger/filter/Limits.h"

#include <QThread>
#include <gtest/gtest.h>
#include <memory>

namespace tillbook::filter {
namespace {

// Compiles on a thread with the stack of a Windows main thread; the message, empty when compiled.
QString compileOnSmallStack(const QString& filter, int* position = nullptr) {
    QString message;
    std::unique_ptr<QThread> thread(QThread::create([&] {
        try {
            compileFilter(filter, receiptView());
        } catch (const InputError& error) {
            message = error.message();
            if (position)
                *position = error.position();
        }
    }));
    thread->setStackSize(1024 * 1024);
    thread->start();
    thread->wait();
    return message;
}

void expectRefused(const QString& filter, qsizetype position, const QString& fragment) {
    int at = 0;
    const QString message = compileOnSmallStack(filter, &at);
    EXPECT_TRUE(message.contains(fragment))
        << message.toStdString() << "\n  lacks " << fragment.toStdString();
    EXPECT_EQ(at, position) << message.toStdString();
}

QString times(int n, const QString& piece, const QString& separator = {}) {
    return QStringList(n, piece).join(separator);
}

// A OR B AND C OR B AND C ...: each AND after an OR brackets everything before it.
QString impliedBrackets(int depth) {
    return "CNTBTCH=1" + times(depth, " OR CNTBTCH=2 AND CNTITEM=3");
}

TEST(FilterLimits, HostileFiltersAreRefusedNamingTheLimitAndPosition) {
    expectRefused(times(20000, "CNTBTCH = 12", " AND "), MaxFilterLength + 1,
                  "at most 16384 characters long, and this one goes on at position 16385");
    expectRefused(times(65000, "("), MaxFilterLength + 1, "((((...\" (65000 characters): a filter may be");
    expectRefused(times(3899, "("), MaxNesting + 1, "brackets may nest at most 25 deep at position 26");

    const QString tooMany = times(MaxClauses + 1, "CNTBTCH=1", " OR ");
    expectRefused(tooMany, tooMany.size() - 8, "at most 500 clauses, and this is clause 501");
    const QString implied = impliedBrackets(MaxNesting + 1);
    expectRefused(implied, implied.lastIndexOf(" AND ") + 2, "counting the one this AND implies");
    const QString both = times(MaxNesting, "(") + impliedBrackets(1) + times(MaxNesting, ")");
    expectRefused(both, both.indexOf(" AND ") + 2, "counting the one this AND implies");
}

TEST(FilterLimits, EachLimitIsReachable) {
    EXPECT_EQ(compileOnSmallStack(times(MaxClauses, "CNTBTCH=1", " OR ")), "");
    EXPECT_EQ(compileOnSmallStack(times(MaxNesting, "(") + "CNTBTCH=1" + times(MaxNesting, ")")), "");
    EXPECT_EQ(compileOnSmallStack(impliedBrackets(MaxNesting)), "");
    EXPECT_EQ(compileOnSmallStack("NAMECUST LIKE \"" + QString(MaxFilterLength - 16, u'€') + "\""), "");
}

} // namespace
} // namespace tillbook::filter

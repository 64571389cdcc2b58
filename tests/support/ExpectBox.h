#pragma once

// Answers the program's message boxes as AnswerMessageBoxes does, and checks the box last asked in one line:
// how many boxes have been asked so far, its prompt, its buttons plus icon, and its title.

#include "support/AnswerMessageBoxes.h"

#include <QTest>

namespace tillbook::test {

class ExpectBox : public AnswerMessageBoxes {
public:
    using AnswerMessageBoxes::AnswerMessageBoxes;

    // True when `count` boxes have been asked and the last one reads `prompt` with `style` (buttons + icon)
    // and, when given, `title`; a mismatch is reported where it is found.
    bool operator()(int count, const QString& prompt, int style = vbOKOnly, const QString& title = {}) const {
        [&] {
            QCOMPARE(asked.size(), count);
            QCOMPARE(asked.last().prompt, prompt);
            QCOMPARE(asked.last().buttons + asked.last().icon, style);
            if (!title.isEmpty())
                QCOMPARE(asked.last().title, title);
        }();
        return !QTest::currentTestFailed();
    }
    // True when no box has been asked.
    bool none() const { return asked.isEmpty(); }
};

} // namespace tillbook::test

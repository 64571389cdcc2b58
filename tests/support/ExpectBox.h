#pragma once

// Answers the program's message boxes instead of showing them, and remembers what was asked; while it lives,
// no box waits for a click. Checks the box last asked in one line: how many boxes have been asked so far, its
// prompt, its buttons and its icon (given as their sum), and its title.

#include "ui/Platform.h"

#include <QList>
#include <QTest>

namespace tillbook::test {

class ExpectBox {
public:
    explicit ExpectBox(int answer = vbOK) : m_answer(answer) {
        setMsgBoxResponder([this](const MsgBoxRequest& request) {
            asked.append(request);
            return m_answer;
        });
    }
    ~ExpectBox() { setMsgBoxResponder({}); }
    ExpectBox(const ExpectBox&) = delete;
    ExpectBox& operator=(const ExpectBox&) = delete;

    void answerWith(int answer) { m_answer = answer; }

    // True when `count` boxes have been asked and the last one reads `prompt` with `style` (buttons + icon,
    // each checked on its own) and, when given, `title`; a mismatch is reported where it is found.
    bool operator()(int count, const QString& prompt, int style = vbOKOnly, const QString& title = {}) const {
        [&] {
            QCOMPARE(asked.size(), count);
            QCOMPARE(asked.last().prompt, prompt);
            QCOMPARE(asked.last().buttons, style % 16);
            QCOMPARE(asked.last().icon, style - style % 16);
            if (!title.isEmpty())
                QCOMPARE(asked.last().title, title);
        }();
        return !QTest::currentTestFailed();
    }
    // True when no box has been asked.
    bool none() const { return asked.isEmpty(); }

    QList<MsgBoxRequest> asked;

private:
    int m_answer;
};

} // namespace tillbook::test

#pragma once

// Answers the program's message boxes instead of showing them, and remembers what was asked. While it lives,
// no box waits for a click.

#include "ui/Platform.h"

#include <QList>

namespace tillbook::test {

class AnswerMessageBoxes {
public:
    explicit AnswerMessageBoxes(int answer = vbOK) : m_answer(answer) {
        setMsgBoxResponder([this](const MsgBoxRequest& request) {
            asked.append(request);
            return m_answer;
        });
    }
    ~AnswerMessageBoxes() { setMsgBoxResponder({}); }
    AnswerMessageBoxes(const AnswerMessageBoxes&) = delete;
    AnswerMessageBoxes& operator=(const AnswerMessageBoxes&) = delete;

    void answerWith(int answer) { m_answer = answer; }

    QList<MsgBoxRequest> asked;

private:
    int m_answer;
};

} // namespace tillbook::test

#pragma once

// Where the program meets the desktop: modal message boxes, starting other programs and the beep. Each has a
// hook so that tests answer message boxes and record command lines and beeps instead of waiting on them.

#include <QString>
#include <functional>

namespace tillbook {

// Button sets.
constexpr int vbOKOnly = 0;
constexpr int vbOKCancel = 1;
constexpr int vbAbortRetryIgnore = 2;
constexpr int vbYesNoCancel = 3;
constexpr int vbYesNo = 4;
constexpr int vbRetryCancel = 5;
// Icons.
constexpr int vbCritical = 16;
constexpr int vbQuestion = 32;
constexpr int vbExclamation = 48;
constexpr int vbInformation = 64;
// Answers.
constexpr int vbOK = 1;
constexpr int vbCancel = 2;
constexpr int vbAbort = 3;
constexpr int vbRetry = 4;
constexpr int vbIgnore = 5;
constexpr int vbYes = 6;
constexpr int vbNo = 7;

struct MsgBoxRequest {
    QString prompt;
    QString title;
    int buttons = vbOKOnly; // the button set: vbOKOnly, vbYesNo, ...
    int icon = 0;           // 0, vbCritical, vbQuestion, vbExclamation or vbInformation
};

// Shows a modal message box and returns the answer (vbOK, vbYes, ...). `buttons` is a button set plus an
// icon, e.g. vbYesNo + vbExclamation. An empty title shows the program's name.
int MsgBox(const QString& prompt, int buttons = vbOKOnly, const QString& title = QString());

// While a responder is set, no box is shown: the responder answers instead. An empty function removes it.
void setMsgBoxResponder(std::function<int(const MsgBoxRequest&)> responder);

// Starts another program from a command line, without waiting for it. False when it could not be started
// (no such program, not executable). When `onFailure` is given, it is also called, later, if the program
// ends with a failing status (a desktop opener that finds nothing to open with, say).
bool Shell(const QString& commandLine, std::function<void()> onFailure = {});

// While a recorder is set, nothing is started: the recorder receives the command line. An empty function
// removes it.
void setShellRecorder(std::function<void(const QString&)> recorder);

// Sounds the warning beep of a refused key.
void Beep();

// While a recorder is set, no sound is made: the recorder is called instead. An empty function removes it.
void setBeepRecorder(std::function<void()> recorder);

} // namespace tillbook

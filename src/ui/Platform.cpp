#include "ui/Platform.h"

#include <QApplication>
#include <QMessageBox>
#include <QProcess>

namespace tillbook {

namespace {

std::function<int(const MsgBoxRequest&)>& responder() {
    static std::function<int(const MsgBoxRequest&)> instance;
    return instance;
}

std::function<void(const QString&)>& shellRecorder() {
    static std::function<void(const QString&)> instance;
    return instance;
}

std::function<void()>& beepRecorder() {
    static std::function<void()> instance;
    return instance;
}

QMessageBox::Icon iconOf(int icon) {
    switch (icon) {
    case vbCritical:
        return QMessageBox::Critical;
    case vbQuestion:
        return QMessageBox::Question;
    case vbExclamation:
        return QMessageBox::Warning;
    case vbInformation:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

struct ButtonAnswer {
    QMessageBox::StandardButton button;
    int answer;
};

QList<ButtonAnswer> buttonsOf(int buttonSet) {
    switch (buttonSet) {
    case vbOKCancel:
        return {{QMessageBox::Ok, vbOK}, {QMessageBox::Cancel, vbCancel}};
    case vbAbortRetryIgnore:
        return {
            {QMessageBox::Abort, vbAbort}, {QMessageBox::Retry, vbRetry}, {QMessageBox::Ignore, vbIgnore}};
    case vbYesNoCancel:
        return {{QMessageBox::Yes, vbYes}, {QMessageBox::No, vbNo}, {QMessageBox::Cancel, vbCancel}};
    case vbYesNo:
        return {{QMessageBox::Yes, vbYes}, {QMessageBox::No, vbNo}};
    case vbRetryCancel:
        return {{QMessageBox::Retry, vbRetry}, {QMessageBox::Cancel, vbCancel}};
    default:
        return {{QMessageBox::Ok, vbOK}};
    }
}

} // namespace

int MsgBox(const QString& prompt, int buttons, const QString& title) {
    MsgBoxRequest request;
    request.prompt = prompt;
    request.title = title.isEmpty() ? QStringLiteral("Tillbook") : title;
    request.buttons = buttons & 0x0F;
    request.icon = buttons & 0x70;
    if (responder())
        return responder()(request);

    QMessageBox box(iconOf(request.icon), request.title, request.prompt, QMessageBox::NoButton,
                    QApplication::activeWindow());
    const QList<ButtonAnswer> answers = buttonsOf(request.buttons);
    QMessageBox::StandardButtons standard;
    for (const ButtonAnswer& a : answers)
        standard |= a.button;
    box.setStandardButtons(standard);
    box.setDefaultButton(answers.first().button);
    const auto chosen = static_cast<QMessageBox::StandardButton>(box.exec());
    for (const ButtonAnswer& a : answers) {
        if (a.button == chosen)
            return a.answer;
    }
    // Closing the box with Escape or its close button: the cancel-like answer, else the only button.
    return answers.size() == 1 ? answers.first().answer : answers.last().answer;
}

void setMsgBoxResponder(std::function<int(const MsgBoxRequest&)> r) {
    responder() = std::move(r);
}

bool Shell(const QString& commandLine, std::function<void()> onFailure) {
    if (shellRecorder()) {
        shellRecorder()(commandLine);
        return true;
    }
    QStringList parts = QProcess::splitCommand(commandLine);
    if (parts.isEmpty())
        return false;
    const QString program = parts.takeFirst();
    if (!onFailure)
        return QProcess::startDetached(program, parts);
    // Watched until it ends; never owned by a window, so that closing the program does not end it.
    auto* process = new QProcess;
    process->setProgram(program);
    process->setArguments(parts);
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    process->start();
    if (!process->waitForStarted()) {
        delete process;
        return false;
    }
    QObject::connect(process, &QProcess::finished, process,
                     [process, onFailure = std::move(onFailure)](int status, QProcess::ExitStatus how) {
                         process->deleteLater();
                         if (status != 0 || how != QProcess::NormalExit)
                             onFailure();
                     });
    return true;
}

void setShellRecorder(std::function<void(const QString&)> recorder) {
    shellRecorder() = std::move(recorder);
}

void Beep() {
    if (beepRecorder()) {
        beepRecorder()();
        return;
    }
    QApplication::beep();
}

void setBeepRecorder(std::function<void()> recorder) {
    beepRecorder() = std::move(recorder);
}

} // namespace tillbook

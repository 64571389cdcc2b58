#include "Seams.h"

#include <QAction>
#include <QApplication>
#include <QDeadlineTimer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace tillbook::guide {

QWidget* shownWindow(const QString& name) {
    const QDeadlineTimer deadline(10000);
    while (!deadline.hasExpired()) {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->objectName() == name && w->isVisible()) {
                if (!QTest::qWaitForWindowExposed(w))
                    qWarning("%s was not shown", qPrintable(name));
                return w;
            }
        QTest::qWait(20);
    }
    return nullptr;
}

void invoke(QObject* form, const char* handler) {
    if (!QMetaObject::invokeMethod(form, handler))
        qFatal("%s has no handler %s", qPrintable(form->objectName()), handler);
}

void setListIndex(QWidget* form, const char* combo, int index) {
    control<QWidget>(form, combo)->setProperty("ListIndex", index);
}

void triggerMenu(QWidget* form, const char* action) {
    control<QAction>(form, action)->trigger();
}

void click(QWidget* form, const char* button) {
    control<QPushButton>(form, button)->click();
}

void type(QWidget* form, const char* field, const QString& keys, const char* next) {
    form->activateWindow();
    if (!QTest::qWaitForWindowActive(form))
        qWarning("%s did not become active", qPrintable(form->objectName()));
    control<QWidget>(form, field)->setFocus(Qt::TabFocusReason);
    QTest::keyClicks(control<QWidget>(form, field), keys);
    control<QWidget>(form, next)->setFocus(Qt::TabFocusReason);
}

void whenOpen(const QString& dialog, std::function<void(QWidget*)> answer) {
    QTimer::singleShot(0, [dialog, answer] {
        QWidget* open = QApplication::activeModalWidget();
        if (!open || open->objectName() != dialog)
            qFatal("the dialog %s did not open", qPrintable(dialog));
        if (!QTest::qWaitForWindowExposed(open))
            qWarning("%s was not shown", qPrintable(dialog));
        answer(open);
    });
}

} // namespace tillbook::guide

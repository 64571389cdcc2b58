#pragma once

// How the picture taker reaches the program's windows: forms and controls by their names, event handlers
// invoked by name, the list index set as the clerk sets it, and a modal dialog answered once it is open.

#include <QString>
#include <QWidget>
#include <functional>

namespace tillbook::guide {

// The visible top-level window of that name, waited for a while; nullptr when it never shows.
QWidget* shownWindow(const QString& name);

// The form's control of that name; a missing one ends the program, as the pictures would be wrong.
template <typename T> T* control(QWidget* form, const char* name) {
    T* found = form->findChild<T*>(QString::fromLatin1(name));
    if (!found)
        qFatal("%s has no control %s", qPrintable(form->objectName()), name);
    return found;
}

// Runs the form's event handler or procedure of that name.
void invoke(QObject* form, const char* handler);
void setListIndex(QWidget* form, const char* combo, int index);
void triggerMenu(QWidget* form, const char* action);
void click(QWidget* form, const char* button);
// Types into a field as the clerk does: the field gets the focus, the keys go in, the focus moves on.
void type(QWidget* form, const char* field, const QString& keys, const char* next);

// Runs `answer` on the modal dialog of that name once the next command has opened it.
void whenOpen(const QString& dialog, std::function<void(QWidget*)> answer);

} // namespace tillbook::guide

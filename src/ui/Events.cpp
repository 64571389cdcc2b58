#include "ui/Events.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPointer>

namespace tillbook {

namespace {

// The program's form that was active last; Activate runs only when another one was.
QPointer<QWidget>& lastActiveForm() {
    static QPointer<QWidget> form;
    return form;
}

int shiftOf(Qt::KeyboardModifiers modifiers) {
    int shift = 0;
    if (modifiers & Qt::ShiftModifier)
        shift |= vbShiftMask;
    if (modifiers & Qt::ControlModifier)
        shift |= vbCtrlMask;
    if (modifiers & Qt::AltModifier)
        shift |= vbAltMask;
    return shift;
}

int keyCodeOf(const QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Backspace:
        return vbKeyBack;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return vbKeyTab;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return vbKeyReturn;
    case Qt::Key_Escape:
        return vbKeyEscape;
    case Qt::Key_End:
        return vbKeyEnd;
    case Qt::Key_Home:
        return vbKeyHome;
    case Qt::Key_Left:
        return vbKeyLeft;
    case Qt::Key_Up:
        return vbKeyUp;
    case Qt::Key_Right:
        return vbKeyRight;
    case Qt::Key_Down:
        return vbKeyDown;
    case Qt::Key_Delete:
        return vbKeyDelete;
    default:
        // Letters, digits and the space bar have their ASCII capital codes.
        return event->key() >= 0x20 && event->key() <= 0x7E ? event->key() : 0;
    }
}

// The key that a KeyDown replacement code stands for; 0 for a code no key of the table has.
int qtKeyOf(int keyCode) {
    switch (keyCode) {
    case vbKeyBack:
        return Qt::Key_Backspace;
    case vbKeyTab:
        return Qt::Key_Tab;
    case vbKeyReturn:
        return Qt::Key_Return;
    case vbKeyEscape:
        return Qt::Key_Escape;
    case vbKeyEnd:
        return Qt::Key_End;
    case vbKeyHome:
        return Qt::Key_Home;
    case vbKeyLeft:
        return Qt::Key_Left;
    case vbKeyUp:
        return Qt::Key_Up;
    case vbKeyRight:
        return Qt::Key_Right;
    case vbKeyDown:
        return Qt::Key_Down;
    case vbKeyDelete:
        return Qt::Key_Delete;
    default:
        return keyCode >= 0x20 && keyCode <= 0x7E ? keyCode : 0;
    }
}

// The character a key press types, as a code; 0 when it types none. Backspace, Enter and Escape type their
// control characters; Tab types none (it moves the focus).
int keyAsciiOf(const QKeyEvent* event) {
    const int code = keyCodeOf(event);
    if (code == vbKeyBack || code == vbKeyReturn || code == vbKeyEscape)
        return code;
    if (code == vbKeyTab)
        return 0;
    const QString text = event->text();
    if (text.size() != 1 || text[0].unicode() < 0x20 || text[0].unicode() == 0x7F)
        return 0;
    return text[0].unicode();
}

bool isFocusHandedElsewhere(Qt::FocusReason reason) {
    return reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason ||
           reason == Qt::ActiveWindowFocusReason;
}

class WidgetEvents : public QObject {
public:
    explicit WidgetEvents(QWidget* widget) : QObject(widget), m_widget(widget) {
        setObjectName(QStringLiteral("tillbookWidgetEvents"));
        widget->installEventFilter(this);
    }

    static WidgetEvents* of(QWidget* widget) {
        auto* existing = widget->findChild<WidgetEvents*>(QStringLiteral("tillbookWidgetEvents"),
                                                          Qt::FindDirectChildrenOnly);
        return existing ? existing : new WidgetEvents(widget);
    }

    std::function<void(int&)> keyPress;
    std::function<void(int&, int)> keyDown;
    std::function<void(int, int)> keyUp;
    std::function<void()> gotFocus;
    std::function<void()> lostFocus;
    std::function<void()> activate;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched != m_widget)
            return false;
        switch (event->type()) {
        case QEvent::KeyPress:
            return onKeyPressEvent(static_cast<QKeyEvent*>(event));
        case QEvent::KeyRelease:
            return onKeyReleaseEvent(static_cast<QKeyEvent*>(event));
        case QEvent::FocusIn:
            // Coming back from a menu or another window is no new focus: the field never lost it.
            if (!m_hasFocus) {
                m_hasFocus = true;
                if (gotFocus)
                    gotFocus();
            }
            return false;
        case QEvent::FocusOut:
            if (m_hasFocus && !isFocusHandedElsewhere(static_cast<QFocusEvent*>(event)->reason())) {
                m_hasFocus = false;
                if (lostFocus)
                    lostFocus();
            }
            return false;
        case QEvent::WindowActivate:
            if (activate && lastActiveForm() != m_widget) {
                lastActiveForm() = m_widget;
                activate();
            }
            return false;
        default:
            return false;
        }
    }

private:
    bool onKeyPressEvent(QKeyEvent* event) {
        if (m_resending)
            return false;
        if (keyDown) {
            const int pressed = keyCodeOf(event);
            int keyCode = pressed;
            keyDown(keyCode, shiftOf(event->modifiers()));
            if (keyCode != pressed)
                return replaceKey(event, keyCode);
        }
        const int typed = keyAsciiOf(event);
        if (!keyPress || typed == 0)
            return false;
        int keyAscii = typed;
        keyPress(keyAscii);
        if (keyAscii == typed)
            return false;
        if (keyAscii != 0) {
            // Type the replacement character instead of the one pressed.
            const QChar replacement(keyAscii);
            QKeyEvent instead(QEvent::KeyPress, replacement.toUpper().unicode(), event->modifiers(),
                              QString(replacement));
            m_resending = true;
            QApplication::sendEvent(m_widget, &instead);
            m_resending = false;
        }
        return true;
    }

    // The widget takes the replacement key instead of the one pressed, or nothing when the code is 0 or no
    // key.
    bool replaceKey(const QKeyEvent* event, int keyCode) {
        m_replacedKey = event->key();
        m_replacement = keyCode;
        const int key = qtKeyOf(keyCode);
        if (key == 0)
            return true;
        // Shift would turn a replacement Tab back into Backtab, or a Left into a selection.
        QKeyEvent instead(QEvent::KeyPress, key, event->modifiers() & ~Qt::ShiftModifier,
                          key >= 0x20 && key <= 0x7E ? QString(QChar(key)) : QString());
        m_resending = true;
        QApplication::sendEvent(m_widget, &instead);
        m_resending = false;
        return true;
    }

    bool onKeyReleaseEvent(QKeyEvent* event) {
        int keyCode = keyCodeOf(event);
        if (m_replacedKey != 0 && event->key() == m_replacedKey) {
            m_replacedKey = 0;
            if (m_replacement == 0)
                return true;
            keyCode = m_replacement;
        }
        if (keyUp)
            keyUp(keyCode, shiftOf(event->modifiers()));
        return false;
    }

    QWidget* m_widget;
    int m_replacedKey = 0; // the Qt key whose KeyDown was replaced, until it is released
    int m_replacement = 0;
    bool m_resending = false;
    bool m_hasFocus = false; // the field holds the focus of its form
};

} // namespace

void onKeyPress(QWidget* widget, std::function<void(int&)> handler) {
    WidgetEvents::of(widget)->keyPress = std::move(handler);
}

void onKeyDown(QWidget* widget, std::function<void(int&, int)> handler) {
    WidgetEvents::of(widget)->keyDown = std::move(handler);
}

void onKeyUp(QWidget* widget, std::function<void(int, int)> handler) {
    WidgetEvents::of(widget)->keyUp = std::move(handler);
}

void onGotFocus(QWidget* widget, std::function<void()> handler) {
    WidgetEvents::of(widget)->gotFocus = std::move(handler);
}

void onLostFocus(QWidget* widget, std::function<void()> handler) {
    WidgetEvents::of(widget)->lostFocus = std::move(handler);
}

void onActivate(QWidget* form, std::function<void()> handler) {
    WidgetEvents::of(form)->activate = std::move(handler);
}

void UpperCaseKey(int& keyAscii) {
    if (keyAscii >= 'a' && keyAscii <= 'z')
        keyAscii -= 32;
}

} // namespace tillbook

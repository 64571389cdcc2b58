#pragma once

// The events that form code is written against: KeyPress, KeyDown, KeyUp, GotFocus, LostFocus and a form's
// Activate. Each is attached to one widget with a handler; a widget may have all of them.

#include <QWidget>
#include <functional>

namespace tillbook {

// Key codes seen by KeyDown and KeyUp.
constexpr int vbKeyBack = 8;
constexpr int vbKeyTab = 9;
constexpr int vbKeyReturn = 13;
constexpr int vbKeyEscape = 27;
constexpr int vbKeySpace = 32;
constexpr int vbKeyEnd = 35;
constexpr int vbKeyHome = 36;
constexpr int vbKeyLeft = 37;
constexpr int vbKeyUp = 38;
constexpr int vbKeyRight = 39;
constexpr int vbKeyDown = 40;
constexpr int vbKeyDelete = 46;
// Shift state bits passed with a key code.
constexpr int vbShiftMask = 1;
constexpr int vbCtrlMask = 2;
constexpr int vbAltMask = 4;

// KeyPress sees the typed character's code and may set it to 0 to drop the character, or to another code to
// type that character instead (for example a small letter turned into its capital).
void onKeyPress(QWidget* widget, std::function<void(int& keyAscii)> handler);
// KeyDown sees the key's code before the widget does and may set it to 0 to drop the key, or to another code
// to have the widget take that key instead (Tab turned into Left, say). The key's KeyUp then sees the
// replacement, and a dropped key has none. A handler that takes the code by value leaves the key as it is.
void onKeyDown(QWidget* widget, std::function<void(int& keyCode, int shift)> handler);
void onKeyUp(QWidget* widget, std::function<void(int keyCode, int shift)> handler);

// GotFocus and LostFocus follow the focus within a form. Opening a menu, a message box or another window does
// not take the focus from a field, and coming back does not give it again.
void onGotFocus(QWidget* widget, std::function<void()> handler);
void onLostFocus(QWidget* widget, std::function<void()> handler);

// Activate runs when the form becomes the active form of the program: when it is first shown and when the
// clerk comes back to it from another of the program's forms; not when the whole program comes back from
// elsewhere.
void onActivate(QWidget* form, std::function<void()> handler);

// Turns a small letter a-z into its capital; every other code passes unchanged.
void UpperCaseKey(int& keyAscii);

} // namespace tillbook

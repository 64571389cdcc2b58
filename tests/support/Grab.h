#pragma once

// Saves a picture of a window when TILLBOOK_GRAB_DIR names a folder, so that a person can look at what a form
// shows after a test has put it into a known state. Without the variable it does nothing.

#include <QDir>
#include <QWidget>

namespace tillbook::test {

inline void grabToPng(QWidget* window, const QString& name) {
    const QString folder = qEnvironmentVariable("TILLBOOK_GRAB_DIR");
    if (folder.isEmpty() || !window)
        return;
    QDir().mkpath(folder);
    window->grab().save(QDir(folder).filePath(name + QStringLiteral(".png")));
}

} // namespace tillbook::test

#pragma once

// The arguments of one command: positional words, --name value options and --flags. Anything not
// declared by the command is an error.

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>
#include <stdexcept>

namespace tillbook::tool {

// Bad input on the command line or in a script: the message is shown and the tool exits non-zero.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(const QString& message)
        : std::runtime_error(message.toStdString()), m_message(message) {}
    QString message() const { return m_message; }

private:
    QString m_message;
};

struct Arguments {
    QStringList positional;
    QMap<QString, QString> options;
    QSet<QString> flags;

    QString option(const QString& name, const QString& fallback = QString()) const {
        return options.value(name, fallback);
    }
    int intOption(const QString& name, int fallback) const;
    bool flag(const QString& name) const { return flags.contains(name); }
};

// `valueOptions` take a value (--customers 200); `flagOptions` do not (--force). A lone "-" is positional.
Arguments parseArguments(const QStringList& words, const QStringList& valueOptions,
                         const QStringList& flagOptions);

} // namespace tillbook::tool

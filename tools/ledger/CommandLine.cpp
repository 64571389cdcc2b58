#include "CommandLine.h"

namespace tillbook::tool {

int Arguments::intOption(const QString& name, int fallback) const {
    if (!options.contains(name))
        return fallback;
    bool ok = false;
    const int value = options.value(name).toInt(&ok);
    if (!ok || value < 0)
        throw UsageError(
            QStringLiteral("--%1 needs a whole number, not \"%2\".").arg(name, options.value(name)));
    return value;
}

Arguments parseArguments(const QStringList& words, const QStringList& valueOptions,
                         const QStringList& flagOptions) {
    Arguments arguments;
    for (int i = 0; i < words.size(); ++i) {
        const QString& word = words[i];
        if (!word.startsWith(QLatin1String("--"))) {
            arguments.positional << word;
            continue;
        }
        QString name = word.mid(2);
        QString value;
        const bool inlineValue = name.contains(u'=');
        if (inlineValue) {
            value = name.section(u'=', 1);
            name = name.section(u'=', 0, 0);
        }
        if (flagOptions.contains(name) && !inlineValue) {
            arguments.flags.insert(name);
        } else if (valueOptions.contains(name)) {
            if (!inlineValue) {
                if (i + 1 >= words.size())
                    throw UsageError(QStringLiteral("--%1 needs a value.").arg(name));
                value = words[++i];
            }
            arguments.options.insert(name, value);
        } else {
            throw UsageError(QStringLiteral("Unknown option --%1.").arg(name));
        }
    }
    return arguments;
}

} // namespace tillbook::tool

#include "CommandLine.h"

#include <QCommandLineParser>

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
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    for (const QString& name : valueOptions)
        parser.addOption(QCommandLineOption(name, QString(), QStringLiteral("value")));
    for (const QString& name : flagOptions)
        parser.addOption(QCommandLineOption(name));
    // Options are --name; a word with a single dash ("-", "-5") is a positional word, as it always was.
    // Those words stand in for themselves by their place, so that the parser sees no option in them.
    QStringList given{QStringLiteral("tillbook-ledger")};
    QStringList dashWords;
    for (const QString& word : words) {
        const bool option = word.startsWith(QLatin1String("--"));
        if (!option && word.startsWith(u'-') && !valueOptions.contains(given.last().mid(2))) {
            given << QStringLiteral("\x01%1").arg(dashWords.size());
            dashWords << word;
        } else {
            given << word;
        }
    }
    if (!parser.parse(given)) {
        const QStringList unknown = parser.unknownOptionNames();
        if (!unknown.isEmpty())
            throw UsageError(QStringLiteral("Unknown option --%1.").arg(unknown.front()));
        throw UsageError(parser.errorText());
    }
    Arguments arguments;
    for (QString word : parser.positionalArguments()) {
        if (word.startsWith(u'\x01'))
            word = dashWords.value(word.mid(1).toInt());
        arguments.positional << word;
    }
    for (const QString& name : valueOptions)
        if (parser.isSet(name))
            arguments.options.insert(name, parser.value(name));
    for (const QString& name : flagOptions)
        if (parser.isSet(name))
            arguments.flags.insert(name);
    return arguments;
}

} // namespace tillbook::tool

#include "ScriptRunner.h"

#include "CommandLine.h"
#include "ScriptWords.h"

namespace tillbook::tool {

ScriptRunner::ScriptRunner(Session& session, QTextStream& out, bool stopOnError)
    : m_session(session), m_out(out), m_stopOnError(stopOnError), m_errorsShown(session.errors().count()) {}

int ScriptRunner::run(QTextStream& script) {
    bool anyFailed = false;
    while (!script.atEnd()) {
        const QString line = script.readLine();
        ++m_line;
        QStringList words;
        try {
            words = splitScriptLine(line);
        } catch (const UsageError& e) {
            throw UsageError(QStringLiteral("line %1: %2").arg(m_line).arg(e.message()));
        }
        if (words.isEmpty())
            continue;
        // An operation's warnings and messages are on the session's list, printed with its errors below.
        bool ok = true;
        try {
            ok = runLine(words);
        } catch (const LedgerError&) {
            ok = false;
        }
        printNewErrors();
        if (!ok) {
            anyFailed = true;
            if (m_stopOnError) {
                m_out << QStringLiteral("stopped at line %1\n").arg(m_line);
                return 1;
            }
        }
    }
    return anyFailed ? 1 : 0;
}

void ScriptRunner::printNewErrors() {
    ErrorList& errors = m_session.errors();
    if (errors.count() < m_errorsShown)
        m_errorsShown = 0; // cleared by the script
    for (; m_errorsShown < errors.count(); ++m_errorsShown) {
        const ErrorEntry& e = errors.at(m_errorsShown);
        m_out << QStringLiteral("! %1 (%2): %3\n")
                     .arg(priorityName(e.priority))
                     .arg(int(e.priority))
                     .arg(e.description);
    }
}

void ScriptRunner::expectWords(const QStringList& words, int least, int most) const {
    const int given = int(words.size()) - 1;
    if (given < least || (most >= 0 && given > most))
        throw UsageError(
            QStringLiteral("line %1: wrong number of words for \"%2\"").arg(m_line).arg(words.front()));
}

View& ScriptRunner::view(const QString& name) {
    const auto it = m_views.find(name);
    if (it == m_views.end())
        throw UsageError(
            QStringLiteral("line %1: no view is open under the name \"%2\"").arg(m_line).arg(name));
    return *it->second;
}

bool ScriptRunner::runLine(const QStringList& words) {
    const QString op = words.front().toLower();
    const auto printBool = [&](const char* what, bool value) {
        m_out << QStringLiteral("%1 %2: %3\n").arg(QLatin1String(what), words[1], value ? "true" : "false");
    };
    if (op == QLatin1String("stop-on-error")) {
        expectWords(words, 0, 1);
        m_stopOnError = words.size() == 1 || words[1].toLower() != QLatin1String("off");
    } else if (op == QLatin1String("echo")) {
        m_out << words.mid(1).join(u' ') << u'\n';
    } else if (op == QLatin1String("errors")) {
        expectWords(words, 0, 0);
        ErrorList& errors = m_session.errors();
        m_out << QStringLiteral("errors: %1\n").arg(errors.count());
        for (int i = 0; i < errors.count(); ++i)
            m_out << QStringLiteral("  %1 (%2): %3\n")
                         .arg(priorityName(errors.at(i).priority))
                         .arg(int(errors.at(i).priority))
                         .arg(errors.at(i).description);
        m_errorsShown = errors.count();
    } else if (op == QLatin1String("clear-errors")) {
        expectWords(words, 0, 0);
        m_session.errors().clear();
        m_errorsShown = 0;
    } else if (op == QLatin1String("open")) {
        expectWords(words, 2, 2);
        m_views[words[1]] = m_session.openView(words[2], words[2].left(2));
    } else if (op == QLatin1String("close")) {
        expectWords(words, 1, 1);
        view(words[1]);
        m_views.erase(words[1]);
    } else if (op == QLatin1String("order")) {
        expectWords(words, 2, 2);
        bool number = false;
        const int key = words[2].toInt(&number);
        if (!number)
            throw UsageError(QStringLiteral("line %1: order needs a key number").arg(m_line));
        view(words[1]).order(key);
    } else if (op == QLatin1String("compose")) {
        expectWords(words, 2);
        std::vector<View*> others;
        for (const QString& name : words.mid(2))
            others.push_back(&view(name));
        view(words[1]).compose(others);
    } else if (op == QLatin1String("browse")) {
        expectWords(words, 1, 3);
        bool ascending = true;
        QString filter;
        for (const QString& word : words.mid(2)) {
            if (word.toLower() == QLatin1String("descending"))
                ascending = false;
            else if (word.toLower() == QLatin1String("ascending"))
                ascending = true;
            else
                filter = word;
        }
        view(words[1]).browse(filter, ascending);
    } else if (op == QLatin1String("fetch")) {
        expectWords(words, 1, 1);
        printBool("fetch", view(words[1]).fetch());
    } else if (op == QLatin1String("read")) {
        expectWords(words, 1, 1);
        printBool("read", view(words[1]).read());
    } else if (op == QLatin1String("list")) {
        // Every remaining record: one line of the named fields each.
        expectWords(words, 2);
        View& v = view(words[1]);
        int count = 0;
        while (v.fetch()) {
            QStringList values;
            for (const QString& field : words.mid(2))
                values << v.fields().item(field).text();
            m_out << QStringLiteral("  ") << values.join(QStringLiteral(" | ")) << u'\n';
            ++count;
        }
        m_out << QStringLiteral("list %1: %2 records\n").arg(words[1]).arg(count);
    } else if (op == QLatin1String("get")) {
        expectWords(words, 2);
        View& v = view(words[1]);
        for (const QString& field : words.mid(2)) {
            Field& f = v.fields().item(field);
            m_out << QStringLiteral("%1.%2 = %3\n").arg(words[1], f.name(), f.text());
        }
    } else if (op == QLatin1String("put") || op == QLatin1String("put-unverified")) {
        if (words.size() < 4 || words.size() % 2 != 0)
            throw UsageError(
                QStringLiteral("line %1: %2 needs a view and pairs of field and value").arg(m_line).arg(op));
        View& v = view(words[1]);
        for (int i = 2; i + 1 < words.size(); i += 2) {
            Field& f = v.fields().item(words[i]);
            if (op == QLatin1String("put"))
                f.setValue(words[i + 1]);
            else
                f.putWithoutVerification(words[i + 1]);
        }
    } else {
        static const QHash<QString, void (*)(View&)> actions{
            {QStringLiteral("clear"), [](View& v) { v.clear(); }},
            {QStringLiteral("init"), [](View& v) { v.init(); }},
            {QStringLiteral("insert"), [](View& v) { v.insert(); }},
            {QStringLiteral("update"), [](View& v) { v.update(); }},
            {QStringLiteral("process"), [](View& v) { v.process(); }}};
        const auto action = actions.constFind(op);
        if (action == actions.constEnd())
            throw UsageError(
                QStringLiteral("line %1: unknown operation \"%2\"").arg(m_line).arg(words.front()));
        expectWords(words, 1, 1);
        action.value()(view(words[1]));
    }
    return true;
}

} // namespace tillbook::tool

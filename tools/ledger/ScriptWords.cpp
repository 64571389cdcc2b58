#include "ScriptWords.h"

#include "CommandLine.h"

namespace tillbook::tool {

QStringList splitScriptLine(const QString& line) {
    QStringList words;
    int i = 0;
    const int n = int(line.size());
    while (i < n) {
        if (line[i].isSpace()) {
            ++i;
            continue;
        }
        if (line[i] == u'#')
            break;
        QString word;
        while (i < n && !line[i].isSpace()) {
            const QChar c = line[i];
            if (c != u'"' && c != u'\'') {
                word += c;
                ++i;
                continue;
            }
            // A quoted part, possibly in the middle of a word.
            ++i;
            bool closed = false;
            while (i < n) {
                if (line[i] == c) {
                    if (i + 1 < n && line[i + 1] == c) {
                        word += c;
                        i += 2;
                        continue;
                    }
                    ++i;
                    closed = true;
                    break;
                }
                word += line[i++];
            }
            if (!closed)
                throw UsageError(QStringLiteral("a quote %1 is not closed").arg(c));
        }
        words << word;
    }
    return words;
}

} // namespace tillbook::tool

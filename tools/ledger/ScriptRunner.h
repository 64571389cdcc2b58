#pragma once

// Runs a script of view operations against an open session, one operation a line, printing what get,
// fetch and read return and every error with its priority. The language is described in README
// ("The ledger tool") and in `tillbook-ledger run --help`.

#include "ledger/Session.h"

#include <QHash>
#include <QTextStream>
#include <memory>

namespace tillbook::tool {

class ScriptRunner {
public:
    ScriptRunner(Session& session, QTextStream& out, bool stopOnError);

    // Returns 0 when every operation succeeded, 1 when some failed (and the script went on or stopped).
    // A line the language does not know throws UsageError naming it.
    int run(QTextStream& script);

private:
    // Runs one line's operation; false when it failed.
    bool runLine(const QStringList& words);
    View& view(const QString& name);
    void printNewErrors();
    void expectWords(const QStringList& words, int least, int most = -1) const;

    Session& m_session;
    QTextStream& m_out;
    bool m_stopOnError;
    int m_line = 0;
    int m_errorsShown = 0;
    std::map<QString, std::unique_ptr<View>> m_views;
};

} // namespace tillbook::tool

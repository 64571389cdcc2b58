// run: a script of view operations.

#include "CommandLine.h"
#include "Commands.h"
#include "ScriptRunner.h"
#include "SignIn.h"

#include <QFile>
#include <QTextStream>

namespace tillbook::tool {

const char* const RunHelp =
    "Usage: tillbook-ledger run ID SCRIPT|- [--stop-on-error] [--user NAME] [--password PW] [--date "
    "yyyy-mm-dd]\n"
    "\n"
    "Runs the view operations in file SCRIPT (or standard input for -) against company ID, one a line:\n"
    "\n"
    "  open NAME VIEW              open VIEW (e.g. AR0024) under NAME\n"
    "  close NAME\n"
    "  order NAME KEY              follow key number KEY (0 = primary)\n"
    "  compose NAME OTHER...       compose NAME with the views OTHER...\n"
    "  browse NAME [FILTER] [descending]\n"
    "  fetch NAME | read NAME      prints: fetch NAME: true / false\n"
    "  list NAME FIELD...          fetch every remaining record, printing the fields\n"
    "  clear | init | insert | update | process NAME\n"
    "  get NAME FIELD...           prints: NAME.FIELD = value\n"
    "  put NAME FIELD VALUE [FIELD VALUE]...          verified put\n"
    "  put-unverified NAME FIELD VALUE [FIELD VALUE]...\n"
    "  errors                      list the session's errors;  clear-errors  empties the list\n"
    "  stop-on-error [off]         stop at the first failing operation (or go on again)\n"
    "  echo TEXT...\n"
    "\n"
    "Words are separated by blanks; \"double\" or 'single' quotes keep blanks together, the quote doubled\n"
    "inside stands for itself; # starts a comment. Each error is printed as it arises:\n"
    "  ! Error (0): Customer Number \"ZZZ\" does not exist.\n"
    "The exit status is 0 when every operation succeeded, 1 when one failed, 2 for a script the\n"
    "language does not allow (the line is named).\n";

int runCommand(const QStringList& words) {
    QStringList valueOptions = SignInOptions;
    const Arguments args = parseArguments(words, valueOptions, {"stop-on-error"});
    if (args.positional.size() != 2)
        throw UsageError(
            QStringLiteral("run needs a company ID and a script file (or - for standard input)."));
    QFile file;
    const QString path = args.positional[1];
    const bool opened = path == QLatin1String("-")
                            ? file.open(stdin, QIODevice::ReadOnly | QIODevice::Text)
                            : (file.setFileName(path), file.open(QIODevice::ReadOnly | QIODevice::Text));
    if (!opened)
        throw UsageError(QStringLiteral("Cannot read script \"%1\": %2").arg(path, file.errorString()));
    QTextStream script(&file);
    Session session;
    signIn(session, args.positional[0], args);
    QTextStream out(stdout);
    ScriptRunner runner(session, out, args.flag(QStringLiteral("stop-on-error")));
    return runner.run(script);
}

} // namespace tillbook::tool

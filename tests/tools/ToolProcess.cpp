#include "ToolProcess.h"

#include <QProcess>
#include <grp.h>
#include <unistd.h>

namespace tillbook::test {

ToolResult runTool(const QStringList& arguments, const QByteArray& input, bool asNobody) {
    QProcess process;
    if (asNobody)
        process.setChildProcessModifier([] {
            if (setgroups(0, nullptr) != 0 || setgid(Nobody) != 0 || setuid(Nobody) != 0)
                _exit(99);
        });
    process.start(QStringLiteral(TILLBOOK_LEDGER_TOOL), arguments);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(300000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace tillbook::test

#pragma once

// tillbook-ledger run as a process, as a person or a script would: its exit code and what it wrote.

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <sys/types.h>

namespace tillbook::test {

struct ToolResult {
    int exitCode = -1;
    QString out;
    QString err;
};

// A user other than the test's own, for files the tool must not be able to write even as root.
constexpr uid_t Nobody = 65534;

ToolResult runTool(const QStringList& arguments, const QByteArray& input = {}, bool asNobody = false);

} // namespace tillbook::test

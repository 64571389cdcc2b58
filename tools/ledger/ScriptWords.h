#pragma once

// Splits a script line into words: blanks separate, "double" or 'single' quotes keep blanks (the quote
// doubled inside stands for itself), # outside quotes starts a comment.

#include <QString>
#include <QStringList>

namespace tillbook::tool {

// Throws UsageError for an unterminated quote.
QStringList splitScriptLine(const QString& line);

} // namespace tillbook::tool

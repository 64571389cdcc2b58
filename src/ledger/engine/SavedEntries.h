#pragma once

// What keeps a saved receipt entry as it was saved. Its lines are written with it, in the entry's own
// insert; its amounts, kind, customer and lines are what its batch total, its unapplied amount, the
// applications pending on documents and its printed receipt stand on. So, once saved, only its
// descriptive fields may change, and only while its batch is open; no line is added to it afterwards and
// no line without an entry is written.

#include <QSet>
#include <QString>

namespace tillbook::engine {

class ViewCore;

// Fails unless the batch the record (entry or line) belongs to is open. Locks the batch's record first
// (PostgreSQL), so that a posting cannot slip in between the check and the write.
void requireOpenBatchForChange(ViewCore& view, const QString& what);

// Fails for the first field put since the record was read whose value differs from the stored one and
// is not in `changeable`. `what` names the record in the message ("entry 3 of batch 1").
void refuseFixedChanges(ViewCore& view, const QSet<QString>& changeable, const QString& what);

// For a line (AR0043, AR0044, AR0045) inserted on its own: refused, with why.
[[noreturn]] void refuseLineOutsideItsEntry(ViewCore& line);

// "entry 3 of batch 1" or "line 2 of entry 3 of batch 1", from the record's key fields.
QString entryName(ViewCore& view);

} // namespace tillbook::engine

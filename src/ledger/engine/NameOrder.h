#pragma once

// The order of customer names in the customer list: ICU's collation for English (United States) that
// ignores case but not accents or punctuation, the same that QCollator gives for that locale with case
// ignored. A name's key compares byte by byte as the names compare, so the store can keep the names in
// that order in an index (the SQL function tb_namekey), and a reader need not sort them again.

#include <QByteArray>
#include <QStringView>

struct sqlite3;

namespace tillbook::engine {

QByteArray nameOrderKey(QStringView name);

// Makes tb_namekey(text) -> blob known to a SQLite connection. Every connection that writes customers
// needs it, since the customers' name index is made with it.
void registerNameOrder(sqlite3* db);

// The index that keeps the customers with their list's fields in name order, and the expression it is
// ordered by.
inline constexpr char NameOrderIndex[] = "ARCUS_NAMEORDER";
inline constexpr char NameOrderExpression[] = "tb_namekey(\"NAMECUST\")";

} // namespace tillbook::engine

#include "ledger/filter/LikePattern.h"

namespace tillbook::filter {

QString sqlLikePattern(const QString& written) {
    QString sql;
    sql.reserve(written.size());
    for (qsizetype i = 0; i < written.size(); ++i) {
        QChar c = written[i];
        bool literal = false;
        if (c == u'\\' && i + 1 < written.size()) {
            const QChar next = written[i + 1];
            if (next == u'%' || next == u'_' || next == u'\\') {
                c = next;
                literal = true;
                ++i;
            }
        }
        if (c == LikeEscape || (literal && c != u'\\'))
            sql += LikeEscape;
        sql += c;
    }
    return sql;
}

} // namespace tillbook::filter

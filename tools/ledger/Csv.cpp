#include "Csv.h"

namespace tillbook::tool {

QString csvLine(const QStringList& fields) {
    QStringList out;
    for (QString field : fields) {
        if (field.contains(u',') || field.contains(u'"') || field.contains(u'\n') || field.contains(u'\r')) {
            field.replace(QLatin1String("\""), QLatin1String("\"\""));
            field = u'"' + field + u'"';
        }
        out << field;
    }
    return out.join(u',') + QStringLiteral("\r\n");
}

} // namespace tillbook::tool

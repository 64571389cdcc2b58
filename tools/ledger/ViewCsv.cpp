#include "ViewCsv.h"

#include "Csv.h"

namespace tillbook::tool {

std::vector<Field*> allFields(View& view) {
    std::vector<Field*> fields;
    for (int i = 0; i < view.fields().count(); ++i)
        fields.push_back(&view.fields().at(i));
    return fields;
}

qint64 writeRecords(View& view, const std::vector<Field*>& fields, QTextStream& out) {
    QStringList line;
    for (Field* field : fields)
        line << field->name();
    out << csvLine(line);
    qint64 written = 0;
    while (view.fetch()) {
        line.clear();
        for (Field* field : fields)
            line << field->text();
        out << csvLine(line);
        ++written;
    }
    return written;
}

} // namespace tillbook::tool

#include "ledger/engine/ValueCodec.h"
#include "ledger/engine/ViewCore.h"
#include "ledger/engine/ViewCursor.h"
#include "ledger/filter/Filter.h"

#include <algorithm>

namespace tillbook::engine {

namespace {

// The first page is read with every column, to learn which ones callers use; a few records teach that,
// and each of them costs every column of the table.
constexpr int FirstPageSize = 16;
constexpr int PageSize = 1000;

filter::FieldType filterType(FieldKind kind) {
    switch (kind) {
    case FieldKind::Integer:
    case FieldKind::Long:
        return filter::FieldType::Integer;
    case FieldKind::Boolean:
        return filter::FieldType::Boolean;
    case FieldKind::Decimal:
        return filter::FieldType::Decimal;
    case FieldKind::Date:
        return filter::FieldType::Date;
    default:
        return filter::FieldType::Text;
    }
}

} // namespace

// ---- cursor ----

void ViewCore::order(int keyNumber) {
    if (keyNumber < 0 || keyNumber >= int(m_def.keys.size()))
        errors().fail(QStringLiteral("View %1 (%2) has no key %3; its keys are 0 to %4.")
                          .arg(m_def.id, m_def.title)
                          .arg(keyNumber)
                          .arg(m_def.keys.size() - 1));
    m_keyNumber = keyNumber;
    m_cursor.reset();
}

// The chosen key's fields, then the primary key's, so that the order is total and pages join exactly.
std::vector<int> ViewCore::orderFields() const {
    std::vector<int> fields = m_def.keys[size_t(m_keyNumber)].fields;
    for (int field : m_def.primaryKey().fields)
        if (std::find(fields.begin(), fields.end(), field) == fields.end())
            fields.push_back(field);
    return fields;
}

std::vector<int> ViewCore::pageColumns() const {
    std::vector<int> columns;
    if (!m_anyWanted) {
        for (int i = 0; i < int(m_def.fields.size()); ++i)
            columns.push_back(i);
        return columns;
    }
    std::vector<char> chosen(m_wanted);
    for (int field : orderFields())
        chosen[size_t(field)] = 1;
    for (int i = 0; i < int(chosen.size()); ++i)
        if (chosen[size_t(i)])
            columns.push_back(i);
    return columns;
}

FieldValues ViewCore::headerConstraint() const {
    FieldValues equal;
    if (!m_header)
        return equal;
    const auto& headerKey = m_header->m_def.primaryKey().fields;
    const auto& myKey = m_def.primaryKey().fields;
    for (size_t j = 0; j < headerKey.size() && j < myKey.size(); ++j) {
        const FieldDef& headerField = m_header->m_def.fields[size_t(headerKey[j])];
        equal.emplace_back(myKey[j], toStorage(headerField, m_header->m_values[size_t(headerKey[j])]));
    }
    return equal;
}

void ViewCore::startCursor(const QString& filterText, bool ascending) {
    auto cursor = std::make_unique<Cursor>();
    cursor->filter = filterText;
    cursor->request.ascending = ascending;
    cursor->request.order = orderFields();
    if (!filterText.trimmed().isEmpty()) {
        const filter::SqlFilter compiled =
            filter::compileFilter(filterText, [this](const QString& name) -> std::optional<filter::FieldRef> {
                const int index = m_def.fieldIndex(name);
                if (index < 0)
                    return std::nullopt;
                const FieldDef& field = m_def.fields[size_t(index)];
                return filter::FieldRef{field.name, filterType(field.kind), field.scale};
            });
        cursor->request.where = compiled.where;
        cursor->request.whereParameters = compiled.parameters;
    }
    cursor->staged = m_header && m_header->stagingForHeader();
    if (!cursor->staged)
        cursor->request.equal = headerConstraint();
    m_cursor = std::move(cursor);
}

bool ViewCore::nextPage() {
    Cursor& c = *m_cursor;
    c.request.columns = pageColumns();
    c.request.limit = c.started ? PageSize : FirstPageSize;
    c.started = true;
    c.page = m_table.page(c.request);
    c.next = 0;
    if (int(c.page.rows()) < c.request.limit)
        c.exhausted = true;
    if (c.page.rows() == 0)
        return false;
    const QVariant* last = c.page.row(c.page.rows() - 1);
    c.request.after.clear();
    for (int field : c.request.order) {
        const auto at = std::find(c.request.columns.begin(), c.request.columns.end(), field);
        c.request.after << last[size_t(at - c.request.columns.begin())];
    }
    return true;
}

void ViewCore::browse(const QString& filterText, bool ascending) {
    // A browse that fails selects nothing: the fetches after it find no record, rather than walk the
    // earlier selection or, as a fetch without any browse does, the whole view.
    m_cursor = std::make_unique<Cursor>();
    m_cursor->exhausted = true;
    m_cursor->started = true;
    m_cursor->failed = true;
    startCursor(filterText, ascending);
}

TextRows ViewCore::readAllText(const QStringList& fields, const QString& collatedBy) {
    if (!m_cursor)
        startCursor(QString(), true);
    PageRequest request = m_cursor->request;
    request.after.clear();
    request.limit = 0;
    request.columns.clear();
    for (const QString& name : fields) {
        const int field = requireField(name);
        const FieldKind kind = m_def.fields[size_t(field)].kind;
        if (kind != FieldKind::Text && kind != FieldKind::Opaque)
            errors().fail(
                QStringLiteral("Field \"%1\" of view %2 is not a text field and cannot be read as text.")
                    .arg(name, m_def.id));
        request.columns.push_back(field);
    }
    const int collated = collatedBy.isEmpty() ? -1 : requireField(collatedBy);
    if (collated >= 0 &&
        std::find(request.columns.begin(), request.columns.end(), collated) == request.columns.end())
        errors().fail(
            QStringLiteral("Field \"%1\" orders the rows of view %2, so it must be among the fields read.")
                .arg(collatedBy, m_def.id));
    if (m_cursor->failed || m_cursor->staged)
        return TextRows(int(fields.size()));
    return m_table.text(request, collated);
}

bool ViewCore::fetch() {
    if (!m_cursor)
        startCursor(QString(), true);
    Cursor& c = *m_cursor;
    if (c.staged)
        return fetchStaged();
    if (c.next >= c.page.rows()) {
        if (c.exhausted || !nextPage())
            return false;
    }
    loadRow(c.request.columns, c.page.row(c.next++));
    return true;
}

// The lines of a new header, in memory until the header is inserted. Filters do not apply to them.
bool ViewCore::fetchStaged() {
    Cursor& c = *m_cursor;
    const auto it = m_header->m_staged.find(this);
    if (it == m_header->m_staged.end())
        return false;
    std::vector<Values> lines = it->second;
    if (!c.request.ascending)
        std::reverse(lines.begin(), lines.end());
    if (c.next >= lines.size())
        return false;
    m_values = lines[c.next++];
    std::fill(m_loaded.begin(), m_loaded.end(), 1);
    std::fill(m_dirty.begin(), m_dirty.end(), 0);
    m_isNew = false;
    m_key = storedKey();
    return true;
}

} // namespace tillbook::engine

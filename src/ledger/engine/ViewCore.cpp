#include "ledger/engine/ViewCore.h"

#include "ledger/engine/Transaction.h"
#include "ledger/engine/ValueCodec.h"
#include "ledger/filter/Filter.h"

#include <algorithm>
#include <cstring>

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

// The stored form of a field's default value, as the table's columns default to it.
bool isStoredDefault(const QVariant& stored) {
    if (stored.metaType().id() == QMetaType::QString)
        return static_cast<const QString*>(stored.constData())->isEmpty();
    return stored.toLongLong() == 0;
}

bool isNumeric(const FieldDef& field) {
    return field.kind == FieldKind::Decimal || field.kind == FieldKind::Integer ||
           field.kind == FieldKind::Long;
}

} // namespace

struct ViewCore::Cursor {
    PageRequest request;
    Page page;
    size_t next = 0;
    bool exhausted = false;
    bool started = false;
    bool staged = false; // walking the lines its header holds in memory
    bool failed = false; // the browse was refused: it selects nothing
    QString filter;
};

ViewCore::ViewCore(std::shared_ptr<SessionState> session, const ViewDef& def)
    : m_session(std::move(session)), m_def(def), m_rules(makeViewRules(def.id)),
      m_table(*m_session->store, def) {
    const size_t n = def.fields.size();
    m_values.resize(n);
    m_loaded.assign(n, 1);
    m_dirty.assign(n, 0);
    m_wanted.assign(n, 0);
    blankRecord();
    if (def.opensOnFirstRecord)
        fetch();
}

ViewCore::~ViewCore() {
    if (m_header) {
        auto& siblings = m_header->m_details;
        siblings.erase(std::remove(siblings.begin(), siblings.end(), this), siblings.end());
        m_header->m_staged.erase(this);
    }
    for (ViewCore* detail : m_details)
        detail->m_header = nullptr;
    for (ViewCore* other : m_composed)
        other->m_composed.erase(std::remove(other->m_composed.begin(), other->m_composed.end(), this),
                                other->m_composed.end());
}

// ---- the current record ----

void ViewCore::blankRecord() {
    if (m_defaults.empty())
        for (const FieldDef& field : m_def.fields)
            m_defaults.push_back(defaultValue(field));
    std::copy(m_defaults.begin(), m_defaults.end(), m_values.begin());
    std::fill(m_loaded.begin(), m_loaded.end(), 1);
    std::fill(m_dirty.begin(), m_dirty.end(), 0);
    m_isNew = true;
    m_key.clear();
}

int ViewCore::findField(const QString& name) {
    SeenName& seen = m_seenNames[(quintptr(name.constData()) >> 4) % m_seenNames.size()];
    if (seen.index >= 0 && seen.name.constData() == name.constData() && seen.name.size() == name.size())
        return seen.index;
    int index = -1;
    const auto exact = m_def.byUpperName.constFind(name);
    if (exact != m_def.byUpperName.constEnd()) {
        index = exact.value();
    } else if (const auto other = m_otherSpellings.constFind(name); other != m_otherSpellings.constEnd()) {
        index = other.value();
    } else {
        index = m_def.fieldIndex(name);
        if (index >= 0)
            m_otherSpellings.insert(name, index);
    }
    if (index >= 0)
        seen = {name, index};
    return index;
}

int ViewCore::requireField(const QString& name) {
    const int index = findField(name);
    if (index < 0)
        errors().fail(
            QStringLiteral("Field \"%1\" does not exist in view %2 (%3).").arg(name, m_def.id, m_def.title));
    return index;
}

QVariant ViewCore::value(int field) {
    const size_t i = size_t(field);
    if (!m_wanted[i]) {
        m_wanted[i] = 1;
        m_anyWanted = true;
    }
    if (!m_loaded[i])
        loadRest();
    return m_values[i];
}

void ViewCore::put(int field, const QVariant& input, bool verify) {
    const FieldDef& def = m_def.fields[size_t(field)];
    QString problem;
    const std::optional<QVariant> converted = convertForPut(def, input, verify, problem);
    if (!converted)
        errors().fail(problem);
    if (verify)
        m_rules->checkPut(*this, field, *converted);
    set(field, *converted);
}

void ViewCore::set(int field, const QVariant& value) {
    m_values[size_t(field)] = value;
    m_loaded[size_t(field)] = 1;
    m_dirty[size_t(field)] = 1;
}

void ViewCore::loadRow(const std::vector<int>& columns, QVariant* row) {
    std::memset(m_loaded.data(), 0, m_loaded.size());
    std::memset(m_dirty.data(), 0, m_dirty.size());
    for (size_t k = 0; k < columns.size(); ++k) {
        const size_t i = size_t(columns[k]);
        m_values[i] = std::move(row[k]);
        fromStorageInPlace(m_def.fields[i], m_values[i]);
        m_loaded[i] = 1;
    }
    m_isNew = false;
    // The key as read, kept to find the record again; the vector's storage is reused record after record.
    m_key.clear();
    for (int field : m_def.primaryKey().fields)
        m_key.emplace_back(field, toStorage(m_def.fields[size_t(field)], m_values[size_t(field)]));
}

// The columns a page left out, read by key when a caller first needs one of them.
void ViewCore::loadRest() {
    std::vector<int> missing;
    for (size_t i = 0; i < m_loaded.size(); ++i)
        if (!m_loaded[i])
            missing.push_back(int(i));
    if (missing.empty())
        return;
    const std::optional<Row> row = m_key.empty() ? std::nullopt : m_table.read(missing, m_key);
    for (size_t k = 0; k < missing.size(); ++k) {
        const size_t i = size_t(missing[k]);
        m_values[i] = row ? fromStorage(m_def.fields[i], (*row)[k]) : defaultValue(m_def.fields[i]);
        m_loaded[i] = 1;
    }
}

FieldValues ViewCore::storedKey() const {
    FieldValues key;
    for (int field : m_def.primaryKey().fields)
        key.emplace_back(field, toStorage(m_def.fields[size_t(field)], m_values[size_t(field)]));
    return key;
}

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

// ---- composition ----

void ViewCore::compose(const std::vector<ViewCore*>& views) {
    const auto link = [](ViewCore* header, ViewCore* detail) {
        if (detail->m_header == header)
            return;
        detail->m_header = header;
        header->m_details.push_back(detail);
    };
    const auto remember = [](ViewCore* a, ViewCore* b) {
        if (std::find(a->m_composed.begin(), a->m_composed.end(), b) == a->m_composed.end())
            a->m_composed.push_back(b);
    };
    for (ViewCore* other : views) {
        if (!other || other == this)
            continue;
        remember(this, other);
        remember(other, this);
        const size_t mine = m_def.primaryKey().fields.size();
        const size_t theirs = other->m_def.primaryKey().fields.size();
        if (m_def.isHeader() && theirs > mine)
            link(this, other);
        else if (other->m_def.isHeader() && mine > theirs)
            link(other, this);
    }
}

bool ViewCore::hasKey(const Values& line, const FieldValues& key) const {
    for (const auto& [field, stored] : key)
        if (toStorage(m_def.fields[size_t(field)], line[size_t(field)]) != stored)
            return false;
    return true;
}

bool ViewCore::stagingForHeader() const {
    return m_isNew && m_rules->stagesDetails(*this);
}

int ViewCore::stagedCount(const ViewCore* detail) const {
    const auto it = m_staged.find(detail);
    return it == m_staged.end() ? 0 : int(it->second.size());
}

// A line of a new header: takes the header's key, and the next line number when it has none.
void ViewCore::stage() {
    const FieldValues prefix = headerConstraint();
    for (const auto& [field, stored] : prefix)
        m_values[size_t(field)] = fromStorage(m_def.fields[size_t(field)], stored);
    auto& lines = m_header->m_staged[this];
    const int last = m_def.primaryKey().fields.back();
    const FieldDef& lineField = m_def.fields[size_t(last)];
    if (isNumeric(lineField) && toStorage(lineField, m_values[size_t(last)]).toLongLong() == 0) {
        qlonglong highest = 0;
        for (const Values& line : lines)
            highest = std::max(highest, toStorage(lineField, line[size_t(last)]).toLongLong());
        m_values[size_t(last)] = fromStorage(lineField, highest + 1);
    }
    const FieldValues key = storedKey();
    for (const Values& line : lines) {
        if (hasKey(line, key))
            errors().fail(QStringLiteral("Line %1 is already in %2 (%3).")
                              .arg(displayText(lineField, m_values[size_t(last)]), m_def.title, m_def.id));
    }
    lines.push_back(m_values);
    m_isNew = false;
    m_key = key;
    std::fill(m_dirty.begin(), m_dirty.end(), 0);
}

// ---- writing ----

void ViewCore::insertRecord(const Values& values) {
    const FieldValues key = storedKey();
    const bool knownAbsent =
        m_absentIn >= 0 && m_absentIn == store().transactionNumber() && key == m_absentKey;
    if (!knownAbsent && m_table.read({key.front().first}, key)) {
        QStringList parts;
        for (int field : m_def.primaryKey().fields)
            parts << displayText(m_def.fields[size_t(field)], values[size_t(field)]);
        errors().fail(QStringLiteral("%1 record \"%2\" already exists.")
                          .arg(m_def.title, parts.join(QStringLiteral(", "))));
    }
    // Columns left out take the table's defaults ('' and 0), which are the stored form of every field's
    // default: a record of a wide table is written in the columns it fills.
    std::vector<int> columns;
    Row row;
    for (int i = 0; i < int(m_def.fields.size()); ++i) {
        QVariant stored = toStorage(m_def.fields[size_t(i)], values[size_t(i)]);
        if (isStoredDefault(stored))
            continue;
        columns.push_back(i);
        row.push_back(std::move(stored));
    }
    if (columns.empty()) // a record of defaults only: its key, written as it is
        for (int field : m_def.primaryKey().fields) {
            columns.push_back(field);
            row.push_back(toStorage(m_def.fields[size_t(field)], values[size_t(field)]));
        }
    m_table.insert(columns, row);
}

void ViewCore::writeStagedLines() {
    for (ViewCore* detail : m_details) {
        const auto it = m_staged.find(detail);
        if (it == m_staged.end())
            continue;
        const Values saved = detail->m_values;
        const bool savedNew = detail->m_isNew;
        for (const Values& line : it->second) {
            detail->m_values = line;
            for (const auto& [field, stored] : detail->headerConstraint())
                detail->m_values[size_t(field)] = fromStorage(detail->m_def.fields[size_t(field)], stored);
            detail->m_rules->beforeInsert(*detail);
            detail->insertRecord(detail->m_values);
            detail->m_rules->afterInsert(*detail);
        }
        detail->m_values = saved;
        detail->m_isNew = savedNew;
    }
}

void ViewCore::insert() {
    if (m_header && m_header->stagingForHeader()) {
        stage();
        return;
    }
    loadRest();
    m_rules->checkDirectInsert(*this);
    Transaction transaction(store());
    m_rules->beforeInsert(*this);
    insertRecord(m_values);
    writeStagedLines();
    m_rules->afterInsert(*this);
    transaction.commit();
    m_absentIn = -1;
    m_staged.clear();
    m_isNew = false;
    m_key = storedKey();
    std::fill(m_dirty.begin(), m_dirty.end(), 0);
}

// An update changes the record that was read. A key put since would move it elsewhere: an entry into
// another batch, a line away from its entry. That is refused, whatever view it is.
void ViewCore::refuseKeyChange() {
    const FieldValues key = storedKey();
    for (size_t k = 0; k < key.size() && k < m_key.size(); ++k) {
        if (key[k].second == m_key[k].second)
            continue;
        const FieldDef& field = m_def.fields[size_t(key[k].first)];
        errors().fail(QStringLiteral("%1 of a saved %2 record cannot be changed (from %3 to %4): read the "
                                     "record wanted instead.")
                          .arg(field.label(), m_def.title,
                               displayText(field, fromStorage(field, m_key[k].second)),
                               displayText(field, m_values[size_t(key[k].first)])));
    }
}

void ViewCore::update() {
    if (m_isNew)
        errors().fail(
            QStringLiteral("There is no %1 record to update: read or fetch one first.").arg(m_def.title));
    if (m_rules->keepsRecords()) {
        m_rules->updateKept(*this);
        std::fill(m_dirty.begin(), m_dirty.end(), 0);
        return;
    }
    if (m_header && m_header->stagingForHeader()) {
        auto& lines = m_header->m_staged[this];
        for (Values& line : lines) {
            if (hasKey(line, m_key))
                line = m_values;
        }
        m_key = storedKey();
        return;
    }
    refuseKeyChange();
    Transaction transaction(store());
    m_rules->beforeUpdate(*this);
    FieldValues changes;
    for (size_t i = 0; i < m_dirty.size(); ++i)
        if (m_dirty[i])
            changes.emplace_back(int(i), toStorage(m_def.fields[i], m_values[i]));
    if (!m_table.update(m_key, changes))
        errors().fail(
            QStringLiteral("The %1 record no longer exists; it may have been deleted at another till.")
                .arg(m_def.title));
    m_rules->afterUpdate(*this);
    transaction.commit();
    m_key = storedKey();
    std::fill(m_dirty.begin(), m_dirty.end(), 0);
}

bool ViewCore::read() {
    if (m_rules->keepsRecords()) {
        const bool found = m_rules->readKept(*this);
        m_isNew = !found;
        std::fill(m_dirty.begin(), m_dirty.end(), 0);
        return found;
    }
    if (m_header && m_header->stagingForHeader()) {
        const FieldValues key = storedKey();
        for (const Values& line : m_header->m_staged[this]) {
            if (hasKey(line, key)) {
                m_values = line;
                std::fill(m_dirty.begin(), m_dirty.end(), 0);
                m_isNew = false;
                m_key = key;
                return true;
            }
        }
        return false;
    }
    // The key alone says whether the record is there; its other columns are read, all at once, when a
    // caller first asks for one of them (as for the records of a page).
    const std::vector<int>& columns = m_def.primaryKey().fields;
    std::optional<Row> row = m_table.read(columns, storedKey());
    if (!row) {
        m_absentKey = storedKey();
        m_absentIn = store().transactionNumber();
        return false;
    }
    loadRow(columns, row->data());
    return true;
}

void ViewCore::clear() {
    blankRecord();
    m_staged.clear();
}

void ViewCore::init() {
    blankRecord();
    m_staged.clear();
    m_rules->initRecord(*this);
    std::fill(m_dirty.begin(), m_dirty.end(), 0);
}

void ViewCore::process() {
    m_rules->process(*this);
}

} // namespace tillbook::engine

#include "ledger/engine/Transaction.h"
#include "ledger/engine/ValueCodec.h"
#include "ledger/engine/ViewCore.h"

namespace tillbook::engine {

namespace {

// The stored form of a field's default value, as the table's columns default to it.
bool isStoredDefault(const QVariant& stored) {
    if (stored.metaType().id() == QMetaType::QString)
        return static_cast<const QString*>(stored.constData())->isEmpty();
    return stored.toLongLong() == 0;
}

} // namespace

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

void ViewCore::readAllKept(const QStringList& fields, const KeptRowSink& row) {
    std::vector<int> indexes;
    indexes.reserve(size_t(fields.size()));
    for (const QString& name : fields)
        indexes.push_back(requireField(name));
    m_rules->readAllKept(*this, indexes, row);
    // As after a read of the key past the last record.
    m_isNew = true;
    std::fill(m_dirty.begin(), m_dirty.end(), 0);
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

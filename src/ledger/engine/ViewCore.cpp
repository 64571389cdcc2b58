#include "ledger/engine/ViewCore.h"

#include "ledger/engine/ValueCodec.h"
#include "ledger/engine/ViewCursor.h"

#include <algorithm>
#include <cstring>

namespace tillbook::engine {

namespace {

bool isNumeric(const FieldDef& field) {
    return field.kind == FieldKind::Decimal || field.kind == FieldKind::Integer ||
           field.kind == FieldKind::Long;
}

} // namespace

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
    set(field, std::move(*converted));
}

void ViewCore::set(int field, const QVariant& value) {
    set(field, QVariant(value));
}

void ViewCore::set(int field, QVariant&& value) {
    m_values[size_t(field)] = std::move(value);
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

} // namespace tillbook::engine

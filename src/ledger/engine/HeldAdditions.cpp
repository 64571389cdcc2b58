#include "ledger/engine/HeldAdditions.h"

#include "ledger/LedgerError.h"
#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/StoreFailure.h"
#include "ledger/engine/ValueCodec.h"

#include <QScopeGuard>
#include <algorithm>

namespace tillbook::engine {

QString HeldAdditions::recordId(const ViewDef& view, const FieldValues& key) {
    QString id = view.id;
    for (const auto& part : key) {
        id += QChar(0x1f);
        id += part.second.toString();
    }
    return id;
}

bool HeldAdditions::touches(const ViewDef& view, const std::vector<int>& fields, bool anyField) const {
    for (const auto& [held, mask] : m_heldFields) {
        if (held->table != view.table)
            continue;
        if (anyField)
            return true;
        return std::any_of(fields.begin(), fields.end(), [&](int f) { return mask[size_t(f)] != 0; });
    }
    return false;
}

bool HeldAdditions::add(CompanyStore& store, const ViewDef& view, const FieldValues& key,
                        const FieldValues& additions) {
    const QString id = recordId(view, key);
    auto it = m_records.find(id);
    if (it == m_records.end())
        it = m_records.insert(id, Record{&view, key, {}});
    Record& record = it.value();
    // The figures not read yet, read at once; the record holds nothing of them, so what the table
    // holds is what they are.
    std::vector<int> unread;
    for (const auto& [field, amount] : additions)
        if (!figureOf(record, field))
            unread.push_back(field);
    if (!unread.empty()) {
        const std::optional<Row> row = TableAccess(store, view).readAsStored(unread, key);
        if (!row) {
            if (record.figures.empty())
                m_records.erase(it);
            return false;
        }
        for (size_t k = 0; k < unread.size(); ++k)
            record.figures.emplace_back(unread[k], Figure{(*row)[k].toLongLong(), 0});
        markHeld(view, record.figures);
    }
    // Every sum checked before any is taken, so that a refused addition leaves the others as they were.
    for (const auto& [field, amount] : additions) {
        const Figure& figure = *figureOf(record, field);
        const FieldDef& def = view.fields[size_t(field)];
        const qint64 add = amount.toLongLong();
        const qint64 capacity = storedCapacity(def);
        const qint64 sum = figure.stored + figure.added; // within capacity, as every sum before it
        if ((add > 0 && sum > capacity - add) || (add < 0 && sum < -capacity - add))
            throw InputError(tooLargeMessage(def, formatStored(def, sum + add)));
    }
    for (const auto& [field, amount] : additions) {
        figureOf(record, field)->added += amount.toLongLong();
        if (!m_levels.empty())
            m_undo.push_back({id, field, amount.toLongLong(), {}});
    }
    return true;
}

HeldAdditions::Figure* HeldAdditions::figureOf(Record& record, int field) {
    for (auto& [f, figure] : record.figures)
        if (f == field)
            return &figure;
    return nullptr;
}

void HeldAdditions::keepLevel() {
    m_levels.pop_back();
    if (m_levels.empty())
        m_undo.clear(); // the transaction itself is never taken back in part
}

void HeldAdditions::rollBackLevel() {
    const size_t start = m_levels.back();
    m_levels.pop_back();
    while (m_undo.size() > start) {
        Undo& undo = m_undo.back();
        if (undo.field < 0) {
            // The level's writes are gone with it: what was held then is held again.
            m_records = std::move(undo.written);
        } else if (auto it = m_records.find(undo.record); it != m_records.end()) {
            if (Figure* figure = figureOf(it.value(), undo.field))
                figure->added -= undo.amount;
        }
        m_undo.pop_back();
    }
    m_heldFields.clear();
    for (const Record& record : std::as_const(m_records))
        markHeld(*record.view, record.figures);
}

void HeldAdditions::markHeld(const ViewDef& view, const std::vector<std::pair<int, Figure>>& figures) {
    auto mask = std::find_if(m_heldFields.begin(), m_heldFields.end(),
                             [&](const auto& held) { return held.first == &view; });
    if (mask == m_heldFields.end())
        mask = m_heldFields.insert(m_heldFields.end(), {&view, std::vector<char>(view.fields.size(), 0)});
    for (const auto& figure : figures)
        mask->second[size_t(figure.first)] = 1;
}

void HeldAdditions::write(CompanyStore& store) {
    QHash<QString, Record> records = std::move(m_records);
    m_records.clear();
    m_heldFields.clear();
    const auto keepForUndo = qScopeGuard([&] {
        if (!m_levels.empty())
            m_undo.push_back({QString(), -1, 0, std::move(records)});
    });
    for (const Record& record : std::as_const(records)) {
        FieldValues additions;
        for (const auto& [field, figure] : record.figures)
            if (figure.added != 0)
                additions.emplace_back(field, qlonglong(figure.added));
        std::sort(additions.begin(), additions.end(),
                  [](const auto& a, const auto& b) { return a.first < b.first; });
        if (!additions.empty() && !addStoredAmounts(store, *record.view, record.key, additions))
            throw storeFailure(QStringLiteral("%1: a record whose figures were being added to is gone.")
                                   .arg(record.view->title));
    }
}

void HeldAdditions::drop() {
    m_records.clear();
    m_heldFields.clear();
    m_undo.clear();
    m_levels.clear();
}

} // namespace tillbook::engine

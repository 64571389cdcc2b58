#pragma once

// Additions to a record's figures (a customer's balance and document counts) held in memory while a
// transaction runs, and written once a record: before the commit, or as soon as a statement may read or
// change those figures. A load of a million documents then writes each customer once, not once a
// document. What is held follows the transaction's levels: a level rolled back takes back what it held
// (and what it wrote of what was held before it), the whole transaction rolled back all of it.

#include "ledger/engine/Schema.h"
#include "ledger/engine/TableAccess.h"

#include <QHash>
#include <vector>

namespace tillbook::engine {

class CompanyStore;

class HeldAdditions {
public:
    bool empty() const { return m_records.isEmpty(); }
    // Whether a statement on `view`'s table naming `fields` (or, with `anyField`, a condition that may
    // name any of them) must see what is held first.
    bool touches(const ViewDef& view, const std::vector<int>& fields, bool anyField = false) const;
    // Holds `additions` (field, stored amount, in field order) to the record whose key is `key`. The
    // record's figures are read on their first addition, so that a sum that would not fit is refused
    // here, by the write that makes it. False when there is no such record.
    bool add(CompanyStore& store, const ViewDef& view, const FieldValues& key, const FieldValues& additions);
    // Writes what is held and holds nothing; throws what a write throws.
    void write(CompanyStore& store);
    void drop();

    // A level within the transaction (a savepoint) begins, is kept as part of the one around it, or is
    // rolled back.
    void beginLevel() { m_levels.push_back(m_undo.size()); }
    void keepLevel();
    void rollBackLevel();

private:
    struct Figure {
        qint64 stored = 0; // as read when first added to
        qint64 added = 0;
    };
    struct Record {
        const ViewDef* view = nullptr;
        FieldValues key;
        std::vector<std::pair<int, Figure>> figures; // by field, few
    };
    static QString recordId(const ViewDef& view, const FieldValues& key);

    // What a level changed, to take it back: an addition, or what was held when it was written.
    struct Undo {
        QString record;
        int field = -1;
        qint64 amount = 0;
        QHash<QString, Record> written; // field -1: the records written
    };
    static Figure* figureOf(Record& record, int field);
    void markHeld(const ViewDef& view, const std::vector<std::pair<int, Figure>>& figures);

    QHash<QString, Record> m_records;
    std::vector<Undo> m_undo;
    std::vector<size_t> m_levels; // where each open level's undo starts
    // The fields held, by view: a statement that names none of them cannot see the difference.
    std::vector<std::pair<const ViewDef*, std::vector<char>>> m_heldFields;
};

} // namespace tillbook::engine

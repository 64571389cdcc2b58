#pragma once

// The working of one open view: its current record, its cursor over the table, its place in a
// composition (header or detail) and its rules. View and Field are the callers' face of it.

#include "ledger/engine/Schema.h"
#include "ledger/engine/SessionState.h"
#include "ledger/engine/TableAccess.h"
#include "ledger/engine/ViewRules.h"

#include <QHash>
#include <QVariant>
#include <array>
#include <map>
#include <memory>
#include <type_traits>
#include <vector>

namespace tillbook::engine {

// Writes `value` into `held` where it stands when `held` holds a T already, else makes it hold one: for
// rules that give out a whole record, record after record. The type and sharing are read from the variant's
// data inline, since metaType() and data() are calls into Qt, paid dozens of times a record.
template <typename T> void assignValue(QVariant& held, const T& value) {
    const QVariant::DataPtr& data = held.data_ptr();
    if (data.type() == QMetaType::fromType<T>() && !data.is_shared) {
        T& current = *static_cast<T*>(const_cast<void*>(held.constData()));
        // A plain value equal to the one held is left alone: most of a record's amounts are the same
        // from one record to the next (nothing pending, nothing applied).
        if constexpr (std::is_trivially_copyable_v<T>) {
            if (current != value)
                current = value;
        } else if constexpr (std::is_same_v<T, QString>) {
            if (!current.isSharedWith(value))
                current = value;
        } else {
            current = value;
        }
    } else
        held = QVariant::fromValue(value);
}

class ViewCore {
public:
    ViewCore(std::shared_ptr<SessionState> session, const ViewDef& def);
    ~ViewCore();

    const ViewDef& def() const { return m_def; }
    CompanyStore& store() { return *m_session->store; }
    ErrorList& errors() { return m_session->errors; }
    const SessionState& session() const { return *m_session; }

    // The current record. value() reads columns a page left out on first use.
    QVariant value(int field);
    // The value when the current record holds it already (nothing to read, nothing that can fail),
    // else nullptr: the common case of a get, answered without the error bookkeeping of value().
    const QVariant* loadedValue(int field) {
        const size_t i = size_t(field);
        if (!m_loaded[i])
            return nullptr;
        if (!m_wanted[i]) {
            m_wanted[i] = 1;
            m_anyWanted = true;
        }
        return &m_values[i];
    }
    QVariant value(const QString& name) { return value(requireField(name)); }
    void put(int field, const QVariant& input, bool verify);
    // For rules: sets a value of the field's type without checks.
    void set(int field, const QVariant& value);
    void set(int field, QVariant&& value);
    void set(const QString& name, const QVariant& v) { set(requireField(name), v); }
    // As set(), through assignValue: for rules that show a whole record, record after record.
    template <typename T> void setAs(int field, const T& value) {
        assignValue(m_values[size_t(field)], value);
        m_loaded[size_t(field)] = 1;
        m_dirty[size_t(field)] = 1;
    }
    int requireField(const QString& name); // fails for an unknown field
    // Any case, blanks around ignored; -1 when there is none. A name seen once in another spelling is
    // kept, so that no call after the first makes a new string.
    int findField(const QString& name);
    bool isNew() const { return m_isNew; }
    // Whether the field was put or set since the record was read or written.
    bool isDirty(int field) const { return m_dirty[size_t(field)] != 0; }

    void order(int keyNumber);
    void compose(const std::vector<ViewCore*>& views);
    void browse(const QString& filter, bool ascending);
    bool fetch();
    TextRows readAllText(const QStringList& fields, const QString& collatedBy);
    // For a view that keeps its records (a work list built by process): every record in key order, the
    // values of `fields` of each handed to `row`, as reading them key by key would give them.
    void readAllKept(const QStringList& fields, const KeptRowSink& row);
    void clear();
    void init();
    bool read();
    void update();
    void insert();
    void process();

    ViewCore* header() const { return m_header; }
    // Every view this one was composed with, either way round; rules find their batch or list here.
    const std::vector<ViewCore*>& composedWith() const { return m_composed; }
    ViewRules& rules() { return *m_rules; }
    const std::vector<ViewCore*>& details() const { return m_details; }
    // Lines waiting in this header for its insert, per detail view.
    int stagedCount(const ViewCore* detail) const;

private:
    struct Cursor;
    using Values = std::vector<QVariant>;

    void blankRecord();
    void loadRow(const std::vector<int>& columns, QVariant* row); // takes the row's cells over
    void loadRest();
    FieldValues storedKey() const;
    FieldValues headerConstraint() const;
    std::vector<int> orderFields() const;
    std::vector<int> pageColumns() const;
    void startCursor(const QString& filter, bool ascending);
    bool nextPage();
    bool fetchStaged();
    void insertRecord(const Values& values);
    void writeStagedLines();
    bool stagingForHeader() const;
    void stage();
    bool hasKey(const Values& line, const FieldValues& key) const; // a staged line with this key
    void refuseKeyChange();

    std::shared_ptr<SessionState> m_session;
    const ViewDef& m_def;
    std::unique_ptr<ViewRules> m_rules;
    TableAccess m_table;
    int m_keyNumber = 0;

    Values m_values;
    Values m_defaults; // every field's default, made once: a blank record is a copy of them
    std::vector<char> m_loaded;
    std::vector<char> m_dirty;
    std::vector<char> m_wanted; // fields callers have read: the columns later pages bring
    bool m_anyWanted = false;
    bool m_isNew = true;
    FieldValues m_key; // the stored key of the record as read
    // A key read finds no record for, and the transaction that read it: its insert need not look again.
    FieldValues m_absentKey;
    qint64 m_absentIn = -1;

    std::unique_ptr<Cursor> m_cursor;
    QHash<QString, int> m_otherSpellings; // names as callers wrote them, other than the stored name
    // Names found before, by where their characters lie: a caller that names fields with the same
    // strings each time (literals, a list it keeps) finds a field by two comparisons, without hashing
    // the name. Each entry holds its string, so that its characters can be neither freed nor changed
    // while they are here.
    struct SeenName {
        QString name;
        int index = -1;
    };
    std::array<SeenName, 64> m_seenNames;

    ViewCore* m_header = nullptr;
    std::vector<ViewCore*> m_details;
    std::vector<ViewCore*> m_composed;
    std::map<const ViewCore*, std::vector<Values>> m_staged;
};

} // namespace tillbook::engine

#pragma once

// An open view of a company: one record at a time of one table, found by key or walked in key order
// under a filter. Every failing operation throws LedgerError and leaves it on the session's list; an
// operation that runs the view's rules returns the warnings and messages they raised (on the list too).

#include "ledger/ErrorList.h"
#include "ledger/Fields.h"
#include "ledger/TextRows.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <memory>
#include <vector>

namespace tillbook {

namespace engine {
class ViewCore;
struct SessionState;
struct ViewDef;
} // namespace engine

class View {
public:
    View(std::shared_ptr<engine::SessionState> session, const engine::ViewDef& def);
    ~View();
    View(const View&) = delete;
    View& operator=(const View&) = delete;

    // The key browse and fetch follow: 0 the primary key, then the view's other keys.
    void order(int keyNumber);
    // Joins views that work together; a header view's details follow its current record, and lines
    // inserted into them while it is new wait for its insert.
    void compose(const std::vector<View*>& views);
    // Selects the records matching `filter` (empty = all) for fetch, in key order.
    void browse(const QString& filter, bool ascending);
    // The next selected record; without a browse, walks the whole view from its first record.
    bool fetch();
    // Every record the browse selects (all of them without one), whatever was fetched already: `fields`
    // (text fields) of each as text, in one block, read in one pass. With `collatedBy` (one of the fields)
    // in the order of that field as customer names are listed (case ignored, accents not; names that
    // compare equal in no set order), else in key order. The current record stays as it was. The way to
    // read a long list at once.
    TextRows readAllText(const QStringList& fields, const QString& collatedBy = QString());
    // For a view that keeps its records in memory (the open-document list once processed): every record in
    // key order, the values of `fields` of each handed to `row`, as putting each key and reading would
    // give them; the record is then left as a read of the key after the last one leaves it. The way to
    // read the whole list at once.
    Warnings readAllKept(const QStringList& fields,
                         const std::function<void(const std::vector<QVariant>& values)>& row);
    void clear();       // a blank record
    Warnings process(); // the view's own processing
    Warnings init();    // a new record with its defaults
    bool read();        // the record whose key fields have been put
    Warnings update();
    Warnings insert();

    FieldCollection& fields() { return m_fields; }
    QString id() const;
    QString title() const;

    engine::ViewCore& core() { return *m_core; }

private:
    std::unique_ptr<engine::ViewCore> m_core;
    FieldCollection m_fields;
};

} // namespace tillbook

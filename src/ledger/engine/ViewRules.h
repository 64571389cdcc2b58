#pragma once

// The behaviour of a view beyond storing records: defaults of a new record, the checks of a verified
// put, and what happens around insert, update and process. A view without rules of its own gets the
// general ones (existence of the codes its fields name). Rules of a view plug in with registerViewRules.

#include <QString>
#include <QVariant>
#include <functional>
#include <memory>
#include <vector>

namespace tillbook::engine {

class ViewCore;

using KeptRowSink = std::function<void(const std::vector<QVariant>& values)>;

class ViewRules {
public:
    virtual ~ViewRules() = default;

    // After a new record has its blank values: set the view's defaults.
    virtual void initRecord(ViewCore&) {}
    // Before a verified put stores `value` (already of the field's type); fail through the session's errors.
    virtual void checkPut(ViewCore& view, int field, const QVariant& value);
    // Inside the write's transaction, before the record (and a header's staged lines) are written:
    // numbering, last checks.
    virtual void beforeInsert(ViewCore&) {}
    // Before a record is inserted on its own, not as a staged line its header's insert writes.
    virtual void checkDirectInsert(ViewCore&) {}
    // Inside the same transaction, after header and lines are written: totals kept elsewhere.
    virtual void afterInsert(ViewCore&) {}
    virtual void beforeUpdate(ViewCore&) {}
    virtual void afterUpdate(ViewCore&) {}
    virtual void process(ViewCore&) {}
    // Whether lines inserted into this view's details wait in memory until this record is inserted.
    virtual bool stagesDetails(const ViewCore& view) const;

    // A view whose records are a work list that process builds and the rules keep in memory, not rows
    // of a table: read finds the record whose key was put, update changes it there.
    virtual bool keepsRecords() const { return false; }
    virtual bool readKept(ViewCore&) { return false; }
    virtual void updateKept(ViewCore&) {}
    // Every kept record in key order, the values of `fields` of each handed to `row`; the record is then
    // left as a read of the key after the last one leaves it.
    virtual void readAllKept(ViewCore& view, const std::vector<int>& fields, const KeptRowSink& row);
};

using ViewRulesFactory = std::function<std::unique_ptr<ViewRules>()>;

// Gives the view `viewId` its own rules (replacing the general ones) for views opened from now on.
void registerViewRules(const QString& viewId, ViewRulesFactory factory);
std::unique_ptr<ViewRules> makeViewRules(const QString& viewId);

} // namespace tillbook::engine

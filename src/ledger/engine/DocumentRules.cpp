#include "ledger/engine/DocumentRules.h"

#include "ledger/engine/PendingApplications.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/ValueCodec.h"
#include "ledger/engine/ViewCore.h"

namespace tillbook::engine {

namespace {

const QString Due = QStringLiteral("AMTDUETC");

QString documentName(ViewCore& view, bool opening = false) {
    return QStringLiteral("%1ocument %2 of customer %3")
        .arg(opening ? QStringLiteral("D") : QStringLiteral("d"))
        .arg(textField(view, QStringLiteral("IDINVC")).trimmed(),
             textField(view, QStringLiteral("IDCUST")).trimmed());
}

// Invoices, debit notes, credit notes and interest come from the books; the others are made by posting.
void checkType(ViewCore& view) {
    const int type = int(wholeField(view, QStringLiteral("TRXTYPETXT")));
    if (type < 1 || type > 4)
        view.errors().fail(
            QStringLiteral("Documents of type %1 are made by posting receipts; %2 cannot be one.")
                .arg(
                    displayText(
                        view.def().fields[size_t(view.def().fieldIndex(QStringLiteral("TRXTYPETXT")))], type),
                    documentName(view)));
}

// Due from nothing up to the document's amount, in the document's own direction (credit notes below zero).
void checkDueWithinAmount(ViewCore& view, Money due) {
    const Money amount = moneyField(view, QStringLiteral("AMTINVCTC"));
    const auto inDirection = [&](Money m) { return amount.isNegative() ? -m : m; };
    if (inDirection(due).isNegative() || inDirection(due) > inDirection(amount) ||
        (amount.isZero() && !due.isZero()))
        view.errors().fail(
            QStringLiteral("%1 cannot be due %2: its amount is %3, and what is due lies between "
                           "nothing and that amount.")
                .arg(documentName(view, true), due.toLedgerString(), amount.toLedgerString()));
}

// Unposted entries apply to the document what they apply; it may not be brought below that.
void checkPendingApplications(ViewCore& view, Money due) {
    const QString customer = textField(view, QStringLiteral("IDCUST")).trimmed();
    const QString number = textField(view, QStringLiteral("IDINVC")).trimmed();
    const auto lines = pendingLinesOf(view.store(), customer, number);
    Money pending;
    QStringList named;
    for (const PendingLine& line : lines) {
        pending += line.taken;
        named << QStringLiteral("entry %1 of batch %2 applies %3")
                     .arg(line.entry)
                     .arg(line.batch)
                     .arg(line.taken.toLedgerString());
    }
    const Money amount = moneyField(view, QStringLiteral("AMTINVCTC"));
    const Money left = amount.isNegative() ? pending - due : due - pending;
    if (!lines.empty() && left.isNegative())
        view.errors().fail(
            QStringLiteral("Document %1 of customer %2 cannot be due %3: receipts not yet posted "
                           "apply %4 to it (%5).")
                .arg(number, customer, due.toLedgerString(), pending.toLedgerString(),
                     named.join(QStringLiteral("; "))));
}

// A figure that follows from others: taken as the ledger makes it, or refused when put otherwise.
void settle(ViewCore& view, const QString& name, const QVariant& value, const QString& because) {
    const int field = view.def().fieldIndex(name);
    const FieldDef& def = view.def().fields[size_t(field)];
    if (view.isDirty(field) && toStorage(def, view.value(field)) != toStorage(def, value))
        view.errors().fail(QStringLiteral("%1 of %2 %3: it is %4, not %5.")
                               .arg(def.label(), documentName(view), because, displayText(def, value),
                                    displayText(def, view.value(field))));
    view.set(field, value);
}

void settleFigures(ViewCore& view, Money due) {
    const QString follows = QStringLiteral("follows from its amount due");
    settle(view, QStringLiteral("AMTDUEHC"), QVariant::fromValue(due), follows);
    settle(view, QStringLiteral("SWPAID"), due.isZero() ? 1 : 0, follows);
}

// The customer's balance and counts move with the document's amount due, written once a customer at
// the commit: a load of many documents of one customer changes its record once.
void moveCustomerFigures(ViewCore& view, Money before, Money after, bool isNew) {
    const int open = (after.isZero() ? 0 : 1) - (isNew || before.isZero() ? 0 : 1);
    const int paid = (after.isZero() ? 1 : 0) - (isNew || !before.isZero() ? 0 : 1);
    QVariantHash change;
    if (after != before || isNew) {
        change.insert(QStringLiteral("AMTBALDUET"), QVariant::fromValue(after - before));
        change.insert(QStringLiteral("AMTBALDUEH"), QVariant::fromValue(after - before));
    }
    if (open != 0)
        change.insert(QStringLiteral("CNTOPENINV"), open);
    if (paid != 0)
        change.insert(QStringLiteral("CNTINVPAID"), paid);
    if (change.isEmpty())
        return;
    const QString customer = textField(view, QStringLiteral("IDCUST")).trimmed();
    if (!addToRecordAtCommit(view.store(), QStringLiteral("AR0024"), {{QStringLiteral("IDCUST"), customer}},
                             change))
        view.errors().fail(QStringLiteral("Customer Number \"%1\" does not exist.").arg(customer));
}

} // namespace

void DocumentRules::beforeInsert(ViewCore& view) {
    checkType(view);
    const Money due = moneyField(view, Due);
    checkDueWithinAmount(view, due);
    settleFigures(view, due);
    settle(view, QStringLiteral("CNTTOTPAYM"), 0, QStringLiteral("is counted by posting"));
}

void DocumentRules::afterInsert(ViewCore& view) {
    moveCustomerFigures(view, Money(), moneyField(view, Due), true);
}

void DocumentRules::beforeUpdate(ViewCore& view) {
    QVariantHash key;
    for (int field : view.def().primaryKey().fields)
        key.insert(view.def().fields[size_t(field)].name, view.value(field));
    const auto stored =
        readRecordForUpdate(view.store(), view.def().id, key, {Due, QStringLiteral("CNTTOTPAYM")});
    if (!stored)
        return; // the update says the record is gone
    if (view.isDirty(view.def().fieldIndex(QStringLiteral("TRXTYPETXT"))))
        checkType(view);
    m_dueBefore = moneyOf(stored->value(Due));
    const Money due = moneyField(view, Due);
    if (due != m_dueBefore) {
        checkDueWithinAmount(view, due);
        checkPendingApplications(view, due);
    }
    settleFigures(view, due);
    settle(view, QStringLiteral("CNTTOTPAYM"), stored->value(QStringLiteral("CNTTOTPAYM")),
           QStringLiteral("is counted by posting"));
}

void DocumentRules::afterUpdate(ViewCore& view) {
    moveCustomerFigures(view, m_dueBefore, moneyField(view, Due), false);
}

} // namespace tillbook::engine

#include "ledger/engine/EntryRules.h"

#include "ledger/engine/AuditTrail.h"
#include "ledger/engine/BatchRules.h"
#include "ledger/engine/FiscalCalendar.h"
#include "ledger/engine/OpenDocumentList.h"
#include "ledger/engine/PendingApplications.h"
#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/ReferenceChecks.h"
#include "ledger/engine/SavedEntries.h"
#include "ledger/engine/ValueCodec.h"
#include "ledger/engine/ViewCore.h"

#include <QDateTime>

namespace tillbook::engine {

namespace {

const QString Detail = QStringLiteral("AR0044");
const QString Documents = QStringLiteral("AR0036");
const QString MiscLines = QStringLiteral("AR0043");

// What a saved entry may still have changed: nothing its amounts, batch, applications or customer
// stand on.
const QSet<QString> Descriptive{QStringLiteral("IDRMIT"),     QStringLiteral("TEXTRMIT"),
                                QStringLiteral("TXTRMITREF"), QStringLiteral("TEXTPAYOR"),
                                QStringLiteral("DATERMIT"),   QStringLiteral("FISCYR"),
                                QStringLiteral("FISCPER"),    QStringLiteral("SWPRINTED")};

QVariant amount(Money m) {
    return QVariant::fromValue(m);
}

// A date outside every active fiscal year would land the receipt in no period the books can close;
// a date in another period than the entry's stays a warning.
void requireActiveYear(ViewCore& view, const QDate& date) {
    if (date.isValid() && !isInActiveFiscalYear(view.store(), date))
        view.errors().fail(QStringLiteral("Receipt date %1 falls in no active fiscal year of the company's "
                                          "calendar; key a date inside an active fiscal year.")
                               .arg(date.toString(Qt::ISODate)));
}

} // namespace

void EntryRules::initRecord(ViewCore& view) {
    m_lines.clear();
    // A new receipt starts without what the last one staged in the open-document list, whether that
    // one was saved, refused or abandoned.
    if (OpenDocumentList* list = composedDocumentList(view))
        list->forget();
    view.set(QStringLiteral("CODEPYMTYP"), QStringLiteral("CA"));
    if (ViewCore* batch = composedView(view, QStringLiteral("AR0041")))
        view.set(QStringLiteral("CNTBTCH"), batch->value(QStringLiteral("CNTBTCH")));
    view.set(QStringLiteral("RMITTYPE"), int(OrdinaryReceipt));
    view.set(QStringLiteral("DOCTYPE"), 1);
    const QDate today = view.session().sessionDate;
    view.set(QStringLiteral("DATERMIT"), today);
    if (const auto period = fiscalPeriodOf(view.store(), today)) {
        view.set(QStringLiteral("FISCYR"), period->year);
        view.set(QStringLiteral("FISCPER"), period->period);
    } else {
        view.set(QStringLiteral("FISCYR"), QString::number(today.year()));
        view.set(QStringLiteral("FISCPER"), QStringLiteral("%1").arg(today.month(), 2, 10, QLatin1Char('0')));
    }
}

void EntryRules::checkPut(ViewCore& view, int field, const QVariant& value) {
    ViewRules::checkPut(view, field, value);
    const FieldDef& def = view.def().fields[size_t(field)];
    const QString shown = displayText(def, value);
    if (def.name == QLatin1String("AMTRMIT") && moneyOf(value).isNegative())
        view.errors().fail(QStringLiteral("%1 \"%2\" cannot be below zero.").arg(def.label(), shown));
    if (def.name == QLatin1String("FISCYR") && !shown.isEmpty() && !isActiveFiscalYear(view.store(), shown))
        view.errors().fail(QStringLiteral("%1 \"%2\" is not active.").arg(def.label(), shown));
    if (def.name == QLatin1String("RMITTYPE")) {
        const int type = value.toInt();
        if (type != OrdinaryReceipt && type != Prepayment && type != MiscellaneousReceipt)
            view.errors().fail(
                QStringLiteral("%1 \"%2\" cannot be keyed here: use 1 (Receipt), 2 (Prepayment) or "
                               "5 (Misc. Receipt).")
                    .arg(def.label(), shown));
    }
}

// Adds the entry to its batch first, relatively: in PostgreSQL this locks the batch's record (under
// SQLite's write lock anyway), so that the status and last entry number read next are the committed
// ones and stay so until commit; entries of one batch are written one after another.
void EntryRules::joinBatch(ViewCore& view) {
    if (wholeField(view, QStringLiteral("CNTBTCH")) == 0)
        if (ViewCore* batch = composedView(view, QStringLiteral("AR0041")))
            view.set(QStringLiteral("CNTBTCH"), batch->value(QStringLiteral("CNTBTCH")));
    if (textField(view, QStringLiteral("CODEPYMTYP")).isEmpty())
        view.set(QStringLiteral("CODEPYMTYP"), QStringLiteral("CA"));
    const QString code = textField(view, QStringLiteral("CODEPYMTYP"));
    const qint64 batch = wholeField(view, QStringLiteral("CNTBTCH"));
    const QVariantHash key{{QStringLiteral("CODEPYMTYP"), code}, {QStringLiteral("CNTBTCH"), batch}};
    const Money total = moneyField(view, QStringLiteral("AMTRMIT"));
    if (!addToRecord(view.store(), QStringLiteral("AR0041"), key,
                     {{QStringLiteral("CNTENTER"), 1}, {QStringLiteral("AMTENTER"), amount(total)}}))
        view.errors().fail(
            QStringLiteral("Batch Number \"%1\" does not exist; choose or create a receipt batch "
                           "first.")
                .arg(batch));
    const auto stored = readRecord(view.store(), QStringLiteral("AR0041"), key,
                                   {QStringLiteral("BATCHSTAT"), QStringLiteral("CNTLASTITM")});
    const int status = stored->value(QStringLiteral("BATCHSTAT")).toInt();
    if (status != BatchOpen)
        view.errors().fail(
            QStringLiteral("Batch %1 is not open (%2); entries can be added only to an open batch.")
                .arg(batch)
                .arg(batchStatusName(status)));
    const qint64 number = view.store().nextNumber(entryCounter(code, batch));
    view.set(QStringLiteral("CNTITEM"), qlonglong(number));
    if (number > stored->value(QStringLiteral("CNTLASTITM")).toLongLong())
        updateRecord(view.store(), QStringLiteral("AR0041"), key, {{QStringLiteral("CNTLASTITM"), number}});
}

void EntryRules::checkCustomer(ViewCore& view) {
    const QString customer = textField(view, QStringLiteral("IDCUST"));
    if (customer.isEmpty())
        view.errors().fail(
            QStringLiteral("Customer Number is empty: a receipt or prepayment needs a customer."));
    if (!readRecord(view.store(), QStringLiteral("AR0024"), {{QStringLiteral("IDCUST"), customer}},
                    {QStringLiteral("IDCUST")}))
        view.errors().fail(QStringLiteral("Customer Number \"%1\" does not exist.").arg(customer));
}

void EntryRules::beforeInsert(ViewCore& view) {
    m_lines.clear();
    const Money receipt = moneyField(view, QStringLiteral("AMTRMIT"));
    if (receipt.isNegative())
        view.errors().fail(
            QStringLiteral("Bank Receipt Amount \"%1\" cannot be below zero.").arg(receipt.toLedgerString()));
    const int type = view.value(QStringLiteral("RMITTYPE")).toInt();
    if (type != OrdinaryReceipt && type != Prepayment && type != MiscellaneousReceipt)
        view.errors().fail(
            QStringLiteral("Receipt Trans. Type \"%1\" cannot be keyed here: use 1 (Receipt), 2 "
                           "(Prepayment) or 5 (Misc. Receipt).")
                .arg(type));
    refuseStrayLines(view);
    const QDate date = view.value(QStringLiteral("DATERMIT")).toDate();
    if (!date.isValid())
        view.errors().fail(
            QStringLiteral("Receipt Date/Adjustment Date is empty: the receipt needs a date."));
    requireActiveYear(view, date);
    joinBatch(view);
    view.set(QStringLiteral("DATEBUS"), QDate()); // not posted: posting dates it
    // Who saved the entry and when: a receipt printed again later still names the clerk who took the money.
    const QDateTime now = QDateTime::currentDateTime();
    view.set(QStringLiteral("ENTEREDBY"), view.session().user);
    view.set(QStringLiteral("AUDTDATE"), now.date());
    view.set(QStringLiteral("AUDTTIME"), now.time().toString(QStringLiteral("hh:mm:ss")));

    const QString year = textField(view, QStringLiteral("FISCYR"));
    const QString period = textField(view, QStringLiteral("FISCPER"));
    if (!isInFiscalPeriod(view.store(), date, year, period))
        view.errors().warn(QStringLiteral("Receipt date %1 is outside fiscal period %2 of %3.")
                               .arg(date.toString(Qt::ISODate), period, year));

    view.set(QStringLiteral("AMTRMITTC"), amount(receipt));
    view.set(QStringLiteral("AMTRMITHC"), amount(receipt));
    Money applied;
    if (type == OrdinaryReceipt) {
        checkCustomer(view);
        applyDocuments(view);
    } else if (type == Prepayment) {
        checkCustomer(view);
        addPrepayment(view);
    }
    for (const QVariantHash& line : m_lines)
        applied += moneyOf(line.value(QStringLiteral("AMTPAYM")));
    // What an ordinary receipt does not apply stays with the customer as unapplied cash.
    const Money unapplied = type == OrdinaryReceipt ? receipt - applied : Money();
    view.set(QStringLiteral("AMTPAYMTC"), amount(applied));
    view.set(QStringLiteral("AMTPAYMHC"), amount(applied));
    view.set(QStringLiteral("REMUNAPLTC"), amount(unapplied));
    view.set(QStringLiteral("REMUNAPL"), amount(unapplied));
    view.set(QStringLiteral("REMUNAPLHC"), amount(unapplied));
    view.set(QStringLiteral("CNTLSTLINE"), qlonglong(m_lines.size()));
}

// Applied documents come from the open-document list only, and miscellaneous lines belong to a
// miscellaneous receipt: lines staged otherwise would be written unchecked and outside the entry's totals.
void EntryRules::refuseStrayLines(ViewCore& view) {
    const bool misc = view.value(QStringLiteral("RMITTYPE")).toInt() == MiscellaneousReceipt;
    for (const ViewCore* detail : view.details()) {
        if (view.stagedCount(detail) == 0)
            continue;
        if (detail->def().id == Detail)
            view.errors().fail(
                QStringLiteral("Documents are applied through the open-document list (AR0061), "
                               "not by inserting lines into %1 (%2).")
                    .arg(detail->def().title, detail->def().id));
        if (detail->def().id == MiscLines && !misc)
            view.errors().fail(
                QStringLiteral("Only a miscellaneous receipt (Receipt Trans. Type 5) has %1 lines.")
                    .arg(detail->def().title));
    }
}

void EntryRules::beforeUpdate(ViewCore& view) {
    const QString what = entryName(view);
    requireOpenBatchForChange(view, what);
    refuseFixedChanges(view, Descriptive, what);
    requireActiveYear(view, view.value(QStringLiteral("DATERMIT")).toDate());
}

// One detail per document the entry applies, checked again against what other entries have applied
// since the list was built.
void EntryRules::applyDocuments(ViewCore& view) {
    OpenDocumentList* list = composedDocumentList(view);
    if (!list)
        return;
    const QString customer = textField(view, QStringLiteral("IDCUST"));
    bool any = false;
    for (const OpenDocument& d : list->documents())
        any = any || d.isApplied();
    if (!any)
        return;
    if (list->customer() != customer)
        view.errors().fail(
            QStringLiteral("The documents applied are those of customer %1, not of this receipt's "
                           "customer %2; build the list again for %2.")
                .arg(list->customer(), customer));
    // Touching the customer's record locks it (PostgreSQL; SQLite's write lock anyway) until commit:
    // tills applying to the same customer's documents, and postings paying them, which lock the
    // customer as well, check and change what is left one after another.
    addToRecord(view.store(), QStringLiteral("AR0024"), {{QStringLiteral("IDCUST"), customer}},
                {{QStringLiteral("CNTOPENINV"), 0}});
    const auto pending = pendingApplications(view.store(), customer, 0, 0);
    Money applied;
    int line = 0;
    for (const OpenDocument& d : list->documents()) {
        if (!d.isApplied())
            continue;
        const auto now =
            readRecord(view.store(), Documents,
                       {{QStringLiteral("IDCUST"), customer}, {QStringLiteral("IDINVC"), d.number}},
                       {QStringLiteral("AMTDUETC"), QStringLiteral("CNTTOTPAYM")});
        const Money left = (now ? moneyOf(now->value(QStringLiteral("AMTDUETC"))) : Money()) -
                           pending.value(d.number).total();
        const Money taking = d.applied + d.discountTaken + d.adjustment;
        // What is taken must lie between nothing and what is left, on the side of its own sign: a credit
        // note used up (nothing left) takes no more, whichever way the amount goes.
        if (taking.isNegative() ? taking < left : taking > left)
            view.errors().fail(
                QStringLiteral("Document %1 has %2 left to pay, less than the %3 applied to it; "
                               "another entry has applied to it meanwhile. Build the list again.")
                    .arg(d.number, left.toLedgerString(), taking.toLedgerString()));
        applied += d.applied;
        ++line;
        m_lines.push_back(
            {{QStringLiteral("CNTLINE"), line},
             {QStringLiteral("IDCUST"), customer},
             {QStringLiteral("IDINVC"), d.number},
             {QStringLiteral("CNTPAYM"), now->value(QStringLiteral("CNTTOTPAYM")).toLongLong() + 1},
             {QStringLiteral("TRXTYPE"), 51},
             {QStringLiteral("TRXTYPEID"), QString::number(d.typeId)},
             {QStringLiteral("RMITTYPE"), QStringLiteral("1")},
             {QStringLiteral("DOCTYPE"), d.type},
             {QStringLiteral("DESCINVC"), d.description},
             {QStringLiteral("DATEINVC"), d.date.toString(QStringLiteral("yyyyMMdd"))},
             {QStringLiteral("AMTPAYM"), amount(d.applied)},
             {QStringLiteral("AMTPAYMHC"), amount(d.applied)},
             {QStringLiteral("AMTERNDISC"), amount(d.discountTaken)},
             {QStringLiteral("AMTDISCHC"), amount(d.discountTaken)},
             {QStringLiteral("AMTADJTOT"), amount(d.adjustment)},
             {QStringLiteral("OBSPAYMAMT"), amount(d.due)},
             {QStringLiteral("OBSNETBAL"), amount(d.netBalance())},
             {QStringLiteral("OBSDISCAMT"), amount(d.discountAvailable)},
             {QStringLiteral("PNDPAYTOT"), amount(d.pendingPayments)},
             {QStringLiteral("PNDDSCTOT"), amount(d.pendingDiscounts)},
             {QStringLiteral("PNDADJTOT"), amount(d.pendingAdjustments)}});
    }
    if (applied > moneyField(view, QStringLiteral("AMTRMIT")))
        view.errors().fail(
            QStringLiteral("The documents are applied %1 in all, more than the receipt amount %2.")
                .arg(applied.toLedgerString(), moneyField(view, QStringLiteral("AMTRMIT")).toLedgerString()));
}

// A prepayment gets its document number from the company's counter, skipping any already in use. The
// counter's row stays locked until commit; only posting writes documents, so the number read free is free.
void EntryRules::addPrepayment(ViewCore& view) {
    QString number;
    do {
        number = QStringLiteral("PP%1").arg(view.store().nextNumber(QStringLiteral("AR0036/prepayments")), 7,
                                            10, QLatin1Char('0'));
    } while (readRecord(view.store(), Documents,
                        {{QStringLiteral("IDCUST"), textField(view, QStringLiteral("IDCUST"))},
                         {QStringLiteral("IDINVC"), number}},
                        {QStringLiteral("IDINVC")}));
    qint64 line = 1;
    if (ViewCore* detail = composedView(view, Detail))
        line = std::max<qint64>(1, wholeField(*detail, QStringLiteral("CNTLINE")));
    const Money receipt = moneyField(view, QStringLiteral("AMTRMIT"));
    const QString applyTo = textField(view, QStringLiteral("DOCNBR"));
    m_lines.push_back(
        {{QStringLiteral("CNTLINE"), line},
         {QStringLiteral("IDCUST"), textField(view, QStringLiteral("IDCUST"))},
         {QStringLiteral("IDINVC"), number},
         {QStringLiteral("CNTPAYM"), 1},
         {QStringLiteral("TRXTYPE"), 57},
         {QStringLiteral("RMITTYPE"), QStringLiteral("2")},
         {QStringLiteral("IDDOCMTCH"), applyTo},
         {QStringLiteral("DESCINVC"),
          applyTo.isEmpty() ? QStringLiteral("Prepayment") : QStringLiteral("Prepayment on %1").arg(applyTo)},
         {QStringLiteral("AMTPAYM"), amount(receipt)},
         {QStringLiteral("AMTPAYMHC"), amount(receipt)}});
}

void EntryRules::afterInsert(ViewCore& view) {
    auditEntrySaved(view.store(), view.session().user, textField(view, QStringLiteral("CODEPYMTYP")),
                    wholeField(view, QStringLiteral("CNTBTCH")), wholeField(view, QStringLiteral("CNTITEM")),
                    moneyField(view, QStringLiteral("AMTRMIT")));
    const QVariantHash entry{{QStringLiteral("CODEPAYM"), view.value(QStringLiteral("CODEPYMTYP"))},
                             {QStringLiteral("CNTBTCH"), view.value(QStringLiteral("CNTBTCH"))},
                             {QStringLiteral("CNTITEM"), view.value(QStringLiteral("CNTITEM"))}};
    for (QVariantHash line : m_lines) {
        for (auto it = entry.constBegin(); it != entry.constEnd(); ++it)
            line.insert(it.key(), it.value());
        insertRecord(view.store(), Detail, line);
    }
    if (view.value(QStringLiteral("RMITTYPE")).toInt() == MiscellaneousReceipt) {
        // The entry's own lines, written in this transaction under a number no other till has.
        const Money lines = sumOf(view.store(), QStringLiteral("AR0043"), QStringLiteral("AMTDIST"), entry);
        const Money receipt = moneyField(view, QStringLiteral("AMTRMIT"));
        if (lines != receipt)
            view.errors().fail(
                QStringLiteral("The distribution lines add up to %1, not to the receipt amount %2; "
                               "correct the lines or the amount.")
                    .arg(lines.toLedgerString(), receipt.toLedgerString()));
    }
    if (OpenDocumentList* list = composedDocumentList(view))
        list->forget();
    // The detail view stands on the prepayment just written, so that its number can be read.
    if (view.value(QStringLiteral("RMITTYPE")).toInt() == Prepayment && !m_lines.empty())
        if (ViewCore* detail = composedView(view, Detail)) {
            QVariantHash line = m_lines.front();
            for (auto it = entry.constBegin(); it != entry.constEnd(); ++it)
                line.insert(it.key(), it.value());
            const ViewDef& def = detail->def();
            for (auto it = line.constBegin(); it != line.constEnd(); ++it) {
                const int field = def.fieldIndex(it.key());
                detail->set(field, fromStorage(def.fields[size_t(field)],
                                               toStorage(def.fields[size_t(field)], it.value())));
            }
        }
    m_lines.clear();
}

} // namespace tillbook::engine

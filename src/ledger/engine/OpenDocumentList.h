#pragma once

// The open-document list (AR0061): process builds the documents of the customer put in IDCUST that still
// have an amount due, numbered by CNTKEY from 1 in document-number order; read by CNTKEY shows one;
// APPLY "Y" and update applies to it what is left of the receipt amount, up to its net balance. The list
// lives in memory for the till that keys the entry; the entry's insert writes what it applies.

#include "ledger/Money.h"
#include "ledger/engine/ViewRules.h"

#include <QDate>
#include <QString>
#include <memory>
#include <vector>

namespace tillbook::engine {

struct OpenDocument {
    // The document as the ledger holds it (AR0036).
    QString number;
    int typeId = 0; // TRXTYPEID
    int type = 0;   // TRXTYPETXT
    QString description;
    QDate date;
    QDate dueDate;
    QDate discountDate;
    QString purchaseOrder;
    QString order;
    QString remittance;
    qint64 scheduledPayments = 0; // CNTTOTPAYM

    Money amount;            // as issued
    Money due;               // the current balance
    Money discountAvailable; // by the document's discount date
    Money pendingPayments;   // applied by other unposted entries
    Money pendingDiscounts;
    Money pendingAdjustments;
    Money applied; // in this entry
    Money discountTaken;
    Money adjustment;

    Money pendingBalance() const { return due - pendingPayments - pendingDiscounts - pendingAdjustments; }
    Money netBalance() const { return pendingBalance() - applied - discountTaken - adjustment; }
    bool isApplied() const { return !applied.isZero() || !discountTaken.isZero() || !adjustment.isZero(); }
    bool hasPending() const;
    QString applyFlag() const;
};

class OpenDocumentList final : public ViewRules {
public:
    void initRecord(ViewCore& view) override;
    void checkPut(ViewCore& view, int field, const QVariant& value) override;
    void process(ViewCore& view) override;
    bool keepsRecords() const override { return true; }
    bool readKept(ViewCore& view) override;
    void updateKept(ViewCore& view) override;
    void readAllKept(ViewCore& view, const std::vector<int>& fields, const KeptRowSink& row) override;

    const QString& customer() const { return m_customer; }
    const std::vector<OpenDocument>& documents() const { return m_documents; }
    // After the entry that applied them is written: a new entry starts from a new list.
    void forget();

    struct ShownFields; // the list's fields by position, resolved once

private:
    void show(ViewCore& view, int key);
    template <typename Visit> void eachShown(const ShownFields& f, int key, const Visit& visit) const;
    const ShownFields& shown(const ViewCore& view);

    std::shared_ptr<const ShownFields> m_shown;
    QString m_customer;
    qint64 m_batch = 0;
    qint64 m_entry = 0;
    std::vector<OpenDocument> m_documents;
    std::vector<OpenDocument> m_spare; // see process()
};

// The documents the entry applies, from the list composed with `header` (none when there is no list).
OpenDocumentList* composedDocumentList(ViewCore& header);

} // namespace tillbook::engine

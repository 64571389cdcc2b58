#pragma once

// The customers to whom a receipt can be applied: those with at least one open invoice, sorted by name.
// The receipt desk keeps them in `Customers`, parallel to its customer list: list position p is
// Customers[p].

#include "ledger/Session.h"
#include "ledger/TextRows.h"

#include <QString>
#include <functional>
#include <memory>

namespace tillbook {

struct CustomerRecord {
    QString Name;
    QString Id;
    QString Street1;
    QString Street2;
    QString Phone;
};

// The list held as text in one block, a customer's record made when it is asked for: a million customers
// take some 80 MB instead of an object per field. The block is never changed once read, and copies share it:
// a search that folds it on a thread of its own keeps it for as long as it needs.
class CustomerList {
public:
    enum Field { Name, Id, Street1, Street2, Phone, FieldCount };

    CustomerList() : m_rows(std::make_shared<const TextRows>(FieldCount)) {}
    explicit CustomerList(TextRows rows) : m_rows(std::make_shared<const TextRows>(std::move(rows))) {}

    size_t size() const { return m_rows->rows(); }
    bool empty() const { return m_rows->empty(); }
    CustomerRecord operator[](size_t position) const;
    QString text(size_t position, Field field) const { return m_rows->text(position, field); }
    QByteArrayView utf8(size_t position, Field field) const { return m_rows->utf8(position, field); }

private:
    std::shared_ptr<const TextRows> m_rows; // Name, Id, Street1, Street2, Phone
};

// Told how far a long task has come: `done` of `total` steps; a total of 0 means the end is not known yet.
using TaskProgress = std::function<void(int done, int total)>;

// Reads the customers with an open invoice, sorted by name ignoring case: the ledger keeps them in that order
// (names that compare equal come in no guaranteed order). Throws LedgerError. Tells `progress` the start
// (0 of an unknown total) and the end (every customer done).
CustomerList Read_Customers(Session& session, const TaskProgress& progress = {});

// The list position of the customer with this number (exact comparison), or -1 when it is not listed.
int Find_Customer(const CustomerList& customers, const QString& customerNumber);

} // namespace tillbook

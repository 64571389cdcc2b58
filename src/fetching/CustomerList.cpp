#include "fetching/CustomerList.h"

#include "ledger/View.h"

namespace tillbook {

CustomerRecord CustomerList::operator[](size_t position) const {
    return {text(position, Name), text(position, Id), text(position, Street1), text(position, Street2),
            text(position, Phone)};
}

CustomerList Read_Customers(Session& session, const TaskProgress& progress) {
    if (progress)
        progress(0, 0);
    const std::unique_ptr<View> view = session.openView(names::Customers);
    view->browse(QStringLiteral("CNTOPENINV>0"), true);
    CustomerList customers(view->readAllText({names::CustomerName.text(), names::CustomerNumber.text(),
                                              names::CustomerStreet1.text(), names::CustomerStreet2.text(),
                                              names::CustomerPhone.text()},
                                             names::CustomerName.text()));
    if (progress)
        progress(int(customers.size()), int(customers.size()));
    return customers;
}

int Find_Customer(const CustomerList& customers, const QString& customerNumber) {
    const QByteArray wanted = customerNumber.toUtf8();
    for (size_t i = 0; i < customers.size(); ++i) {
        if (customers.utf8(i, CustomerList::Id) == wanted)
            return static_cast<int>(i);
    }
    return -1;
}

} // namespace tillbook

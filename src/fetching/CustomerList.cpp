#include "fetching/CustomerList.h"

#include "ledger/View.h"

namespace tillbook {

std::vector<CustomerRecord> Read_Customers(Session& session, const TaskProgress& progress) {
    const std::unique_ptr<View> view = session.openView(QStringLiteral("AR0024"), QStringLiteral("AR"));
    view->browse(QStringLiteral("CNTOPENINV>0"), true);
    FieldCollection& fields = view->fields();
    Field& name = fields.item(QStringLiteral("NAMECUST"));
    Field& id = fields.item(QStringLiteral("IDCUST"));
    Field& street1 = fields.item(QStringLiteral("TEXTSTRE1"));
    Field& street2 = fields.item(QStringLiteral("TEXTSTRE2"));
    Field& phone = fields.item(QStringLiteral("TEXTPHON1"));
    std::vector<CustomerRecord> customers;
    while (view->fetch()) {
        customers.push_back({name.value().toString(), id.value().toString(), street1.value().toString(),
                             street2.value().toString(), phone.value().toString()});
        if (progress && customers.size() % ProgressStep == 0)
            progress(static_cast<int>(customers.size()), 0);
    }
    return customers;
}

int Find_Customer(const std::vector<CustomerRecord>& customers, const QString& customerNumber) {
    for (size_t i = 0; i < customers.size(); ++i) {
        if (customers[i].Id == customerNumber)
            return static_cast<int>(i);
    }
    return -1;
}

} // namespace tillbook

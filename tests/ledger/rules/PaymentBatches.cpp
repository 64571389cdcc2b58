#include "PaymentBatches.h"

#include <QDate>

namespace tillbook::test {

namespace {

QVariant amount(Money m) {
    return QVariant::fromValue(m);
}

} // namespace

QString documentOf(const QString& customer, int n) {
    return QStringLiteral("%1-%2").arg(customer).arg(n);
}

Records customerWithDocuments(const QString& customer, int count, Money each) {
    Records records;
    for (int n = 1; n <= count; ++n)
        records.append({"AR0036",
                        {{"IDCUST", customer},
                         {"IDINVC", documentOf(customer, n)},
                         {"TRXTYPETXT", 1},
                         {"TRXTYPEID", 11},
                         {"DATEINVC", QDate(2025, 2, 1)},
                         {"AMTINVCTC", amount(each)},
                         {"AMTDUETC", amount(each)},
                         {"AMTDUEHC", amount(each)}}});
    records.append({"AR0024",
                    {{"IDCUST", customer},
                     {"NAMECUST", QStringLiteral("Customer %1").arg(customer)},
                     {"AMTBALDUET", amount(Money::fromThousandths(each.thousandths() * count))},
                     {"CNTOPENINV", count}}});
    return records;
}

Records batchOfPayments(qint64 batch, const std::vector<Payment>& payments) {
    Records records;
    Money total;
    qint64 item = 0;
    for (const Payment& p : payments) {
        ++item;
        total += p.amount;
        records.append({"AR0042",
                        {{"CODEPYMTYP", "CA"},
                         {"CNTBTCH", batch},
                         {"CNTITEM", item},
                         {"IDCUST", p.customer},
                         {"RMITTYPE", 1},
                         {"DOCTYPE", 1},
                         {"DATERMIT", QDate(2025, 3, 14)},
                         {"AMTRMIT", amount(p.amount)},
                         {"AMTRMITTC", amount(p.amount)},
                         {"AMTPAYMTC", amount(p.amount)},
                         {"CNTLSTLINE", 1}}});
        records.append({"AR0044",
                        {{"CODEPAYM", "CA"},
                         {"CNTBTCH", batch},
                         {"CNTITEM", item},
                         {"CNTLINE", 1},
                         {"IDCUST", p.customer},
                         {"IDINVC", p.document},
                         {"RMITTYPE", "1"},
                         {"TRXTYPE", 51},
                         {"AMTPAYM", amount(p.amount)}}});
    }
    records.append({"AR0041",
                    {{"CODEPYMTYP", "CA"},
                     {"CNTBTCH", batch},
                     {"DATEBTCH", QDate(2025, 3, 14)},
                     {"BATCHSTAT", 1},
                     {"BATCHTYPE", 1},
                     {"CNTENTER", item},
                     {"CNTLASTITM", item},
                     {"AMTENTER", amount(total)}}});
    return records;
}

} // namespace tillbook::test

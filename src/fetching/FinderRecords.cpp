#include "fetching/FinderRecords.h"

#include "fetching/FieldValues.h"
#include "ledger/View.h"

namespace tillbook {

QStringList FinderFields(int finderKind) {
    if (finderKind == FinderDistCodes)
        return {QStringLiteral("IDDIST"),    QStringLiteral("TEXTDESC"),  QStringLiteral("SWACTV"),
                QStringLiteral("IDACCTREV"), QStringLiteral("IDACCTINV"), QStringLiteral("IDACCTCOGS")};
    return {QStringLiteral("ACCTID"),   QStringLiteral("ACCTDESC"), QStringLiteral("ACTIVESW"),
            QStringLiteral("ACCTTYPE"), QStringLiteral("ABRKID"),   QStringLiteral("SRCELDGID"),
            QStringLiteral("ALLOCSW"),  QStringLiteral("MCSW"),     QStringLiteral("QTYSW"),
            QStringLiteral("UOM")};
}

std::vector<QStringList> Read_FinderRecords(Session& session, int finderKind) {
    const bool codes = finderKind == FinderDistCodes;
    const std::unique_ptr<View> view =
        codes ? session.openView(names::DistributionCodes) : session.openView(names::Accounts);
    const QStringList fields = FinderFields(finderKind);
    std::vector<QStringList> rows;
    view->browse(QString(), true);
    while (view->fetch()) {
        QStringList row;
        row.reserve(fields.size());
        for (const QString& field : fields)
            row << FieldText(*view, field).trimmed();
        rows.push_back(std::move(row));
    }
    view->clear();
    return rows;
}

} // namespace tillbook

#include "entry/GridColumnSets.h"

#include <QHash>

namespace tillbook {

QString ApplyMarkText(const QString& apply) {
    if (apply == u"X")
        return QStringLiteral("Pend");
    if (apply == u"Y")
        return QStringLiteral("Yes");
    if (apply == u"N")
        return QStringLiteral("No");
    return apply;
}

QString TransactionTypeText(const QString& code) {
    static const QHash<QString, QString> texts = {
        {QStringLiteral("11"), QStringLiteral("Invoice - Item Issued")},
        {QStringLiteral("12"), QStringLiteral("Invoice - Summary Entered")},
        {QStringLiteral("13"), QStringLiteral("Invoice - Recurring Charge")},
        {QStringLiteral("14"), QStringLiteral("Invoice - Summary Issued")},
        {QStringLiteral("15"), QStringLiteral("Invoice - Item Entered")},
        {QStringLiteral("21"), QStringLiteral("Debit Note - Item Issued")},
        {QStringLiteral("22"), QStringLiteral("Debit Note - Summary Entered")},
        {QStringLiteral("24"), QStringLiteral("Debit Note - Summary Issued")},
        {QStringLiteral("25"), QStringLiteral("Debit Note - Item Entered")},
        {QStringLiteral("31"), QStringLiteral("Credit Note - Item Isssued")},
        {QStringLiteral("32"), QStringLiteral("Credit Note - Summary Entered")},
        {QStringLiteral("34"), QStringLiteral("Credit Note - Summary Issued")},
        {QStringLiteral("35"), QStringLiteral("credit Note - Item Entered")},
        {QStringLiteral("40"), QStringLiteral("Interest Charge")},
    };
    return texts.value(code, code);
}

QString DocumentTypeText(const QString& code) {
    static const QHash<QString, QString> texts = {{QStringLiteral("1"), QStringLiteral("Invoice")},
                                                  {QStringLiteral("2"), QStringLiteral("Debit Note")},
                                                  {QStringLiteral("3"), QStringLiteral("Credit Note")},
                                                  {QStringLiteral("4"), QStringLiteral("Invoice")}};
    return texts.value(code, code);
}

QString FullyPaidText(const QString& code) {
    if (code == u"1")
        return QStringLiteral("Yes");
    if (code == u"0")
        return QStringLiteral("No");
    return code;
}

} // namespace tillbook

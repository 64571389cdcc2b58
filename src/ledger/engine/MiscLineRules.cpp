#include "ledger/engine/MiscLineRules.h"

#include "ledger/engine/RecordAccess.h"
#include "ledger/engine/ViewCore.h"

#include <optional>

namespace tillbook::engine {

namespace {

// The account as the ledger shows it ("4100-100"), found by its number typed with or without hyphens.
std::optional<QString> findAccount(CompanyStore& store, const QString& typed) {
    QString digits = typed.trimmed();
    digits.remove(u'-');
    if (digits.isEmpty())
        return std::nullopt;
    const auto account = readRecord(store, QStringLiteral("GL0001"), {{QStringLiteral("ACCTID"), digits}},
                                    {QStringLiteral("ACCTFMTTD")});
    if (!account)
        return std::nullopt;
    const QString formatted = account->value(QStringLiteral("ACCTFMTTD")).toString().trimmed();
    return formatted.isEmpty() ? digits : formatted;
}

std::optional<QString> revenueAccount(CompanyStore& store, const QString& code) {
    const auto record = readRecord(store, QStringLiteral("AR0015"), {{QStringLiteral("IDDIST"), code}},
                                   {QStringLiteral("IDACCTREV")});
    if (!record)
        return std::nullopt;
    return findAccount(store, record->value(QStringLiteral("IDACCTREV")).toString())
        .value_or(record->value(QStringLiteral("IDACCTREV")).toString().trimmed());
}

} // namespace

MiscLineRules::MiscLineRules() : EntryLineRules({QStringLiteral("GLREF"), QStringLiteral("GLDESC")}) {}

void MiscLineRules::initRecord(ViewCore& view) {
    view.set(QStringLiteral("CODEPAYM"), QStringLiteral("CA"));
}

void MiscLineRules::checkPut(ViewCore& view, int field, const QVariant& value) {
    const FieldDef& def = view.def().fields[size_t(field)];
    const QString text = value.toString().trimmed();
    if (def.name == QLatin1String("IDDISTCODE")) {
        if (text.isEmpty())
            return;
        const auto account = revenueAccount(view.store(), text);
        if (!account)
            view.errors().fail(QStringLiteral("%1 \"%2\" does not exist.").arg(def.label(), text));
        view.set(QStringLiteral("IDACCT"), *account);
        return;
    }
    if (def.name == QLatin1String("IDACCT")) {
        if (!text.isEmpty() && !findAccount(view.store(), text))
            view.errors().fail(QStringLiteral("%1 \"%2\" does not exist.").arg(def.label(), text));
        return;
    }
    ViewRules::checkPut(view, field, value);
}

void MiscLineRules::beforeInsert(ViewCore& view) {
    const QString code = textField(view, QStringLiteral("IDDISTCODE"));
    const QString typed = textField(view, QStringLiteral("IDACCT"));
    const qint64 line = wholeField(view, QStringLiteral("CNTLINE"));
    std::optional<QString> account = typed.isEmpty() ? std::nullopt : findAccount(view.store(), typed);
    if (!typed.isEmpty() && !account)
        view.errors().fail(
            QStringLiteral("Account Number \"%1\" of line %2 does not exist.").arg(typed).arg(line));
    if (!account && !code.isEmpty())
        account = revenueAccount(view.store(), code);
    if (!account)
        view.errors().fail(
            code.isEmpty()
                ? QStringLiteral("Line %1 has neither a distribution code nor an account number.").arg(line)
                : QStringLiteral("Distribution Code \"%1\" of line %2 does not exist.").arg(code).arg(line));
    view.set(QStringLiteral("IDACCT"), *account);
    const QVariant amount = view.value(QStringLiteral("AMTDIST"));
    view.set(QStringLiteral("AMTDISTTC"), amount);
    view.set(QStringLiteral("AMTDISTHC"), amount);
    view.set(QStringLiteral("AMTNETTC"), amount);
    view.set(QStringLiteral("AMTNETHC"), amount);
}

} // namespace tillbook::engine

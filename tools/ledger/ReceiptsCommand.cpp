// receipts: what the tills took, one CSV line a receipt line, for the main books.

#include "CommandLine.h"
#include "Commands.h"
#include "Csv.h"
#include "SignIn.h"
#include "ledger/LedgerNames.h"

#include <QDate>
#include <QTextStream>

namespace tillbook::tool {

const char* const ReceiptsHelp =
    "Usage: tillbook-ledger receipts ID [--batch N] [--from yyyy-mm-dd] [--to yyyy-mm-dd] [--posted]\n"
    "                               [--user NAME] [--password PW]\n"
    "\n"
    "Writes the receipt entries of company ID as CSV on standard output, one line a receipt line: an\n"
    "application to a document, a prepayment, or a distribution line (an entry without lines gives one\n"
    "line). Each line carries its entry's batch, entry number, kind, batch status, date, fiscal year and\n"
    "period, bank, customer, payer, cheque or receipt number, receipt amount and unapplied amount, then\n"
    "the line's document number, or distribution code and account, its amount, reference and\n"
    "description. The lines of an entry add up to its amount less what is unapplied.\n"
    "\n"
    "  --batch N     only batch N\n"
    "  --from DATE   only entries dated DATE or later;  --to DATE  only those dated DATE or earlier\n"
    "  --posted      only entries that are posted\n"
    "Deleted batches are left out.\n";

namespace {

const QStringList Columns{"BATCH",         "ENTRY",         "KIND",      "BATCHSTATUS", "DATE",
                          "FISCYEAR",      "FISCPERIOD",    "BANK",      "CUSTOMER",    "PAYER",
                          "RECEIPTNUMBER", "RECEIPTAMOUNT", "UNAPPLIED", "DOCUMENT",    "DISTCODE",
                          "ACCOUNT",       "AMOUNT",        "REFERENCE", "DESCRIPTION"};

QString kindName(int type) {
    switch (type) {
    case 1:
        return QStringLiteral("Receipt");
    case 2:
        return QStringLiteral("Prepayment");
    case 5:
        return QStringLiteral("Miscellaneous Receipt");
    default:
        return QString::number(type);
    }
}

QString batchStatusName(int status) {
    switch (status) {
    case 1:
        return QStringLiteral("Open");
    case 3:
        return QStringLiteral("Posted");
    case 5:
        return QStringLiteral("Post In Progress");
    case 7:
        return QStringLiteral("Ready To Post");
    default:
        return QString::number(status);
    }
}

QDate dateOption(const Arguments& args, const QString& name) {
    if (!args.options.contains(name))
        return {};
    const QDate date = QDate::fromString(args.option(name), QStringLiteral("yyyy-MM-dd"));
    if (!date.isValid())
        throw UsageError(
            QStringLiteral("--%1 needs a date yyyy-mm-dd, not \"%2\".").arg(name, args.option(name)));
    return date;
}

QString text(View& view, const FieldName& field) {
    return view.fields().item(field).text().trimmed();
}

// The lines of one entry in `viewId`, each as the columns from DOCUMENT on.
std::vector<QStringList> entryLines(Session& session, const QString& batch, const QString& entry, int type) {
    const bool misc = type == 5;
    auto lines = session.openView(misc ? names::ReceiptMiscLines : names::ReceiptDetails);
    lines->browse(QStringLiteral("CODEPAYM = CA AND CNTBTCH = %1 AND CNTITEM = %2").arg(batch, entry), true);
    std::vector<QStringList> result;
    while (lines->fetch()) {
        if (misc)
            result.push_back({QString(), text(*lines, names::MiscDistributionCode),
                              text(*lines, names::MiscAccount), text(*lines, names::MiscAmount),
                              text(*lines, names::MiscReference), text(*lines, names::MiscDescription)});
        else
            result.push_back({text(*lines, names::DetailDocument), QString(), QString(),
                              text(*lines, names::DetailAmount), text(*lines, names::DetailMatchingDocument),
                              text(*lines, names::DetailDescription)});
    }
    if (result.empty())
        result.push_back({QString(), QString(), QString(), QString(), QString(), QString()});
    return result;
}

} // namespace

int receiptsCommand(const QStringList& words) {
    QStringList options = SignInOptions;
    options << QStringLiteral("batch") << QStringLiteral("from") << QStringLiteral("to");
    const Arguments args = parseArguments(words, options, {"posted"});
    if (args.positional.size() != 1)
        throw UsageError(QStringLiteral("receipts needs exactly one company ID."));
    const int onlyBatch = args.intOption(QStringLiteral("batch"), 0);
    const QDate from = dateOption(args, QStringLiteral("from"));
    const QDate to = dateOption(args, QStringLiteral("to"));
    const bool postedOnly = args.flag(QStringLiteral("posted"));
    Session session;
    signIn(session, args.positional[0], args);
    QTextStream out(stdout);
    out << csvLine(Columns);

    auto batches = session.openView(names::Batches);
    auto entries = session.openView(names::ReceiptHeaders);
    batches->browse(onlyBatch > 0 ? QStringLiteral("CODEPYMTYP = CA AND CNTBTCH = %1").arg(onlyBatch)
                                  : QStringLiteral("CODEPYMTYP = CA"),
                    true);
    while (batches->fetch()) {
        const int status = text(*batches, names::BatchStatus).toInt();
        if (status == 4) // deleted
            continue;
        const QString batch = text(*batches, names::BatchNumber);
        const QString batchBank = text(*batches, names::BatchBank);
        entries->browse(QStringLiteral("CODEPYMTYP = CA AND CNTBTCH = %1").arg(batch), true);
        while (entries->fetch()) {
            const QDate date = entries->fields().item(names::ReceiptDate).value().toDate();
            if ((from.isValid() && date < from) || (to.isValid() && date > to))
                continue;
            if (postedOnly && text(*entries, names::ReceiptPostingDate).isEmpty())
                continue;
            const int type = text(*entries, names::ReceiptType).toInt();
            const QString bank = text(*entries, names::ReceiptBank);
            const QStringList head{batch,
                                   text(*entries, names::ReceiptEntry),
                                   kindName(type),
                                   batchStatusName(status),
                                   text(*entries, names::ReceiptDate),
                                   text(*entries, names::ReceiptFiscalYear),
                                   text(*entries, names::ReceiptFiscalPeriod),
                                   bank.isEmpty() ? batchBank : bank,
                                   type == 5 ? QString() : text(*entries, names::ReceiptCustomer),
                                   text(*entries, names::ReceiptPayer),
                                   text(*entries, names::ReceiptNumber),
                                   text(*entries, names::ReceiptAmount),
                                   text(*entries, names::ReceiptUnapplied)};
            for (const QStringList& line :
                 entryLines(session, batch, text(*entries, names::ReceiptEntry), type))
                out << csvLine(head + line);
        }
    }
    return 0;
}

} // namespace tillbook::tool

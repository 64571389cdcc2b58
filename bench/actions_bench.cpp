// A clerk's everyday actions on a company of a size given on the command line, each against its floor in the
// same run on the same file (the same rows read with SQLite's C interface where the action reads, plain
// prepared Qt SQL statements where it writes):
//   open_documents  process the open-document list of a customer with about 1,000 open documents and read
//                   every row of it (the grid's fields, the whole list at once);
//   receipt         a receipt entry: the list processed, 10 applications and the header's insert;
//   post_batch      posting a batch of 1,000 receipts of one application each;
//   view_read       the customer list read through its view, in name order (83,000 of 100,000 customers);
//   fold            every name and number folded for searching (lower case, no accents), as is done in the
//                   background once the customer list is shown;
//   first_key       a clerk's first key in the customer finder, the list folded: every name and number
//                   searched; its floor searches the list's own text once, unfolded;
//   next_key        a key after that which does not only lengthen the text before ("dairy", then "daisy"):
//                   every name and number searched again; the same floor;
//   sign_in         sign-in to a ready receipt window (its floor checks the password too).
// Each floor is registered as "<action>:floor". scripts/bench runs this for several sizes and prints the
// table.

#include "ActionsSupport.h"
#include "BatchPostingActions.h"
#include "CustomerListActions.h"
#include "SizedCompany.h"
#include "SqliteFloor.h"
#include "entry/ReceiptDesk.h"
#include "entry/frmCR.h"
#include "fetching/CustomerList.h"
#include "fetching/CustomerSearch.h"
#include "fetching/ReceiptViews.h"
#include "ledger/Session.h"
#include "ledger/View.h"
#include "ledger/engine/BatchPosting.h"
#include "ledger/engine/PasswordHash.h"
#include "ui/Platform.h"

#include <QApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstring>
#include <map>

namespace {

using namespace tillbook;
using namespace bench;

// The fields of the apply grid, as the receipt window reads them from each row.
const QStringList GridFields = {"APPLY",     "IDINVC", "PENDNGBAL", "AMTPAYM",   "OBSDISCAMT", "DISCAMT",
                                "ADJAMT",    "AMTNET", "AMTDUE",    "ORGDOCAMT", "PNDPAYTOT",  "PNDDSCTOT",
                                "PNDADJTOT", "CUSTPO", "STDOCSTR",  "DATEINVC",  "DATEDUE",    "DATEDISC"};

// The receipt views of a till, composed as the receipt window composes them.
struct Till {
    Session session;
    std::map<QString, std::unique_ptr<View>> views;

    Till() {
        session.open(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), sized().id, Today);
        for (const char* id : {"AR0041", "AR0042", "AR0044", "AR0045", "AR0043", "AR0061"})
            views[QLatin1String(id)] = session.openView(QLatin1String(id), QStringLiteral("AR"));
        compose("AR0041", {"AR0042"});
        compose("AR0042", {"AR0041", "AR0043", "AR0044"});
        compose("AR0044", {"AR0042", "AR0045"});
        compose("AR0045", {"AR0044"});
        compose("AR0043", {"AR0042"});
        compose("AR0061", {"AR0041", "AR0042", "AR0043", "AR0044", "AR0045"});
    }
    void compose(const char* id, std::initializer_list<const char*> others) {
        std::vector<View*> list;
        for (const char* other : others)
            list.push_back(&view(other));
        view(id).compose(list);
    }
    View& view(const char* id) { return *views.at(QLatin1String(id)); }
    Field& field(const char* id, const char* name) { return view(id).fields().item(QLatin1String(name)); }

    qint64 newBatch() {
        field("AR0041", "CODEPYMTYP").putWithoutVerification("CA");
        field("AR0041", "CNTBTCH").putWithoutVerification("0");
        field("AR0041", "BATCHDESC").setValue("Bench");
        view("AR0041").insert();
        return field("AR0041", "CNTBTCH").value().toLongLong();
    }
    // The list of `customer`'s open documents, built anew.
    void process(const QString& customer) {
        field("AR0061", "IDCUST").putWithoutVerification(customer);
        view("AR0061").process();
        view("AR0061").order(0);
    }
};

// ---- the open-document list ----

void OpenDocuments(benchmark::State& state) {
    Till till;
    till.newBatch();
    View& list = till.view("AR0061");
    qint64 rows = 0;
    for (auto _ : state) {
        list.clear();
        till.process(sized().busyCustomer);
        rows = 0;
        // The whole list at once, as the receipt window's reading of it does.
        list.readAllKept(GridFields, [&rows](const std::vector<QVariant>& values) {
            for (const QVariant& value : values)
                benchmark::DoNotOptimize(value);
            ++rows;
        });
    }
    state.counters["documents"] = double(rows);
}

const QString DocumentSelect = QStringLiteral(
    "SELECT \"IDINVC\",\"TRXTYPEID\",\"TRXTYPETXT\",\"DESCINVC\",\"DATEINVC\",\"DATEDUE\",\"DATEDISC\","
    "\"AMTINVCTC\",\"AMTDUETC\",\"AMTDISCTC\",\"IDCUSTPO\",\"IDORDERNBR\",\"CNTTOTPAYM\",\"IDRMIT\" FROM "
    "\"AROBL\" WHERE \"IDCUST\" = ? AND \"AMTDUETC\" <> 0 AND \"TRXTYPETXT\" IN (1,2,3,4) ORDER BY "
    "\"IDINVC\"");
const QString PendingSelect = QStringLiteral(
    "SELECT d.\"IDINVC\", SUM(d.\"AMTPAYM\"), SUM(d.\"AMTERNDISC\"), SUM(d.\"AMTADJTOT\") FROM \"ARTCP\" d "
    "JOIN \"ARBTA\" b ON b.\"CODEPYMTYP\" = d.\"CODEPAYM\" AND b.\"CNTBTCH\" = d.\"CNTBTCH\" WHERE "
    "d.\"IDCUST\" = ? AND d.\"RMITTYPE\" = '1' AND b.\"BATCHSTAT\" <> 3 AND b.\"BATCHSTAT\" <> 4 "
    "GROUP BY d.\"IDINVC\"");

// The rows the list is made of: the customer's open documents and what other entries hold of them.
qint64 readListRows(QSqlQuery& documents, QSqlQuery& pending, const QString& customer) {
    qint64 rows = 0;
    run(pending, {customer});
    while (pending.next())
        for (int i = 0; i < 4; ++i)
            benchmark::DoNotOptimize(pending.value(i));
    run(documents, {customer});
    while (documents.next()) {
        for (int i = 0; i < 14; ++i)
            benchmark::DoNotOptimize(documents.value(i));
        ++rows;
    }
    return rows;
}

// Every cell of the row taken as the list takes it, its type known from the schema as the list knows it:
// 'T' text, 'I' a number.
void touchRow(sqlite3_stmt* row, const char* types) {
    for (int i = 0; types[i]; ++i) {
        if (types[i] == 'T')
            benchmark::DoNotOptimize(sqlite3_column_text(row, i));
        else
            benchmark::DoNotOptimize(sqlite3_column_int64(row, i));
    }
}

void OpenDocumentsFloor(benchmark::State& state) {
    sqlite3* db = bench::floorConnection(sized().path);
    bench::CStatement documents(db, DocumentSelect);
    bench::CStatement pending(db, PendingSelect);
    const std::vector<std::string> customer{sized().busyCustomer.toStdString()};
    qint64 rows = 0;
    for (auto _ : state) {
        rows = 0;
        pending.start(customer);
        while (pending.step())
            touchRow(pending.get(), "TIII");
        documents.start(customer);
        while (documents.step()) {
            touchRow(documents.get(), "TIITIIIIIITTIT");
            ++rows;
        }
    }
    state.counters["documents"] = double(rows);
}

// ---- a receipt with ten applications ----

constexpr int Applications = 10;

// Customers with at least ten open invoices; each receipt takes a cent off ten of them, so that the same
// customers serve however many receipts are made.
const QStringList& receiptCustomers() {
    static const QStringList customers = [] {
        QSqlQuery query = prepared(QStringLiteral(
            "SELECT \"IDCUST\" FROM \"AROBL\" WHERE \"TRXTYPETXT\" = 1 AND \"AMTDUETC\" > 0 AND "
            "\"IDCUST\" <> ? GROUP BY \"IDCUST\" HAVING COUNT(*) >= 10 ORDER BY \"IDCUST\" LIMIT 500"));
        run(query, {sized().busyCustomer});
        QStringList found;
        while (query.next())
            found << query.value(0).toString();
        return found;
    }();
    return customers;
}

void Receipt(benchmark::State& state) {
    Till till;
    const qint64 batch = till.newBatch();
    qint64 entry = 0;
    const QStringList& customers = receiptCustomers();
    for (auto _ : state) {
        state.PauseTiming();
        const QString customer = customers.at(int(entry % customers.size()));
        till.field("AR0042", "CNTITEM").putWithoutVerification("0");
        till.view("AR0042").init();
        till.view("AR0061").init();
        till.field("AR0042", "TEXTRMIT").setValue("Receipt");
        till.field("AR0042", "IDCUST").setValue(customer);
        till.field("AR0042", "DATERMIT").setValue(Today);
        till.field("AR0042", "IDRMIT").setValue("CHQ");
        till.field("AR0042", "AMTRMIT").setValue(QStringLiteral("0.10"));
        till.field("AR0042", "FISCPER").setValue("03");
        till.field("AR0042", "FISCYR").setValue("2025");
        ++entry;
        state.ResumeTiming();
        till.field("AR0061", "PAYMTYPE").putWithoutVerification("CA");
        till.field("AR0061", "CNTBTCH").putWithoutVerification(QString::number(batch));
        till.field("AR0061", "CNTITEM").putWithoutVerification(QString::number(entry));
        till.field("AR0061", "AMTRMIT").putWithoutVerification(QStringLiteral("0.10"));
        till.process(customer);
        View& list = till.view("AR0061");
        int applied = 0;
        for (int n = 1; applied < Applications; ++n) {
            list.fields().item(QStringLiteral("CNTKEY")).putWithoutVerification(QString::number(n));
            if (!list.read())
                break;
            if (list.fields().item(QStringLiteral("TRXTYPE")).value().toInt() != 1)
                continue;
            list.fields().item(QStringLiteral("APPLY")).setValue("Y");
            list.fields().item(QStringLiteral("PAYMAMT")).putWithoutVerification(QStringLiteral("0.01"));
            list.update();
            ++applied;
        }
        till.view("AR0042").insert();
        require(state, applied == Applications, "fewer than ten invoices");
    }
    state.counters["customers"] = double(customers.size());
}

void ReceiptFloor(benchmark::State& state) {
    QSqlDatabase db = rawConnection(sized().path);
    const qint64 batch = 900000;
    QSqlQuery(db).exec(
        QStringLiteral("INSERT INTO \"ARBTA\" (\"CODEPYMTYP\",\"CNTBTCH\",\"BATCHSTAT\") VALUES ('CA',%1,1)")
            .arg(batch));
    QSqlQuery documents = prepared(DocumentSelect);
    QSqlQuery pending = prepared(PendingSelect);
    QSqlQuery header = prepared(QStringLiteral(
        "INSERT INTO \"ARTCR\" (\"CODEPYMTYP\",\"CNTBTCH\",\"CNTITEM\",\"IDCUST\",\"AMTRMIT\",\"IDRMIT\","
        "\"DATERMIT\",\"TEXTRMIT\",\"FISCYR\",\"FISCPER\",\"RMITTYPE\") "
        "VALUES ('CA',?,?,?,100,'CHQ',20250314,'Receipt','2025','03',1)"));
    QSqlQuery line = prepared(
        QStringLiteral("INSERT INTO \"ARTCP\" (\"CODEPAYM\",\"CNTBTCH\",\"CNTITEM\",\"CNTLINE\",\"IDCUST\","
                       "\"IDINVC\",\"AMTPAYM\",\"RMITTYPE\") VALUES ('CA',?,?,?,?,?,10,'1')"));
    QSqlQuery figures = prepared(
        QStringLiteral("UPDATE \"ARBTA\" SET \"CNTENTER\"=\"CNTENTER\"+1, \"AMTENTER\"=\"AMTENTER\"+100 "
                       "WHERE \"CODEPYMTYP\"='CA' AND \"CNTBTCH\"=?"));
    const QStringList& customers = receiptCustomers();
    static qint64 entry = 0; // Google Benchmark calls this more than once in a run
    for (auto _ : state) {
        const QString customer = customers.at(int(entry % customers.size()));
        ++entry;
        db.transaction();
        readListRows(documents, pending, customer);
        run(header, {batch, entry, customer});
        for (int l = 1; l <= Applications; ++l)
            run(line, {batch, entry, l, customer, QStringLiteral("IN%1").arg(l, 7, 10, QLatin1Char('0'))});
        run(figures, {batch});
        db.commit();
    }
}

// `everyThread`: the CPU time of the whole process, for an action that works on more than one thread.
void registerPair(const char* action, void (*measured)(benchmark::State&), void (*floor)(benchmark::State&),
                  bool everyThread = false) {
    for (benchmark::internal::Benchmark* each :
         {benchmark::RegisterBenchmark(action, measured),
          benchmark::RegisterBenchmark((std::string(action) + ":floor").c_str(), floor)}) {
        each->Unit(benchmark::kMillisecond)->MinTime(0.5);
        if (everyThread)
            each->MeasureProcessCPUTime();
    }
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    bench::takeSizeOptions(argc, argv);
    sized();
    registerPair("open_documents", OpenDocuments, OpenDocumentsFloor);
    registerPair("receipt", Receipt, ReceiptFloor);
    registerPair("post_batch", batch_posting::PostBatch, batch_posting::PostBatchFloor);
    registerPair("view_read", customer_list::ViewRead, customer_list::ViewReadFloor);
    benchmark::RegisterBenchmark("fold", customer_list::Fold)->Unit(benchmark::kMillisecond)->MinTime(0.5);
    registerPair("first_key", customer_list::FirstKey, customer_list::SearchFloor);
    registerPair("next_key", customer_list::NextKey, customer_list::SearchFloor);
    // The password is checked on a thread of its own (and the list's fold starts on another once it shows).
    registerPair("sign_in", customer_list::SignIn, customer_list::SignInFloor, true);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

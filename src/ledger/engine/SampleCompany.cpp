#include "ledger/engine/SampleCompany.h"

#include "ledger/engine/BulkInserter.h"
#include "ledger/engine/CompanyStore.h"
#include "ledger/engine/Transaction.h"

#include <array>

namespace tillbook::engine {

namespace {

// A small generator of our own, so a seed gives the same company with any standard library.
class Random {
public:
    explicit Random(quint64 seed) : m_state(seed * 0x9E3779B97F4A7C15ULL + 0x632BE59BD9B4E5ULL) {}
    quint64 next() {
        quint64 z = (m_state += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    int below(int n) { return int(next() % quint64(n)); }
    bool chance(int percent) { return below(100) < percent; }
    template <typename T, size_t N> const T& pick(const std::array<T, N>& items) {
        return items[size_t(below(int(N)))];
    }

private:
    quint64 m_state;
};

qlonglong ymd(const QDate& d) {
    return d.isValid() ? d.year() * 10000 + d.month() * 100 + d.day() : 0;
}
QString text(const char* s) {
    return QString::fromUtf8(s);
}

const std::array<const char*, 16> FirstWords = {
    "Maple",   "Northern", "Acme",      "Blue Heron", "Cedar",   "Granite", "Harbour",  "Lakeside",
    "Prairie", "Summit",   "Riverside", "Golden",     "Pioneer", "Silver",  "Westwind", "Oakridge"};
const std::array<const char*, 12> SecondWords = {"Hardware",   "Foods",    "Supply",   "Motors",
                                                 "Bakery",     "Traders",  "Pharmacy", "Books",
                                                 "Outfitters", "Electric", "Dairy",    "Florists"};
const std::array<const char*, 6> Suffixes = {"Ltd.", "Inc.", "& Sons", "Co.", "Limited", "Group"};
const std::array<const char*, 10> Streets = {
    "Main Street", "King St. W.", "Queen Street",  "Oak Avenue", "Lakeshore Blvd.",
    "Church St.",  "Elm Road",    "Victoria Ave.", "Bay Street", "Station Rd."};
struct Place {
    const char* city;
    const char* state;
    const char* postal;
    const char* area;
};
const std::array<Place, 8> Places = {{{"Toronto", "ON", "M5V 2T6", "416"},
                                      {"Ottawa", "ON", "K1P 5G4", "613"},
                                      {"Vancouver", "BC", "V6B 4Y8", "604"},
                                      {"Calgary", "AB", "T2P 1J9", "403"},
                                      {"Halifax", "NS", "B3J 3K5", "902"},
                                      {"Winnipeg", "MB", "R3C 4T3", "204"},
                                      {"Seattle", "WA", "98101", "206"},
                                      {"Buffalo", "NY", "14202-1234", "716"}}};

bool isAmerican(const Place& place) {
    return qstrcmp(place.state, "WA") == 0 || qstrcmp(place.state, "NY") == 0;
}

// Phone numbers of 3, 7, 8 and 10 digits, as clerks find them in old records.
QString phone(Random& r, const Place& place) {
    const QString seven =
        QStringLiteral("%1%2").arg(200 + r.below(800)).arg(r.below(10000), 4, 10, QLatin1Char('0'));
    switch (r.below(10)) {
    case 0:
        return QStringLiteral("%1").arg(100 + r.below(900));
    case 1:
        return seven;
    case 2:
        return QStringLiteral("9") + seven;
    default:
        return text(place.area) + seven;
    }
}

void addProfile(CompanyStore& store, const QString& id) {
    BulkInserter profile(store, *Schema::instance().view(QStringLiteral("CS0001")),
                         {"ORGID", "CONAME", "ADDR01", "ADDR02", "CITY", "STATE", "POSTAL", "COUNTRY",
                          "PHONE", "CONTACT", "PERDFSC", "QTR4PERD", "HOMECUR", "MULTICURSW", "WARNDAYS",
                          "HNDLCKFSC", "HNDINAACCT", "HNDNEXACCT", "GNLSSMTHD"});
    profile.add({id, QStringLiteral("Sample Company %1").arg(id), text("100 Front Street West"),
                 text("Suite 1200"), text("Toronto"), text("ON"), text("M5J 1E3"), text("Canada"),
                 text("4165550100"), text("Pat Morgan"), 12, 3, text("CAD"), 0, 30, 1, 1, 1, 1});
    profile.flush();
}

void addCalendars(CompanyStore& store, const QDate& today) {
    QStringList names{"FSCYEAR", "PERIODS", "QTR4PERD", "ACTIVE", "STATUSADJ", "STATUSCLS"};
    for (int p = 1; p <= 13; ++p)
        names << QStringLiteral("BGNDATE%1").arg(p) << QStringLiteral("ENDDATE%1").arg(p);
    BulkInserter calendars(store, *Schema::instance().view(QStringLiteral("CS0002")), names);
    for (int year = today.year() - 2; year <= today.year() + 1; ++year) {
        QVariantList row{QString::number(year), 12, 3, year >= today.year() - 1 ? 1 : 0, 1, 1};
        for (int p = 1; p <= 13; ++p) {
            const QDate begin(year, std::min(p, 12), 1);
            row << (p <= 12 ? ymd(begin) : 0) << (p <= 12 ? ymd(begin.addMonths(1).addDays(-1)) : 0);
        }
        calendars.add(row);
    }
    calendars.flush();
}

struct Account {
    const char* id;
    const char* formatted;
    const char* description;
    const char* type;
};

// Unformatted numbers ("4000", "410010") and segmented ones shown with hyphens ("4100-20").
const std::array<Account, 34> Accounts = {{
    {"1000", "1000", "Petty Cash", "B"},
    {"1010", "1010", "Bank - Operating", "B"},
    {"1020", "1020", "Bank - Payroll", "B"},
    {"1030", "1030", "Bank - Savings", "B"},
    {"1100", "1100", "Accounts Receivable", "B"},
    {"1110", "1110", "Allowance for Doubtful Accounts", "B"},
    {"1200", "1200", "Inventory", "B"},
    {"2100", "2100", "Accounts Payable", "B"},
    {"2200", "2200", "Sales Tax Payable", "B"},
    {"3100", "3100", "Retained Earnings", "R"},
    {"4000", "4000", "Sales", "I"},
    {"410010", "410010", "Sales - Retail", "I"},
    {"410020", "410020", "Sales - Wholesale", "I"},
    {"410030", "410030", "Sales - Online", "I"},
    {"4200", "4200", "Service Revenue", "I"},
    {"4300", "4300", "Freight Revenue", "I"},
    {"4400", "4400", "Installation Revenue", "I"},
    {"4500", "4500", "Rental Income", "I"},
    {"4600", "4600", "Interest Income", "I"},
    {"4700", "4700", "Miscellaneous Income", "I"},
    {"4800", "4800", "Sales Discounts", "I"},
    {"4900", "4900", "Bad Debt Recovery", "I"},
    {"4100100", "4100-100", "Sales - East Region", "I"},
    {"4100200", "4100-200", "Sales - West Region", "I"},
    {"4100300", "4100-300", "Sales - North Region", "I"},
    {"4200100", "4200-100", "Consulting - East", "I"},
    {"4200200", "4200-200", "Consulting - West", "I"},
    {"4300100", "4300-100", "Freight - Courier", "I"},
    {"420010010", "4200-100-10", "Consulting - East - Projects", "I"},
    {"420010020", "4200-100-20", "Consulting - East - Support", "I"},
    {"5000", "5000", "Cost of Goods Sold", "I"},
    {"5100", "5100", "Freight Expense", "I"},
    {"6100", "6100", "Bank Charges", "I"},
    {"6200", "6200", "Exchange Gain/Loss", "I"},
}};

void addAccounts(CompanyStore& store, const QDate& today) {
    BulkInserter accounts(store, *Schema::instance().view(QStringLiteral("GL0001")),
                          {"ACCTID", "ACCTFMTTD", "ACCTDESC", "ACCTTYPE", "ACCTBAL", "ACTIVESW", "CONSLDSW",
                           "CREATEDATE", "ACSEGVAL01", "ACCTSEGVAL", "ACCTGRPCOD", "DEFCURNCOD"});
    for (const Account& a : Accounts) {
        const QString formatted = text(a.formatted);
        const QString type = text(a.type);
        accounts.add({text(a.id), formatted, text(a.description), type,
                      type == QLatin1String("B") ? "1" : "2", 1, 0, ymd(today.addYears(-3)),
                      formatted.section(u'-', 0, 0), formatted.section(u'-', 0, 0),
                      type == QLatin1String("B") ? "ASSETS" : "REVENUE", "CAD"});
    }
    accounts.flush();
}

void addDistributionCodes(CompanyStore& store, const QDate& today) {
    const std::array<const char*, 24> codes = {"RETAIL", "WHSALE", "ONLINE", "SVC",    "CONSLT", "FREIGH",
                                               "INSTAL", "RENTAL", "INTRST", "MISC",   "DISC",   "EAST",
                                               "WEST",   "NORTH",  "SUPPRT", "PROJ",   "COUR",   "REPAIR",
                                               "PARTS",  "LABOUR", "TRAIN",  "LICENS", "DEPOSI", "RESTCK"};
    const std::array<const char*, 24> revenue = {
        "410010",   "410020", "410030", "4200",     "4200-100", "4300",     "4400",        "4500",
        "4600",     "4700",   "4800",   "4100-100", "4100-200", "4100-300", "4200-100-20", "4200-100-10",
        "4300-100", "4200",   "4000",   "4200",     "4200-200", "4700",     "4700",        "4000"};
    BulkInserter dist(
        store, *Schema::instance().view(QStringLiteral("AR0015")),
        {"IDDIST", "TEXTDESC", "SWACTV", "DATELASTMN", "IDACCTREV", "IDACCTINV", "IDACCTCOGS", "SWDISCABL"});
    for (size_t i = 0; i < codes.size(); ++i) {
        QString description = text(codes[i]).toLower();
        description[0] = description[0].toUpper();
        dist.add({text(codes[i]), description + QStringLiteral(" revenue"), 1, ymd(today.addMonths(-6)),
                  text(revenue[i]).remove(u'-'), text("1200"), text("5000"), i % 4 == 0 ? 0 : 1});
    }
    dist.flush();
}

void addBanks(CompanyStore& store) {
    BulkInserter banks(store, *Schema::instance().view(QStringLiteral("BK0001")),
                       {"BANK", "NAME", "ADDR1", "CITY", "STATE", "COUNTRY", "POSTAL", "PHONE", "TRANSIT",
                        "MULTICUR", "CURNSTMT", "INACTIVE", "BKACCT", "IDACCT", "IDACCTERR"});
    banks.add({text("TDOPER"), text("TD Canada Trust - Operating"), text("55 King St. W."), text("Toronto"),
               text("ON"), text("Canada"), text("M5K 1A2"), text("4165550111"), text("00042-004"), 0,
               text("CAD"), 0, text("5012345"), text("1010"), text("6100")});
    banks.add({text("RBCPAY"), text("Royal Bank - Payroll"), text("200 Bay Street"), text("Toronto"),
               text("ON"), text("Canada"), text("M5J 2J5"), text("4165550122"), text("00002-003"), 0,
               text("CAD"), 0, text("1002233"), text("1020"), text("6100")});
    banks.add({text("SAVING"), text("Scotiabank - Savings"), text("44 King St. W."), text("Toronto"),
               text("ON"), text("Canada"), text("M5H 1H1"), text("4165550133"), text("00002-002"), 0,
               text("CAD"), 0, text("7788990"), text("1030"), text("6100")});
    banks.add({text("OLDBNK"), text("Closed Account"), text("1 Front St."), text("Toronto"), text("ON"),
               text("Canada"), text("M5J 1E3"), text("4165550144"), text("00001-001"), 0, text("CAD"), 1,
               text("1111111"), text("1010"), text("6100")});
    banks.flush();
}

struct DocumentType {
    int textType; // TRXTYPETXT
    int idType;   // TRXTYPEID
    const char* prefix;
    int sign;
};

DocumentType documentType(Random& r) {
    const int roll = r.below(100);
    if (roll < 75) {
        static constexpr std::array<int, 5> ids = {11, 12, 13, 14, 15};
        return {1, r.pick(ids), "IN", 1};
    }
    if (roll < 83) {
        static constexpr std::array<int, 5> ids = {21, 22, 24, 25, 26};
        return {2, r.pick(ids), "DN", 1};
    }
    if (roll < 93) {
        static constexpr std::array<int, 4> ids = {31, 32, 34, 35};
        return {3, r.pick(ids), "CN", -1};
    }
    return {4, 40, "IC", 1};
}

} // namespace

QDate ledgerToday() {
    const QDate fromEnvironment =
        QDate::fromString(qEnvironmentVariable("TILLBOOK_TODAY"), QStringLiteral("yyyy-MM-dd"));
    return fromEnvironment.isValid() ? fromEnvironment : QDate::currentDate();
}

namespace {

SampleSummary fillSampleCompany(CompanyStore* store, const SampleOptions& options) {
    const QDate today = options.today.isValid() ? options.today : ledgerToday();
    const QString id = store->location().companyId;
    Random r(options.seed);
    SampleSummary summary;

    Transaction transaction(*store);
    addProfile(*store, id);
    addCalendars(*store, today);
    addAccounts(*store, today);
    addDistributionCodes(*store, today);
    addBanks(*store);

    BulkInserter customers(*store, *Schema::instance().view(QStringLiteral("AR0024")),
                           {"IDCUST",     "TEXTSNAM",  "IDGRP",      "SWACTV",     "DATESTART",  "NAMECUST",
                            "TEXTSTRE1",  "TEXTSTRE2", "NAMECITY",   "CODESTTE",   "CODEPSTL",   "CODECTRY",
                            "NAMECTAC",   "TEXTPHON1", "TEXTPHON2",  "IDACCTSET",  "CODECURN",   "SWPRTSTMT",
                            "CODETERM",   "AMTCRLIMT", "AMTBALDUET", "AMTBALDUEH", "CNTOPENINV", "CNTINVPAID",
                            "DATELASTIV", "DATELASTAC"});
    BulkInserter documents(*store, *Schema::instance().view(QStringLiteral("AR0036")),
                           {"IDCUST",     "IDINVC",     "TRXTYPEID", "TRXTYPETXT", "DESCINVC",  "DATEINVC",
                            "DATEBTCH",   "DATEDUE",    "DATEDISC",  "DATEASOF",   "CODETERM",  "CODECURN",
                            "IDRATETYPE", "EXCHRATEHC", "AMTINVCHC", "AMTDUEHC",   "AMTDISCHC", "AMTINVCTC",
                            "AMTDUETC",   "AMTDISCTC",  "SWPAID",    "DATELSTACT", "IDGRP",     "CNTBTCH",
                            "CNTITEM",    "IDCUSTPO",   "IDORDERNBR"});

    const int n = std::max(0, options.customers);
    const qint64 m = std::max(0, options.documents);
    const int width = std::max(4, int(QString::number(n).size()));
    QString previousName;
    qint64 documentNumber = 0;
    for (int i = 0; i < n; ++i) {
        const QString customer = QStringLiteral("%1").arg(i + 1, width, 10, QLatin1Char('0'));
        const Place& place = r.pick(Places);
        QString name = QStringLiteral("%1 %2 %3")
                           .arg(text(r.pick(FirstWords)), text(r.pick(SecondWords)), text(r.pick(Suffixes)));
        // Some names differ from another only in case, as when a customer was keyed twice.
        if (i % 23 == 22 && !previousName.isEmpty())
            name = r.chance(50) ? previousName.toUpper() : previousName.toLower();
        previousName = name;
        const QString group = r.chance(70) ? QStringLiteral("RTL") : QStringLiteral("WHL");

        const qint64 count = (i + 1) * m / std::max(1, n) - i * m / std::max(1, n);
        qlonglong balance = 0;
        int open = 0;
        int paid = 0;
        QDate lastInvoice;
        const bool allPaid = r.chance(15);
        for (qint64 d = 0; d < count; ++d) {
            const DocumentType type = documentType(r);
            const QDate date = today.addDays(-r.below(420));
            const qlonglong amount = type.sign * qlonglong(1000 + r.below(500000)) * 10; // thousandths
            const bool fullyPaid = allPaid || r.chance(35);
            const qlonglong due = fullyPaid ? 0 : (r.chance(15) ? amount / 20 * 10 : amount);
            const bool discount = type.textType == 1 && r.chance(40);
            const qlonglong discountAmount = discount ? amount / 500 * 10 : 0;
            ++documentNumber;
            const QString number =
                QStringLiteral("%1%2").arg(text(type.prefix)).arg(documentNumber, 7, 10, QLatin1Char('0'));
            documents.add(
                {customer,
                 number,
                 type.idType,
                 type.textType,
                 QStringLiteral("%1 %2").arg(text(r.pick(SecondWords)), number),
                 ymd(date),
                 ymd(date),
                 ymd(date.addDays(30)),
                 discount ? ymd(date.addDays(10)) : 0,
                 ymd(date),
                 text("NET30"),
                 text("CAD"),
                 text("SP"),
                 qlonglong(10000000),
                 amount,
                 due,
                 discountAmount,
                 amount,
                 due,
                 discountAmount,
                 due == 0 ? 1 : 0,
                 ymd(date),
                 group,
                 qlonglong(1 + documentNumber / 50),
                 qlonglong(1 + documentNumber % 50),
                 r.chance(30) ? QStringLiteral("PO%1").arg(r.below(100000)) : QString(QLatin1String("")),
                 QString(QLatin1String(""))});
            balance += due;
            if (due != 0)
                ++open;
            else
                ++paid;
            if (type.textType == 1 && (!lastInvoice.isValid() || date > lastInvoice))
                lastInvoice = date;
        }
        summary.openDocuments += open;
        const QString street = QStringLiteral("%1 %2").arg(1 + r.below(9999)).arg(text(r.pick(Streets)));
        const QString second =
            r.chance(40) ? QStringLiteral("Unit %1").arg(1 + r.below(400)) : QString(QLatin1String(""));
        customers.add({customer,
                       name.left(10).trimmed(), // as a put would store it: no blanks at the end
                       group,
                       r.chance(95) ? 1 : 0,
                       ymd(today.addYears(-5).addDays(r.below(1500))),
                       name,
                       street,
                       second,
                       text(place.city),
                       text(place.state),
                       text(place.postal),
                       isAmerican(place) ? "USA" : "Canada",
                       QStringLiteral("Accounts Payable"),
                       phone(r, place),
                       r.chance(50) ? phone(r, place) : QString(QLatin1String("")),
                       text("STD"),
                       text("CAD"),
                       1,
                       text("NET30"),
                       qlonglong(r.below(50) * 1000) * 1000,
                       balance,
                       balance,
                       open,
                       paid,
                       ymd(lastInvoice),
                       ymd(lastInvoice)});
    }
    customers.flush();
    documents.flush();
    store->setUser(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), true);
    transaction.commit();
    store->createSecondaryIndexes();
    summary.customers = customers.written();
    summary.documents = documents.written();
    return summary;
}

} // namespace

SampleSummary createSampleCompany(const QString& databaseId, const SampleOptions& options, bool replace) {
    SampleSummary summary;
    CompanyStore::create(
        databaseId, replace, [&](CompanyStore& store) { summary = fillSampleCompany(&store, options); },
        false);
    return summary;
}

} // namespace tillbook::engine

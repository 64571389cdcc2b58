#pragma once

// The customer list's actions, each beside its floor: the list read through its view, finding a customer by
// typing, and sign-in to a ready receipt window.

#include "ActionsSupport.h"
#include "SignInLoop.h"
#include "SqliteFloor.h"
#include "entry/ReceiptDesk.h"
#include "entry/frmCR.h"
#include "fetching/CustomerList.h"
#include "fetching/CustomerSearch.h"
#include "ledger/Session.h"
#include "ledger/engine/PasswordHash.h"
#include "ui/Platform.h"

#include <QApplication>
#include <cstring>
#include <memory>

namespace tillbook::bench::customer_list {

// ---- the customer list ----

inline void ViewRead(benchmark::State& state) {
    Session session;
    session.open(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), sized().id, Today);
    qint64 rows = 0;
    for (auto _ : state) {
        const CustomerList customers = Read_Customers(session);
        rows = qint64(customers.size());
        benchmark::DoNotOptimize(&customers);
    }
    state.counters["customers"] = double(rows);
}

// The same statement the ledger runs for the list, stepped through the C interface, each cell's text copied
// once into one block: the least a list kept in memory can cost.
inline size_t readCustomerRows(CStatement& list) {
    std::string text;
    std::vector<std::uint32_t> ends;
    list.start();
    sqlite3_bind_int64(list.get(), 1, 0);
    while (list.step())
        for (int i = 0; i < 5; ++i) {
            const auto* cell = reinterpret_cast<const char*>(sqlite3_column_text(list.get(), i));
            text.append(cell ? cell : "", size_t(sqlite3_column_bytes(list.get(), i)));
            ends.push_back(std::uint32_t(text.size()));
        }
    benchmark::DoNotOptimize(text.data());
    return ends.size() / 5;
}

inline const QString CustomerListSelect = QStringLiteral(
    "SELECT \"NAMECUST\",\"IDCUST\",\"TEXTSTRE1\",\"TEXTSTRE2\",\"TEXTPHON1\" FROM \"ARCUS\" WHERE "
    "(\"CNTOPENINV\" > ?) ORDER BY tb_namekey(\"NAMECUST\")");

inline void ViewReadFloor(benchmark::State& state) {
    CStatement list(floorConnection(sized().path), CustomerListSelect);
    size_t rows = 0;
    for (auto _ : state)
        rows = readCustomerRows(list);
    state.counters["customers"] = double(rows);
}

// ---- finding a customer by typing ----

inline const CustomerList& signedInList() {
    static const CustomerList list = [] {
        Session session;
        session.open(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"), sized().id, Today);
        return Read_Customers(session);
    }();
    return list;
}

// The list folded for searching, as it is done in the background once the list is shown.
inline void Fold(benchmark::State& state) {
    size_t bytes = 0;
    for (auto _ : state)
        bytes = Fold_Customers(signedInList()).text.size();
    state.counters["bytes"] = double(bytes);
}

// The clerk's first key, the list folded in the background meanwhile.
inline void FirstKey(benchmark::State& state) {
    size_t found = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto search = std::make_unique<CustomerSearch>(signedInList());
        search->waitUntilFolded();
        state.ResumeTiming();
        found = search->find(QStringLiteral("s")).size();
        state.PauseTiming();
        search.reset();
        state.ResumeTiming();
    }
    state.counters["found"] = double(found);
}

inline void NextKey(benchmark::State& state) {
    CustomerSearch search(signedInList());
    search.find(QStringLiteral("s"));
    size_t found = 0;
    bool dairy = false;
    for (auto _ : state) {
        dairy = !dairy;
        found = search.find(dairy ? QStringLiteral("dairy") : QStringLiteral("daisy")).size();
    }
    state.counters["found"] = double(found);
}

// Every name and number looked through once for the text as it stands, with the same library search.
inline void SearchFloor(benchmark::State& state) {
    const CustomerList& list = signedInList();
    size_t found = 0;
    for (auto _ : state) {
        found = 0;
        for (size_t i = 0; i < list.size(); ++i)
            for (const CustomerList::Field field : {CustomerList::Name, CustomerList::Id}) {
                const QByteArrayView text = list.utf8(i, field);
                found += memmem(text.data(), size_t(text.size()), "Dairy", 5) != nullptr;
            }
    }
    state.counters["found"] = double(found);
}

// ---- sign-in ----

inline void SignIn(benchmark::State& state) {
    Desk().SignInDatabaseID = sized().id;
    Desk().SignInUser = QStringLiteral("ADMIN");
    Desk().CurrentDatabase = 1;
    setMsgBoxResponder([](const MsgBoxRequest& box) {
        qWarning("message box: %s", qPrintable(box.prompt));
        return vbOK;
    });
    signInLoop(state);
}

// The user's password checked against the stored hash (a sign-in cannot do less: the hash's cost is
// what keeps a stolen company file from giving its passwords away), then the customer list's rows read
// through the C interface.
inline void SignInFloor(benchmark::State& state) {
    CStatement list(floorConnection(sized().path), CustomerListSelect);
    QSqlQuery user =
        prepared(QStringLiteral("SELECT \"SALT\",\"ROUNDS\",\"HASH\" FROM \"TB_USERS\" WHERE \"NAME\" = ?"));
    for (auto _ : state) {
        run(user, {QStringLiteral("ADMIN")});
        require(state, user.next(), "no user ADMIN");
        const auto stored = engine::PasswordHash::fromStored(user.value(0).toString(), user.value(1).toInt(),
                                                             user.value(2).toString());
        user.finish();
        require(state, stored.matches(QStringLiteral("ADMIN")), "the password of ADMIN is not ADMIN");
        benchmark::DoNotOptimize(readCustomerRows(list));
    }
}

} // namespace tillbook::bench::customer_list

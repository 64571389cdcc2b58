// Sign-in at today's password cost: a wrong password for a user, and a user the company does not have.
// The two should take the same time, so that the time does not tell who is a user.

#include "ledger/LedgerError.h"
#include "ledger/Session.h"
#include "ledger/engine/CompanyStore.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

QString company() {
    static QTemporaryDir dir;
    static const QString id = [] {
        qputenv("TILLBOOK_DATA", dir.path().toUtf8());
        qunsetenv("TILLBOOK_LEDGER_URL");
        tillbook::engine::CompanyStore::create(
            QStringLiteral("SIGNIN"), true, [](tillbook::engine::CompanyStore& s) {
                s.setUser(QStringLiteral("ADMIN"), QStringLiteral("ADMIN"));
            });
        return QStringLiteral("SIGNIN");
    }();
    return id;
}

void signIn(benchmark::State& state, const QString& user, const QString& password) {
    const QString id = company();
    for (auto _ : state) {
        tillbook::Session session;
        try {
            session.open(user, password, id, QDate(2025, 3, 14));
        } catch (const tillbook::LedgerError&) {
        }
        benchmark::DoNotOptimize(session.isOpen());
    }
}

void SignInGood(benchmark::State& state) {
    signIn(state, QStringLiteral("ADMIN"), QStringLiteral("ADMIN"));
}
void SignInWrongPassword(benchmark::State& state) {
    signIn(state, QStringLiteral("ADMIN"), QStringLiteral("admin"));
}
void SignInUnknownUser(benchmark::State& state) {
    signIn(state, QStringLiteral("NOBODY"), QStringLiteral("ADMIN"));
}

} // namespace

BENCHMARK(SignInGood)->Unit(benchmark::kMillisecond);
BENCHMARK(SignInWrongPassword)->Unit(benchmark::kMillisecond);
BENCHMARK(SignInUnknownUser)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

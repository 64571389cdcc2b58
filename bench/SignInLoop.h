#pragma once

// The measured part of a sign-in: the receipt window loaded on the desk's signed-in company and shown, then,
// with the clock stopped, closed and its ledger let go. The caller sets the desk's sign-in values first.

#include "entry/ReceiptDesk.h"
#include "entry/frmCR.h"

#include <QApplication>
#include <benchmark/benchmark.h>

namespace tillbook::bench {

inline void signInLoop(benchmark::State& state) {
    for (auto _ : state) {
        auto* window = new frmCR();
        if (!window->Form_Load(QStringLiteral("ADMIN")))
            state.SkipWithError("the company could not be opened");
        window->show();
        QApplication::processEvents();
        state.PauseTiming();
        delete window;
        Close_Ledger(Desk());
        state.ResumeTiming();
    }
}

} // namespace tillbook::bench

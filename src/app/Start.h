#pragma once

namespace tillbook {

// The program's start-up procedure: shows the sign-in window and returns; the forms' events do the rest.
void Start_Main();

// The end of the program, after the event loop: releases the ledger views and session while the
// application still stands. Called once, by main.
void End_Main();

} // namespace tillbook

#pragma once

namespace tillbook {

// The program's start-up procedure: shows the sign-in window and returns; the forms' events do the rest.
void Start_Main();

} // namespace tillbook

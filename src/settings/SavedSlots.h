#pragma once

// What the settings store keeps by slot: the three databases, the users of the chosen one, the last sign-in's
// choice and the last batch of each database. The receipt desk holds the program's copy; the load and save
// procedures of Registry.h move it to and from the store.

#include <QString>
#include <array>
#include <cstdint>

namespace tillbook {

struct UserRecord {
    QString UserName; // "" = a free slot
    QString Password;
};

constexpr int DatabaseSlots = 3;
constexpr int UserSlots = 10;

struct SavedSlots {
    std::array<QString, DatabaseSlots> DatabaseIDs; // the database ID of slot 1..3; "" = free
    std::array<UserRecord, UserSlots> Users;        // the users of the current database
    std::int16_t CurrentDatabase = 0;               // 1-based slot of the chosen database; 0 = none
    std::int16_t CurrentUser = 0;                   // 1-based position of the chosen user; 0 = none

    // The current receipt batch number (0 = none) and its position in the batch list (-1 = none); the
    // settings store keeps both as text.
    int CurrentBatch = 0;
    int BatchListIndex = -1;
};

} // namespace tillbook

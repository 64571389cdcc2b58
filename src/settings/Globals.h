#pragma once

// The settings that the program keeps in memory while it runs, shared by the sign-in and receipt windows.

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

inline std::array<QString, DatabaseSlots> DatabaseIDs; // the database ID of slot 1..3; "" = free
inline std::array<UserRecord, UserSlots> Users;        // the users of the current database
inline std::int16_t CurrentDatabase = 0;               // 1-based slot of the chosen database; 0 = none
inline std::int16_t CurrentUser = 0;                   // 1-based position of the chosen user; 0 = none
inline QString CurrentBatch;                           // the current receipt batch number
inline QString BatchListIndex = QStringLiteral("-1");  // its position in the batch list, as text

} // namespace tillbook

#pragma once

// The program's shared state: the settings it keeps in memory, what a sign-in hands on, and the entry being
// keyed. Read and written by the sign-in and receipt windows, posting and printing.

#include "ledger/Money.h"

#include <QString>
#include <array>
#include <cstdint>
#include <vector>

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

// What a successful sign-in hands to the receipt window.
inline QString SignInDatabaseID;
inline QString SignInUser;
inline QString SignInPassword;

// The batch and entry being keyed.
inline QString CurrentBatch;                          // the current receipt batch number
inline QString BatchListIndex = QStringLiteral("-1"); // its position in the batch list, as text
inline QString CurrentEntry;         // the entry number within CurrentBatch; "0" for a new batch
inline QString BankCode;             // the bank code of the current batch
inline std::vector<bool> EntryIsNew; // by entry number - 1: started on this window and not yet saved
inline bool EntryDirty = false;      // the entry holds keyed work that is not saved

inline int ApplyCount = 0;         // documents applied in the current receipt
inline std::vector<int> ApplyKeys; // the "CNTKEY" of each applied document
inline std::vector<QString> AppliedMarks;

inline Money ReceiptAmount;         // the entry's amount, commas removed
inline bool DecimalTyped = false;   // a decimal point has been typed into the amount
inline std::int16_t DistLines = 0;  // distribution lines of a miscellaneous receipt
inline std::int16_t FinderKind = 0; // 1 distribution codes, 2 G/L accounts
inline bool PostOK = false;         // the last posting succeeded

} // namespace tillbook

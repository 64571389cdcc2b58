#pragma once

// The state of the entry being keyed, shared by the receipt window, posting and printing.

#include "ledger/Money.h"

#include <QString>
#include <cstdint>
#include <vector>

namespace tillbook {

inline QString CurrentEntry;         // the entry number within CurrentBatch, as text; "0" for a new batch
inline QString BankCode;             // the bank code of the current batch
inline std::vector<bool> EntryIsNew; // by entry number - 1: started on this window and not yet saved
inline bool EntryDirty = false;      // the entry holds keyed work that is not saved

inline int ApplyCount = 0;         // documents applied in the current receipt
inline std::vector<int> ApplyKeys; // the "CNTKEY" of each applied document
inline std::vector<QString> AppliedMarks;

inline Money ReceiptAmount;         // the entry's amount, commas removed
inline std::int16_t DistLines = 0;  // distribution lines of a miscellaneous receipt
inline std::int16_t FinderKind = 0; // 1 distribution codes, 2 G/L accounts
inline bool PostOK = false;         // the last posting succeeded

} // namespace tillbook

#pragma once

// The receipt desk: the one object that holds what the sign-in and receipt windows share while the program
// runs: the settings' slots and the signed-in user, the ledger session and the seven receipt views, the
// current batch and entry, the customer list and the documents applied in the entry being keyed. The layers
// below the windows never reach for it: each is handed the part it works on (the views, the slots).

#include "fetching/CustomerList.h"
#include "fetching/ReceiptViews.h"
#include "ledger/Money.h"
#include "settings/SavedSlots.h"

#include <QString>
#include <cstdint>
#include <vector>

namespace tillbook {

struct ReceiptDesk : ReceiptViews, SavedSlots {
    // What a successful sign-in hands to the receipt window. The password is handed to the window that opens
    // the session and is never kept.
    QString SignInDatabaseID;
    QString SignInUser;

    // The new database and user dialog and the sign-in window.
    bool ReturnFromNew = false;    // the dialog has just closed
    bool DatabasesChanged = false; // written by the dialog; the sign-in window rebuilds its lists regardless
    bool UsersChanged = false;
    bool AddingDatabase = false; // the dialog adds a database (true) or a user of the selected one (false)

    // The entry being keyed (CurrentBatch and BatchListIndex are among the saved slots).
    int CurrentEntry = 0;         // the entry number within CurrentBatch; 0 for a new batch
    QString BankCode;             // the bank code of the current batch
    std::vector<bool> EntryIsNew; // by entry number - 1: started on this window and not yet saved
    bool EntryDirty = false;      // the entry holds keyed work that is not saved

    int ApplyCount = 0;         // documents applied in the current receipt
    std::vector<int> ApplyKeys; // the "CNTKEY" of each applied document
    std::vector<QString> AppliedMarks;

    Money ReceiptAmount;         // the entry's amount, commas removed
    bool DecimalTyped = false;   // a decimal point has been typed into the amount
    std::int16_t DistLines = 0;  // distribution lines of a miscellaneous receipt
    std::int16_t FinderKind = 0; // 1 distribution codes, 2 G/L accounts

    // The customers with an open invoice, parallel to the receipt window's customer list.
    CustomerList Customers;
};

// The running program's desk.
ReceiptDesk& Desk();
// Closes the desk's ledger and gives the program a fresh desk: a test starts from one.
void ResetDesk();

} // namespace tillbook

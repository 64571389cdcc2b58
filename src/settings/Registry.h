#pragma once

// The load and save procedures of the program's settings. They move values between the settings store and the
// slots of a SavedSlots; values shown on forms are handed over as arguments and results.
//
// Every value is text: numbers as decimal text, Booleans as "True" or "False". A missing value reads as its
// default, and nothing is ever deleted: an emptied entry is written back as "".

#include "settings/SavedSlots.h"

namespace tillbook {

void Load_DatabaseIDs(SavedSlots& saved);
void Save_DatabaseIDs(SavedSlots& saved);

// The ten users of the slot CurrentDatabase (1..3); any other slot reads and writes nothing.
void Load_Users(SavedSlots& saved);
void Save_Users(SavedSlots& saved);

struct ConnectInfo {
    bool savePassword = false; // the "Save Password" tick
    QString savedPassword;     // the password to pre-fill
};
// Sets CurrentDatabase and CurrentUser from the last sign-in and returns the password settings.
ConnectInfo Load_ConnectInfo(SavedSlots& saved);
// Writes "Database" and "User" (the list positions plus one), "Save", then "SavedPWD": the password when the
// option is ticked, else "" (which erases a password saved earlier).
void Save_ConnectInfo(int databaseListIndex, int userListIndex, bool savePassword, const QString& password);

// CurrentBatch and BatchListIndex of the slot CurrentDatabase (1..3); any other slot: nothing.
void Load_BatchInfo(SavedSlots& saved);
void Save_BatchInfo(SavedSlots& saved);

struct ReceiptStyle {
    bool twoPanel = false;
    bool threePanel = true;
};
ReceiptStyle Load_ReceiptStyle();
void Save_ReceiptStyle(const ReceiptStyle& style);

// The "Printer" section: the printer receipts are printed on. Driver, name and port are the platform's own
// (CUPS: make and model, queue, device URI); all three are "" while the default printer is chosen.
struct PrinterSettings {
    bool useDefault = true; // "Default"
    QString driver;         // "Driver"
    QString name;           // "Name"
    QString port;           // "Port"
};
PrinterSettings Load_PrinterSettings();
void Save_PrinterSettings(const PrinterSettings& printer);

// The stored form of a Boolean and its lenient reading.
QString BoolText(bool value);
bool BoolOf(const QString& text, bool defaultValue);

} // namespace tillbook

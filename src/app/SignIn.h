#pragma once

// What a successful sign-in hands to the receipt window, and the flags that the new database and user dialog
// shares with the sign-in window.

#include <QString>

namespace tillbook {

inline QString SignInDatabaseID;
inline QString SignInUser;
inline QString SignInPassword;

inline bool ReturnFromNew = false; // the new database/user dialog has just closed
inline bool DatabasesChanged =
    false; // written by that dialog; the sign-in window rebuilds its lists regardless
inline bool UsersChanged = false;
inline bool AddingDatabase = false; // the dialog adds a database (true) or a user of the selected one (false)

} // namespace tillbook

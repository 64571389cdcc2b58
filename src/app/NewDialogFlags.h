#pragma once

// The flags that the new database and user dialog shares with the sign-in window.

namespace tillbook {

inline bool ReturnFromNew = false; // the new database/user dialog has just closed
inline bool DatabasesChanged =
    false; // written by that dialog; the sign-in window rebuilds its lists regardless
inline bool UsersChanged = false;
inline bool AddingDatabase = false; // the dialog adds a database (true) or a user of the selected one (false)

} // namespace tillbook

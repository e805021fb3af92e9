// The lock file that Access and its providers keep beside a database while they have it open.
#pragma once

#include <string>

namespace vellums::jet {

// "x.ldb" of "x.mdb", "x.laccdb" of "x.accdb".
std::u16string lockFilePath(const std::u16string& databasePath);

enum class OpenElsewhere {
    No,
    Yes,
    Perhaps, // there is a lock file that may be a left-over, and no way to tell
};

// Whether the lock file says that another program has the database open. Its users write pages without a
// journal and later than they say, so while it does the database is neither written nor read.
OpenElsewhere openElsewhere(const std::u16string& databasePath);

} // namespace vellums::jet

// The first who opens a database makes the lock file, the last one removes it; after a crash it stays. Names
// in it prove nothing, since they are not cleared. But each user has the file open, and a byte of it locked,
// as long as he has the database open. Where a system tells neither of users beyond its own, only the age
// of the file is left: one that is younger than the last change of the database belongs to somebody who has
// come since.
#include "jet/file/lockFile.h"

#include "platform/fileUse.h"
#include "platform/files.h"
#include "text/letterCase.h"
#include "text/path.h"

namespace vellums::jet {
namespace {

constexpr std::uint64_t kFirstUser = 0x10000001; // one byte each
constexpr std::uint64_t kMostUsers = 255;

} // namespace

std::u16string lockFilePath(const std::u16string& databasePath)
{
    const std::size_t dot = databasePath.rfind(u'.');
    const std::size_t separator = text::lastSeparator(databasePath);
    const bool hasExtension = dot != databasePath.npos && (separator == databasePath.npos || dot > separator);
    const std::u16string stem = databasePath.substr(0, hasExtension ? dot : databasePath.npos);
    const std::u16string extension = hasExtension ? text::lowerCase(databasePath.substr(dot)) : u"";
    return stem + (extension.starts_with(u".acc") ? u".laccdb" : u".ldb");
}

OpenElsewhere openElsewhere(const std::u16string& databasePath)
{
    const std::u16string path = lockFilePath(databasePath);
    if (!platform::fileExists(path))
        return OpenElsewhere::No;
    switch (platform::useOf(path, kFirstUser, kMostUsers)) {
    case platform::FileUse::None:
        return OpenElsewhere::No;
    case platform::FileUse::Certain:
        return OpenElsewhere::Yes;
    case platform::FileUse::Unknown:
        break;
    }
    const bool used = platform::fileSize(path).value_or(0) != 0 && platform::changedAfter(path, databasePath);
    return used ? OpenElsewhere::Perhaps : OpenElsewhere::No;
}

} // namespace vellums::jet

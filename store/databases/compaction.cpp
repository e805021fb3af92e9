// The embedded engine compacts a file in place. Another provider writes a compacted copy into the program's
// folder, which may be another disk than the database's. What takes the database's place has to lie beside
// it, so that one renaming does it:
//
//   1. compact      database        -> temp.cdb in the program's folder
//   2. copy, flush  temp.cdb        -> "<database>.compacted", or with a number where that name is taken
//   3. rename       "...compacted"  -> database
//
// Wherever this ends, the database's name leads to a whole database, the old one or the new one; the two
// other files are the program's own and are removed on every way out. A temp.cdb of a run that was cut off is
// removed by the next.
#include "store/databases/compaction.h"

#include "platform/passingFile.h"
#include "store/connectionString.h"
#include "store/databases/accessFile.h"
#include "store/databases/fileReason.h"
#include "text/decimal.h"
#include "text/letterCase.h"

namespace vellums {
namespace {

using platform::PassingFile;

struct Sizes {
    std::uint64_t before = 0;
    std::uint64_t after = 0;
};

struct NotCompacted {
    std::u16string reason;
};

// The replacement is put beside the database, so that it takes its place in one step. While it is copied
// nobody can change the database behind its back; the lock is given up right before the renaming, because a
// file that is open cannot be replaced on every system.
void replaceDatabase(const std::u16string& file, const std::u16string& compacted)
{
    const PassingFile replacement(platform::unusedPath(file, u".compacted"));
    {
        const platform::File unchanged(file, platform::Access::Read);
        platform::copyFile(compacted, replacement.path());
    }
    platform::replaceFile(replacement.path(), file);
}

Sizes compact(const Notebook& notebook, const std::u16string& file)
{
    const std::size_t dot = file.rfind(u'.');
    const std::u16string extension =
        dot == std::u16string::npos ? u"" : text::lowerCase(std::u16string_view(file).substr(dot + 1));
    if (extension != u"mdb" && extension != u"accdb")
        throw NotCompacted{
            notebook.say(u"Only .mdb and .accdb files can be compacted.", u"只能整理 .mdb 和 .accdb 文件。")};
    const auto before = platform::fileSize(file);
    if (!before)
        throw platform::FileError{platform::FileFault::NotFound, 0};
    // A database that is marked read-only could not be replaced. Whether the marks could be cleared shows
    // when it is.
    platform::clearAttributes(file);
    if (notebook.provider->compactInPlace(file, databasePassword(notebook.dbConn)))
        return {*before, platform::fileSize(file).value_or(0)};
    // The copy that a provider makes has no password.
    if (isLockedFile(file))
        throw NotCompacted{
            notebook.say(u"A database with a password is not compacted: the copy would lose it.",
                u"数据库有密码,整理会丢失密码。")};
    const PassingFile compacted(platform::inFolder(notebook.appDir, u"temp.cdb"));
    notebook.provider->compact(file, compacted.path());
    const auto after = platform::fileSize(compacted.path());
    // A provider that reports success is not taken at its word: the old file is about to go.
    if (!after || !looksLikeAccessFile(compacted.path()))
        throw NotCompacted{notebook.say(u"The compacted copy is no database.", u"整理后的文件不是数据库。")};
    replaceDatabase(file, compacted.path());
    return {*before, *after};
}

std::u16string heading(const Notebook& notebook, bool done)
{
    return done ? notebook.say(u"Database file compacted:", u"数据库文件整理完毕:")
                : notebook.say(u"Database file not compacted:", u"数据库文件整理失败:");
}

Compaction failure(const Notebook& notebook, const std::u16string& file, const std::u16string& reason)
{
    return {false, heading(notebook, false) + u"\r\n" + file + u"\r\n" + reason};
}

} // namespace

Compaction compactDatabase(const Notebook& notebook, const std::u16string& file)
{
    try {
        const Sizes sizes = compact(notebook, file);
        return {true,
            heading(notebook, true) + u"\r\n" + file + u"\r\n" + text::kilobytes(sizes.before) + u" -> " +
                text::kilobytes(sizes.after) + u"."};
    } catch (const ProviderError& e) {
        return failure(notebook, file, reasonOf(e));
    } catch (const platform::FileError& e) {
        return failure(notebook, file, fileReason(notebook, e.fault));
    } catch (const NotCompacted& e) {
        return failure(notebook, file, e.reason);
    }
}

} // namespace vellums

#include "store/databases/safetyCopy.h"

#include "platform/files.h"
#include "store/connectionString.h"
#include "store/databases/fileReason.h"

#include <new>

namespace vellums {
namespace {

// An earlier copy is replaced by renaming only once the new one is whole and on the disk.
void copyUnder(const std::u16string& file, const std::u16string& unfinished)
{
    platform::copyFile(file, unfinished);
    try {
        platform::replaceFile(unfinished, safetyCopyPath(file));
    } catch (...) {
        platform::removeFile(unfinished);
        throw;
    }
}

} // namespace

std::u16string safetyCopyPath(const std::u16string& file)
{
    return file + u".bak";
}

std::optional<std::u16string> makeSafetyCopy(const Notebook& notebook)
{
    const std::u16string file = getConnPart(notebook, notebook.dbConn, ConnPart::FullPath);
    try {
        copyUnder(file, platform::unusedPath(safetyCopyPath(file), u".new"));
        return std::nullopt;
    } catch (const platform::FileError& e) {
        return fileReason(notebook, e.fault);
    } catch (const std::bad_alloc&) {
        return notebook.say(u"There is not enough memory.", u"内存不足。");
    }
}

} // namespace vellums

#include "store/databases/modCreateDB.h"

#include "platform/files.h"
#include "store/databases/tableChanges.h"
#include "text/letterCase.h"

#include <algorithm>
#include <iterator>

namespace vellums {
namespace {

constexpr std::size_t kLongestFileName = 200; // leaves room for what is put beside the file

bool mayStandInFileName(char16_t unit)
{
    return unit >= u' ' && std::u16string_view(u"\\/:*?\"<>|").find(unit) == std::u16string_view::npos;
}

// CON, NUL, COM1 ... are devices on Windows, whatever extension follows.
bool isDeviceName(std::u16string_view fileName)
{
    const std::u16string stem = text::lowerCase(fileName.substr(0, fileName.find(u'.')));
    constexpr std::u16string_view kDevices[] = {u"con", u"prn", u"aux", u"nul"};
    if (std::find(std::begin(kDevices), std::end(kDevices), stem) != std::end(kDevices))
        return true;
    return stem.size() == 4 && (stem.starts_with(u"com") || stem.starts_with(u"lpt")) && stem[3] >= u'1' &&
        stem[3] <= u'9';
}

// Stricter than this system may be: the data folder is carried from one system to another.
void refuseBadFileName(const std::u16string& fileName)
{
    const bool good = fileName.size() <= kLongestFileName &&
        std::all_of(fileName.begin(), fileName.end(), mayStandInFileName) &&
        fileName.find_first_not_of(u" .") != std::u16string::npos && fileName.back() != u' ' &&
        fileName.back() != u'.' && !isDeviceName(fileName);
    if (!good)
        throw ProviderError(u"'" + fileName + u"' is not a valid file name.", jet::kFail);
}

} // namespace

std::u16string newTableName(std::u16string_view fileName, bool chinese)
{
    const std::size_t dot = fileName.find(u'.');
    if (dot == std::u16string_view::npos || dot == 0)
        return chinese ? u"笔记" : u"Memo";
    return std::u16string(fileName.substr(0, dot));
}

std::u16string dbCreateNew(const Notebook& notebook, const std::u16string& fileName)
{
    const std::u16string table = newTableName(fileName, notebook.chinese);
    const std::u16string path =
        platform::inFolder(notebook.dbParent, fileName.empty() ? u"Vellums.mdb" : fileName);
    try {
        if (!fileName.empty())
            refuseBadFileName(fileName);
        checkedTableName(table); // of a system table it would be made and never found
        notebook.provider->createDatabase(path, table);
        return table;
    } catch (const ProviderError& e) {
        notebook.status.failed(u"dbCreateNew: " + reasonOf(e));
        return {};
    }
}

} // namespace vellums

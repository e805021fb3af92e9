#include "store/modCreateDB.h"

#include "platform/files.h"
#include "platform/text.h"

namespace vellums {

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
    std::u16string path = notebook.dbParent;
    if (!path.empty() && platform::lastSeparator(path) != path.size() - 1)
        path += platform::separator();
    path += fileName.empty() ? u"Vellums.mdb" : fileName;
    try {
        notebook.provider->createDatabase(path, table);
        return table;
    } catch (const ProviderError& e) {
        notebook.status.show(u"dbCreateNew: " + e.description + u" (" + platform::decimal(e.number) + u")");
        return {};
    }
}

} // namespace vellums

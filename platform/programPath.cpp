#include "platform/programPath.h"

#include "text/path.h"

namespace vellums::platform {

std::u16string programFolder()
{
    const std::u16string file = programFile();
    const std::u16string_view folder = text::folderOf(file);
    return std::u16string(folder.empty() ? u"." : folder);
}

std::u16string programName()
{
    const std::u16string file = programFile();
    const std::u16string_view name = text::nameOf(file);
    const std::size_t dot = name.rfind(u'.');
    return std::u16string(dot == 0 ? name : name.substr(0, dot));
}

} // namespace vellums::platform

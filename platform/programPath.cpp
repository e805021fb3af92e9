#include "platform/programPath.h"

#include "platform/files.h"
#include "text/path.h"

namespace vellums::platform {

std::u16string programFolder()
{
    const std::u16string file = programFile();
    const std::size_t cut = text::lastSeparator(file);
    if (cut == std::u16string::npos)
        return u".";
    // "/" and "C:\" keep their separator: without it they would mean something else.
    const bool root = cut == 0 || (cut == 2 && file[1] == u':');
    return file.substr(0, root ? cut + 1 : cut);
}

std::u16string programName()
{
    const std::u16string file = programFile();
    const std::size_t cut = text::lastSeparator(file);
    const std::u16string name = cut == std::u16string::npos ? file : file.substr(cut + 1);
    const std::size_t dot = name.rfind(u'.');
    return dot == std::u16string::npos || dot == 0 ? name : name.substr(0, dot);
}

} // namespace vellums::platform

#include "text/path.h"

namespace vellums::text {

std::size_t lastSeparator(std::u16string_view path)
{
    return path.find_last_of(u"/\\");
}

} // namespace vellums::text

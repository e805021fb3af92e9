#include "jet/file/codePageText.h"

#include "platform/codePage.h"

namespace vellums::jet {
namespace {

constexpr unsigned kWestern = 1252;

} // namespace

std::u16string codePageText(ByteView bytes, std::uint16_t codePage)
{
    return platform::fromCodePage(
        codePage == 0 ? kWestern : codePage, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

} // namespace vellums::jet

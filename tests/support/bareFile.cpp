#include "tests/support/bareFile.h"

#include "jet/file/dataPage.h"
#include "jet/file/header.h"
#include "platform/files.h"

#include <algorithm>
#include <string_view>

namespace vellums::tests {
namespace {

jet::Bytes headerPage()
{
    jet::Bytes page(jet::kPageSize);
    jet::store<std::uint32_t>(page, 0, 0x100);
    const std::string_view name = "Standard Jet DB";
    std::transform(
        name.begin(), name.end(), page.begin() + 4, [](char c) { return static_cast<std::byte>(c); });
    page[0x14] = std::byte{1};
    jet::store<std::uint16_t>(page, 0x6E, 1033);
    jet::maskHeader(page);
    return page;
}

jet::Bytes mapPage(std::uint32_t pagesUsed)
{
    jet::Bytes page(jet::kPageSize);
    jet::initDataPage(page, 1);
    jet::Bytes map(69, std::byte{0xFF});
    jet::store<std::uint8_t>(map, 0, 0);
    jet::store<std::uint32_t>(map, 1, 0);
    for (std::uint32_t i = 0; i < pagesUsed; ++i)
        map[5 + i / 8] &= ~static_cast<std::byte>(1u << (i % 8));
    jet::appendRow(page, map, 0);
    jet::appendRow(page, jet::Bytes(69), 0);
    return page;
}

} // namespace

void writeBareFile(const std::u16string& path, std::uint32_t pages)
{
    jet::Bytes bytes = headerPage();
    jet::append(bytes, mapPage(pages));
    for (std::uint32_t i = 2; i < pages; ++i) {
        jet::Bytes page(jet::kPageSize);
        jet::initDataPage(page, 0);
        if (i == 2)
            jet::store<std::uint16_t>(page, 0, 0x0102);
        jet::append(bytes, page);
    }
    writeBytes(path, bytes);
}

jet::Bytes readBytes(const std::u16string& path)
{
    const platform::File file(path, platform::Access::Read);
    jet::Bytes bytes(static_cast<std::size_t>(file.size()));
    file.readAt(0, bytes);
    return bytes;
}

void writeBytes(const std::u16string& path, jet::ByteView bytes)
{
    platform::File file(path, platform::Access::WriteOrCreate);
    file.resize(0);
    file.writeAt(0, bytes);
}

} // namespace vellums::tests

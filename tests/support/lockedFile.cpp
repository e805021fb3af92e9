#include "tests/support/lockedFile.h"

#include "jet/file/header.h"
#include "tests/support/bareFile.h"

namespace vellums::tests {

void lockFile(const std::u16string& path, std::u16string_view password)
{
    jet::Bytes bytes = readBytes(path);
    jet::maskHeader(bytes);
    const auto day = static_cast<std::int32_t>(jet::load<double>(bytes, 0x72));
    for (std::size_t i = 0; i < 20; ++i) {
        const auto half = static_cast<std::uint16_t>(day >> (i % 2 == 0 ? 0 : 16));
        const char16_t unit = i < password.size() ? password[i] : u'\0';
        jet::store<std::uint16_t>(bytes, 0x42 + 2 * i, static_cast<std::uint16_t>(unit ^ half));
    }
    jet::maskHeader(bytes);
    writeBytes(path, bytes);
}

} // namespace vellums::tests

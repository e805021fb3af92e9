#include "tests/jet/fixturesFolder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace vellums::tests {
namespace {

std::string narrowPath(std::string_view name)
{
    const char* const folder = std::getenv("VELLUMS_FIXTURES");
    return folder == nullptr ? std::string() : std::string(folder) + "/" + std::string(name);
}

} // namespace

std::optional<std::u16string> fixturePath(std::string_view name)
{
    const std::string path = narrowPath(name);
    if (path.empty() || !std::ifstream(path, std::ios::binary))
        return std::nullopt;
    return std::u16string(path.begin(), path.end());
}

std::string fixtureBytes(std::string_view name)
{
    std::ifstream in(narrowPath(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

} // namespace vellums::tests

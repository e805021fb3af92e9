// The bytes of a settings file: read, and changed by one key that must then read back.
#include "fuzz/target.h"
#include "platform/files.h"
#include "platform/profile.h"

namespace vellums::fuzz {

std::vector<std::string> seeds()
{
    using namespace std::string_literals;
    return {"[Options]\r\ndbConn=Provider=X; Data Source=a.mdb\r\nfontName=\" Tahoma \"\r\n",
        ";remark\n[ options ]\n = \nkey = 'v'\n[Other]\nfontName=x", "[Options\n[]\n=\n\"\n]",
        "\xFF\xFE[\0O\0p\0t\0i\0o\0n\0s\0]\0\n\0a\0=\0b\0"s, ""};
}

} // namespace vellums::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace vellums;
    const std::u16string path = fuzz::workFile(u"input.ini");
    fuzz::writeWorkFile(path, data, size);
    const std::u16string before = platform::readProfile(path, u"Options", u"dbConn", u"none");
    fuzz::require(before.size() <= 255, "a value is too long");
    fuzz::require(platform::writeProfile(path, u"Options", u"fontName", u" New Font "), "nothing is written");
    fuzz::require(platform::readProfile(path, u"Options", u"fontName", u"") == u" New Font ",
        "a value does not come back");
    fuzz::require(
        platform::readProfile(path, u"Options", u"dbConn", u"none") == before, "another value has changed");
    return 0;
}

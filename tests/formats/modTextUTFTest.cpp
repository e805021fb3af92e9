#include "formats/modTextUTF.h"

#include "tests/support/ansiCodePage.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace vellums::formats {
namespace {

using tests::bytesOf;
using tests::TemporaryFolder;

std::string operator""_b(const char* bytes, std::size_t length)
{
    return {bytes, length};
}

struct ReadCase {
    std::string bytes;
    Encoding asked;
    Encoding found;
    std::u16string text;
};

const ReadCase kReads[] = {
    {"", Encoding::Detect, Encoding::Ansi, u""},
    {"plain", Encoding::Detect, Encoding::Ansi, u"plain"},
    {"\xEF\xBB\xBF\xE4\xB8\xAD", Encoding::Detect, Encoding::Utf8, u"中"},
    {"\xEF\xBB\xBF\xE4\xB8\xAD", Encoding::Utf8, Encoding::Utf8, u"中"},
    {"\xE4\xB8\xAD", Encoding::Utf8, Encoding::Utf8, u"中"},
    {"\xEF\xBB\xBF", Encoding::Detect, Encoding::Utf8, u""},
    {"\xEF\xBB", Encoding::Utf8, Encoding::Utf8, u"\uFFFD"},
    {"\xFF\xFE\x2D\x4E", Encoding::Detect, Encoding::Utf16Le, u"中"},
    {"\xFF\xFE"
     "a\0b\0c"_b,
        Encoding::Detect, Encoding::Utf16Le, u"abc"},
    {"\xFE\xFF\x4E\x2D", Encoding::Detect, Encoding::Utf16Be, u"中"},
    {"\xFE\xFF\0a\0b\x63"_b, Encoding::Detect, Encoding::Utf16Be, u"abc"},
    {"\xFF\xFE", Encoding::Detect, Encoding::Utf32Le, u""}, // missing bytes count as zero
    {"\xFF\xFE\0\0a\0\0\0"_b, Encoding::Detect, Encoding::Utf32Le, u""},
    {"\0\0\xFE\xFF\0\0\0a"_b, Encoding::Detect, Encoding::Utf32Be, u""},
    {"\xFE\xFF\x4E\x2D", Encoding::Utf16Le, Encoding::Utf16Le, u"\uFFFE\u2D4E"},
    {"a", static_cast<Encoding>(6), static_cast<Encoding>(6), u""},
    {"a", static_cast<Encoding>(-2), static_cast<Encoding>(-2), u""},
};

TEST(ReadTextFile, GoesByTheMarkOrByTheCaller)
{
    const TemporaryFolder folder;
    for (const ReadCase& c : kReads) {
        Encoding encoding = c.asked;
        EXPECT_EQ(readTextFile(folder.write(u"a.txt", c.bytes), encoding), c.text) << c.bytes;
        EXPECT_EQ(encoding, c.found) << c.bytes;
    }
    Encoding encoding = Encoding::Detect;
    EXPECT_EQ(readTextFile(folder.file(u"none.txt"), encoding), u"");
    EXPECT_EQ(readTextFile(folder.path(), encoding), u"");
}

TEST(ReadTextFile, TakesAFileWithoutAMarkInTheCodePage)
{
    const tests::AnsiCodePage page(1252);
    if (!page.active())
        GTEST_SKIP() << "code page 1252 is not at hand";
    const TemporaryFolder folder;
    Encoding encoding = Encoding::Detect;
    EXPECT_EQ(readTextFile(folder.write(u"a.txt", "caf\xC3\xA9"), encoding), u"cafÃ©");
    encoding = Encoding::Ansi;
    EXPECT_EQ(readTextFile(folder.write(u"a.txt", "\xEF\xBB\xBFz"), encoding), u"ï»¿z");
    encoding = Encoding::Detect;
    EXPECT_EQ(readTextFile(folder.write(u"中.txt", "a"), encoding), u"") << "the code page has no such name";
}

struct WriteCase {
    std::string before;
    TextWriting how;
    Encoding asked;
    std::u16string text;
    bool written;
    Encoding used;
    std::string after;
};

const TextWriting kAnew{false, Encoding::Ansi, true};
const TextWriting kAnewUnmarked{false, Encoding::Ansi, false};
const TextWriting kAppend{true, Encoding::Utf8, true};

const WriteCase kWrites[] = {
    {"old and long", kAnewUnmarked, Encoding::Ansi, u"new", true, Encoding::Ansi, "new"},
    {"old", kAnew, Encoding::Utf8, u"中", true, Encoding::Utf8, "\xEF\xBB\xBF\xE4\xB8\xAD"},
    {"old", kAnewUnmarked, Encoding::Utf8, u"中", true, Encoding::Utf8, "\xE4\xB8\xAD"},
    {"", kAnew, Encoding::Utf16Le, u"中", true, Encoding::Utf16Le, "\xFF\xFE\x2D\x4E"},
    {"", kAnew, Encoding::Utf16Be, u"中", true, Encoding::Utf16Be, "\xFE\xFF\x4E\x2D"},
    {"old", kAnew, Encoding::Utf8, u"", true, Encoding::Utf8, "\xEF\xBB\xBF"},
    {"old", kAnew, Encoding::Detect, u"x", false, Encoding::Detect, "old"},
    {"old", kAnew, static_cast<Encoding>(6), u"x", false, static_cast<Encoding>(6), "old"},
    {"old", kAnewUnmarked, Encoding::Utf32Le, u"x", false, Encoding::Utf32Le, ""},
    {"", kAppend, Encoding::Detect, u"x", true, Encoding::Utf8, "\xEF\xBB\xBFx"},
    {"\xFE\xFF\0a"_b, kAppend, Encoding::Detect, u"b", true, Encoding::Utf16Be, "\xFE\xFF\0a\0b"_b},
    {"old", kAppend, Encoding::Detect, u"x", true, Encoding::Ansi, "oldx"},
    {"old", kAppend, Encoding::Utf16Le, u"x", true, Encoding::Utf16Le, "oldx\0"_b},
    {"\xFF\xFE\0\0"_b, kAppend, Encoding::Detect, u"x", false, Encoding::Utf32Le, "\xFF\xFE\0\0"_b},
    {"old", kAppend, Encoding::Detect, u"", true, Encoding::Ansi, "old"},
};

TEST(WriteTextFile, WritesMarksOnlyIntoNewFiles)
{
    const TemporaryFolder folder;
    for (const WriteCase& c : kWrites) {
        const std::u16string path = folder.write(u"a.txt", c.before);
        Encoding encoding = c.asked;
        EXPECT_EQ(writeTextFile(path, c.text, encoding, c.how), c.written) << c.after;
        EXPECT_EQ(encoding, c.used) << c.after;
        EXPECT_EQ(bytesOf(path), c.after);
    }
    Encoding encoding = Encoding::Utf8;
    EXPECT_FALSE(writeTextFile(folder.file(u"none/a.txt"), u"x", encoding, kAnew));
    EXPECT_TRUE(writeTextFile(folder.file(u"new.txt"), u"x", encoding, kAppend));
    EXPECT_EQ(bytesOf(folder.file(u"new.txt")), "\xEF\xBB\xBFx");
}

} // namespace
} // namespace vellums::formats

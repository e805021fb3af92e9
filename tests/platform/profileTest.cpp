#include "platform/profile.h"

#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace vellums::platform {
namespace {

using tests::bytesOf;
using tests::TemporaryFolder;

struct ValueCase {
    const char* line;
    const char16_t* value;
};

const ValueCase kValues[] = {
    {"key=plain", u"plain"},
    {"  KEY \t=\t a b\t ", u"a b"},
    {"key=", u""},
    {"key=\" kept \"", u" kept "},
    {"key=' kept '", u" kept "},
    {"key=\"a\"b\"", u"a\"b"},
    {"key=\"open", u"\"open"},
    {"key=a=b", u"a=b"},
    {"key=a;b", u"a;b"},
    {";key=x", u"default"},
    {"other=x", u"default"},
    {"key=1\r\nkey=2", u"1"},
};

TEST(Profile, ReadsValuesByTheRulesOfProfileFiles)
{
    const TemporaryFolder folder;
    for (const ValueCase& c : kValues) {
        const std::u16string path =
            folder.write(u"a.ini", "[other]\r\nkey=wrong\r\n[Options]\r\n" + std::string(c.line) + "\r\n");
        EXPECT_EQ(readProfile(path, u"options", u"key", u"default"), c.value) << c.line;
    }
}

TEST(Profile, TakesTheFirstSectionOfAName)
{
    const TemporaryFolder folder;
    const std::u16string path = folder.write(u"a.ini", "[A]\nx=1\n[B]\ny=2\n[A]\nz=3\n");
    EXPECT_EQ(readProfile(path, u"A", u"x", u""), u"1");
    EXPECT_EQ(readProfile(path, u"B", u"y", u""), u"2");
    EXPECT_EQ(readProfile(path, u"A", u"z", u"none"), u"none");
    EXPECT_EQ(readProfile(folder.file(u"none.ini"), u"A", u"x", u"none"), u"none");
}

TEST(Profile, WrittenValuesReadBackUnchanged)
{
    const TemporaryFolder folder;
    const std::u16string path = folder.file(u"a.ini");
    for (const char16_t* value : {u"plain", u"", u" blanks ", u"\ttab", u"\"quoted\"", u"'quoted'", u"\"",
             u"a\"b", u"a = b; c", u"[x]"}) {
        EXPECT_TRUE(writeProfile(path, u"Options", u"k", value));
        EXPECT_EQ(readProfile(path, u"Options", u"k", u"?"), value);
    }
}

TEST(Profile, WritingKeepsTheRestOfTheFile)
{
    const TemporaryFolder folder;
    const std::u16string path = folder.write(u"a.ini", "[Options]\r\nKey=1\r\n; remark\r\n[Last]\r\nz=9\r\n");
    EXPECT_TRUE(writeProfile(path, u"options", u"key", u"2"));
    EXPECT_TRUE(writeProfile(path, u"OPTIONS", u"new", u"3"));
    EXPECT_TRUE(writeProfile(path, u"Fresh", u"a", u"4"));
    EXPECT_EQ(
        bytesOf(path), "[Options]\r\nKey=2\r\n; remark\r\nnew=3\r\n[Last]\r\nz=9\r\n[Fresh]\r\na=4\r\n");
    EXPECT_TRUE(deleteProfile(path, u"Options", u"KEY"));
    EXPECT_EQ(readProfile(path, u"Options", u"Key", u"gone"), u"gone");
    EXPECT_EQ(readProfile(path, u"Options", u"new", u""), u"3");
}

TEST(Profile, SaysWhenItCannotWrite)
{
    const TemporaryFolder folder;
    const std::u16string path = folder.write(u"a.ini", "[Options]\r\na=1\r\n");
    folder.setReadOnly(u"a.ini", true);
    EXPECT_FALSE(writeProfile(path, u"Options", u"a", u"2"));
    EXPECT_EQ(readProfile(path, u"Options", u"a", u""), u"1");
    EXPECT_FALSE(writeProfile(folder.file(u"none/a.ini"), u"Options", u"a", u"2"));
}

TEST(Profile, ReadsAndWritesWideFiles)
{
    const TemporaryFolder folder;
    const std::u16string text = u"\uFEFF[Options]\r\na=\u4E2D\u0416\r\n";
    std::string bytes;
    for (const char16_t c : text) {
        bytes += static_cast<char>(c & 0xFF);
        bytes += static_cast<char>(c >> 8);
    }
    const std::u16string path = folder.write(u"a.ini", bytes);
    EXPECT_EQ(readProfile(path, u"Options", u"a", u""), u"\u4E2D\u0416");
    EXPECT_TRUE(writeProfile(path, u"Options", u"b", u"\u05D0"));
    EXPECT_EQ(readProfile(path, u"Options", u"b", u""), u"\u05D0");
    EXPECT_EQ(readProfile(path, u"Options", u"a", u""), u"\u4E2D\u0416");
}

} // namespace
} // namespace vellums::platform

#include "platform/clipboard.h"
#include "platform/files.h"
#include "platform/process.h"
#include "platform/programPath.h"
#include "platform/registry.h"
#include "platform/shell.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace vellums::platform {
namespace {

TEST(Surroundings, KnowTheRunningProgram)
{
    EXPECT_TRUE(fileExists(programFile()));
    EXPECT_TRUE(folderExists(programFolder()));
    EXPECT_EQ(programFile().find(programFolder() + std::u16string(1, separator()) + programName()), 0u);
    EXPECT_EQ(programName(), u"platform_tests");
}

TEST(Surroundings, GiveTheClipboardsTextUpToItsFirstNull)
{
    const std::u16string text(u"中a\0b", 4);
    if (!setClipboardText(text))
        GTEST_SKIP() << "there is no clipboard";
    EXPECT_TRUE(clipboardHasText());
    EXPECT_EQ(clipboardText().text, u"中a");
}

TEST(Surroundings, OnlyOneInstanceIsTheFirst)
{
    const tests::TemporaryFolder folder;
    const std::u16string program = folder.write(u"program.exe", "x");
    const std::u16string other = folder.write(u"other.exe", "x");
    {
        const SingleInstance first(program);
        const SingleInstance second(program);
        EXPECT_TRUE(first.first());
        EXPECT_FALSE(second.first());
        EXPECT_TRUE(SingleInstance(other).first());
    }
    EXPECT_TRUE(SingleInstance(program).first());
}

TEST(Surroundings, MissingRegistryKeysAreMissing)
{
    EXPECT_EQ(readRegistry(RegistryRoot::LocalMachine, u"SOFTWARE\\No such key at all", u"").code, 2);
    EXPECT_TRUE(folderExists(specialFolder(SpecialFolder::Documents)));
}

} // namespace
} // namespace vellums::platform

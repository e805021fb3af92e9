#include "platform/files.h"

#include "platform/clock.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <thread>

namespace vellums::platform {
namespace {

using tests::bytesOf;
using tests::TemporaryFolder;

std::span<const std::byte> bytes(std::string_view text)
{
    return std::as_bytes(std::span(text));
}

std::optional<FileFault> faultOfOpening(const std::u16string& path, Access access)
{
    try {
        const File file(path, access);
        return std::nullopt;
    } catch (const FileError& e) {
        return e.fault;
    }
}

TEST(File, LetsReadersShareAndAWriterBeAlone)
{
    const TemporaryFolder folder;
    const std::u16string path = folder.write(u"a.bin", "abc");
    {
        const File reader(path, Access::Read);
        EXPECT_EQ(faultOfOpening(path, Access::Read), std::nullopt);
        EXPECT_EQ(faultOfOpening(path, Access::Write), FileFault::InUse);
        std::thread([&] { EXPECT_EQ(faultOfOpening(path, Access::WriteOrCreate), FileFault::InUse); }).join();
    }
    {
        const File writer(path, Access::Write);
        EXPECT_EQ(faultOfOpening(path, Access::Read), FileFault::InUse);
        EXPECT_EQ(faultOfOpening(path, Access::Write), FileFault::InUse);
    }
    EXPECT_EQ(faultOfOpening(path, Access::Write), std::nullopt);
}

TEST(File, KeepsItsLockWhenAnotherHandleOfTheFileCloses)
{
    const TemporaryFolder folder;
    const std::u16string path = folder.write(u"a.bin", "abc");
    const File first(path, Access::Read);
    {
        const File second(path, Access::Read);
    }
    EXPECT_EQ(faultOfOpening(path, Access::Write), FileFault::InUse);
}

TEST(File, SaysWhyItCannotBeOpened)
{
    const TemporaryFolder folder;
    const std::u16string there = folder.write(u"there.bin", "abc");
    const std::u16string marked = folder.write(u"marked.bin", "abc");
    folder.setReadOnly(u"marked.bin", true);
    EXPECT_EQ(faultOfOpening(folder.file(u"none.bin"), Access::Read), FileFault::NotFound);
    EXPECT_EQ(faultOfOpening(folder.file(u"none/none.bin"), Access::Read), FileFault::FolderNotFound);
    EXPECT_EQ(
        faultOfOpening(folder.file(u"none/none.bin"), Access::WriteOrCreate), FileFault::FolderNotFound);
    EXPECT_EQ(faultOfOpening(there, Access::Create), FileFault::Exists);
    EXPECT_EQ(faultOfOpening(folder.path(), Access::Read), FileFault::Denied);
    EXPECT_EQ(faultOfOpening(marked, Access::Write), FileFault::ReadOnly);
    EXPECT_EQ(faultOfOpening(marked, Access::Read), std::nullopt);
    EXPECT_TRUE(clearAttributes(marked));
    EXPECT_EQ(faultOfOpening(marked, Access::Write), std::nullopt);
    EXPECT_EQ(bytesOf(there), "abc");
}

TEST(File, ReadsWritesGrowsAndShrinks)
{
    const TemporaryFolder folder;
    const std::u16string path = folder.file(u"a.bin");
    File file(path, Access::Create);
    file.writeAt(2, bytes("cdef"));
    file.writeAt(0, bytes("ab"));
    file.resize(5);
    file.sync();
    std::string read(10, '?');
    EXPECT_EQ(file.readAt(1, std::as_writable_bytes(std::span(read))), 4u);
    EXPECT_EQ(read.substr(0, 4), "bcde");
    EXPECT_EQ(file.readAt(9, std::as_writable_bytes(std::span(read))), 0u);
    EXPECT_EQ(file.size(), 5u);
}

TEST(File, ShowsLaterWritesInItsView)
{
    const TemporaryFolder folder;
    File file(folder.file(u"a.bin"), Access::Create);
    EXPECT_TRUE(file.view().bytes().empty());
    file.writeAt(0, bytes("abc"));
    const File::View view = file.view();
    file.writeAt(1, bytes("X"));
    ASSERT_EQ(view.bytes().size(), 3u);
    EXPECT_EQ(view.bytes()[1], std::byte{'X'});
}

TEST(Files, ReplaceMovesOverTheTarget)
{
    const TemporaryFolder folder;
    const std::u16string from = folder.write(u"new.bin", "new");
    const std::u16string to = folder.write(u"old.bin", "old and longer");
    replaceFile(from, to);
    EXPECT_FALSE(fileExists(from));
    EXPECT_EQ(bytesOf(to), "new");
    EXPECT_THROW(replaceFile(from, to), FileError);
    EXPECT_EQ(bytesOf(to), "new");
}

TEST(Files, TellFilesFromFolders)
{
    const TemporaryFolder folder;
    const std::u16string sub = folder.makeFolder(u"sub.mdb");
    const std::u16string file = folder.write(u"a b 笔记.txt", "12345");
    EXPECT_TRUE(fileExists(file) && !folderExists(file));
    EXPECT_TRUE(folderExists(sub) && !fileExists(sub));
    EXPECT_EQ(fileSize(file), 5u);
    EXPECT_EQ(fileSize(sub), std::nullopt);
    ASSERT_TRUE(fileModified(file));
    EXPECT_NEAR(*fileModified(file), oleNow(), 10.0 / 86400);
    EXPECT_TRUE(removeFile(file));
    EXPECT_TRUE(removeFile(file));
    EXPECT_FALSE(fileModified(file));
}

TEST(Files, DatabaseNamesGoByTheLongName)
{
    const TemporaryFolder folder;
    for (const char16_t* name :
        {u"a.mdb", u"B.ACCDB", u"b.xdb", u"c.mdbx", u"db", u"d.txt", u".db", u"e.x.db"})
        folder.write(name, "");
    folder.makeFolder(u"folder.mdb");
    std::vector<std::u16string> names = databaseNames(folder.path());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::u16string>{u".db", u"B.ACCDB", u"a.mdb", u"b.xdb", u"e.x.db"}));
    EXPECT_TRUE(databaseNames(folder.file(u"none")).empty());
}

TEST(Files, PathsMayBeLong)
{
    const TemporaryFolder folder;
    std::u16string name;
    for (int i = 0; i < 6; ++i)
        name += std::u16string(60, u'x') + u"/";
    folder.makeFolder(name);
    const std::u16string path = folder.file(name + u"a.txt");
    {
        File(path, Access::Create).writeAt(0, bytes("abc"));
    }
    EXPECT_EQ(fileSize(path), 3u);
}

} // namespace
} // namespace vellums::platform

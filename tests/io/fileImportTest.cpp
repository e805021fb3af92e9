#include "io/fileImport.h"

#include "formats/charCleaner.h"
#include "platform/files.h"
#include "tests/support/failingProvider.h"
#include "tests/support/memoryControls.h"
#include "tests/support/testNotebook.h"
#include "text/unicode.h"

#include <gmock/gmock.h>

#ifndef _WIN32
#include <unistd.h>
#endif

namespace vellums {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

struct KindCase {
    const char16_t* path;
    FileKind kind;
};

const KindCase kKinds[] = {
    {u"a.txt", FileKind::Text},
    {u"A.B.HTML", FileKind::Text},
    {u"a.h", FileKind::Text},
    {u"a.docx", FileKind::Word},
    {u"a.XLSM", FileKind::Excel},
    {u"a.exe", FileKind::Other},
    {u"a.tx", FileKind::Other},
    {u"a.", FileKind::Other},
    {u"a.txt,csv", FileKind::Other},
    {u"README", FileKind::Other},
    {u".txt", FileKind::Other},
    {u"..txt", FileKind::Text},
};

TEST(FileKind, GoesByTheExtensionOfTheName)
{
    const std::u16string folder = std::u16string(u"x.txt") + platform::separator();
    for (const KindCase& c : kKinds) {
        EXPECT_EQ(fileKind(c.path), c.kind) << testing::PrintToString(std::u16string(c.path));
        EXPECT_EQ(fileKind(folder + c.path), c.kind) << testing::PrintToString(std::u16string(c.path));
    }
}

TEST(ImportedText, HasNoControlCharactersAndNoRunsOfEmptyLines)
{
    EXPECT_EQ(importedText(u"  a\fb\tc\r\n\r\n\r\n\r\n\r\nd  "), u"a b\tc\r\n\r\nd");
    EXPECT_EQ(importedText(u"\r\n\r\n\r\n"), u"\r\n\r\n");
    EXPECT_EQ(importedText(u"a\n\n\nb"), u"a\n\n\nb");
}

class Import : public testing::Test {
protected:
    std::u16string write(const char16_t* name, std::string_view bytes)
    {
        return notes_.folder().write(name, bytes);
    }
    std::vector<std::u16string> titles()
    {
        return notes_.rows(u"SELECT VLHEAD, VLTEXT FROM [Notes] ORDER BY ID");
    }

    ImportEvents events()
    {
        ImportEvents events;
        events.added = [this](const AddedRecord& record, const std::u16string& path) {
            added_.push_back(record.title + u"|" + path);
        };
        events.stored = [this] { stored_ = added_.size(); };
        events.logged = [this](const std::u16string& message) { logged_.push_back(message); };
        return events;
    }
    std::string log() { return tests::bytesOf(notes_->logFile); }

    tests::TestNotebook notes_;
    tests::MemoryDialogs dialogs_;
    std::vector<std::u16string> added_;
    std::vector<std::u16string> logged_;
    std::size_t stored_ = 0;
};

TEST_F(Import, MakesARecordOfATextFile)
{
    const std::u16string path = write(u"it's é.TXT", "\xEF\xBB\xBF  caf\xC3\xA9's\n\n\n\nend ");
    FileImport import(*notes_, nullptr, events());
    EXPECT_TRUE(import.importFile(path));
    const std::u16string cafe = formats::cleanCharacters(u"café's"); // depends on the code page
    EXPECT_THAT(titles(), ElementsAre(u"it's é|" + cafe + u"\r\n\r\nend"));
    EXPECT_THAT(added_, ElementsAre(u"it's é|" + path));
    EXPECT_EQ(stored_, 1u);
    EXPECT_THAT(notes_.rows(u"SELECT VLLINK FROM [Notes]"), ElementsAre(path));
    EXPECT_THAT(notes_.shown(), IsEmpty());
    EXPECT_EQ(log(), "");
}

TEST_F(Import, PassesOverWhatItDoesNotKnowAndLogsWhatItCannotRead)
{
    const std::u16string missing = notes_.folder().file(u"missing.txt");
    FileImport import(*notes_, nullptr, events());
    EXPECT_TRUE(import.importFiles({write(u"README", "x"), write(u".profile", "x"), write(u"a.exe", "x"),
        missing, write(u"empty.txt", "")}));
    EXPECT_THAT(titles(), ElementsAre(u"empty|"));
    EXPECT_THAT(logged_, ElementsAre(u"File can't not be retrieved: " + missing));
    const std::string line = log();
    EXPECT_EQ(line[19], '\t');
    EXPECT_EQ(line.find("File can't not be retrieved: "), 20u);
    EXPECT_EQ(line.substr(line.size() - 2), "\r\n");
}

TEST_F(Import, AsksAboutLargeFilesOrLogsThem)
{
    const std::u16string fits = write(u"fits.txt", std::string(524288, 'x'));
    const std::u16string large = write(u"large.txt", std::string(524288 + 2621440 + 1024 * 1234, 'x'));
    FileImport silent(*notes_, nullptr, events());
    EXPECT_TRUE(silent.importFiles({fits, large}));
    EXPECT_THAT(added_, SizeIs(1));
    EXPECT_THAT(logged_, ElementsAre(u"Over Sized:\t" + large));

    FileImport asking(*notes_, &dialogs_, events());
    dialogs_.answerNext(Answer::No);
    EXPECT_TRUE(asking.importFiles({fits, large}));
    EXPECT_THAT(dialogs_.asked(),
        ElementsAre(u"Are you sure you want to load this large file?\r\n\r\n\r\n" + large +
            u" (3,794.00KB) (Yes/No, information)"));
    EXPECT_THAT(added_, SizeIs(2));
    EXPECT_THAT(logged_, SizeIs(2));
    dialogs_.answerNext(Answer::Yes);
    notes_->chinese = true;
    EXPECT_TRUE(asking.importFile(large));
    EXPECT_TRUE(dialogs_.asked().back().starts_with(u"文件过大，请确认是否继续导入?\r\n"));
    EXPECT_THAT(added_, SizeIs(3));
}

TEST_F(Import, OfAFolderEndsWithTheRemovalOfDuplicates)
{
    notes_.folder().write(u"in/a.txt", "same");
    notes_.folder().write(u"in/deep/b.txt", "same");
    notes_.folder().write(u"in/deep/c.log", "other");
    notes_.folder().write(u"in/deep/d.bin", "x");
    FileImport import(*notes_, &dialogs_, events());
    EXPECT_TRUE(import.importFolder(notes_.folder().file(u"in")));
    EXPECT_THAT(added_, SizeIs(3));
    EXPECT_EQ(stored_, 3u);
    EXPECT_THAT(titles(), SizeIs(2));
    EXPECT_THAT(notes_.shown(), ElementsAre(u"1 duplicate removed from total 3 records (33.33%)."));
    EXPECT_THAT(dialogs_.asked(), IsEmpty());
}

TEST_F(Import, LogsWhatTheTableRefusesAndTakesTheRest)
{
    const std::string deep(120, 'd'); // the path is longer than a link may be
    const std::u16string path = notes_.folder().write(text::fromUtf8(deep + "/" + deep + "/b.txt"), "1");
    notes_->logFile = notes_.folder().file(u"Other.log"); // of a program that was given another name
    FileImport import(*notes_, nullptr, events());
    EXPECT_TRUE(import.importFiles({write(u"a.txt", "1"), path, write(u"c.txt", "2"),
        write(u"wide.txt", std::string("\xFF\xFE\0\0x\0\0\0", 8))}));
    EXPECT_THAT(titles(), ElementsAre(u"a|1", u"c|2"));
    EXPECT_EQ(stored_, 2u);
    ASSERT_THAT(logged_, SizeIs(2));
    EXPECT_TRUE(logged_[0].ends_with(u"): " + path));
    EXPECT_TRUE(logged_[1].starts_with(u"UTF-32"));
    EXPECT_THAT(notes_.shown(), IsEmpty());
    EXPECT_TRUE(import.importFile(write(u"d.txt", "3")));
    import.tellCount();
    EXPECT_EQ(notes_.outcome(), u"3 records imported, 2 files not taken (see Other.log).");
}

TEST_F(Import, StopsAtAnErrorAndKeepsWhatWasDone)
{
    tests::FailingProvider provider;
    notes_->provider = &provider;
    provider.refuses = [](std::u16string_view sql, int) { return sql.find(u"'c'") != sql.npos; };
    FileImport import(*notes_, nullptr, events());
    EXPECT_FALSE(import.importFiles({write(u"a.txt", "1"), write(u"c.txt", "2"), write(u"d.txt", "3")}));
    EXPECT_THAT(titles(), ElementsAre(u"a|1"));
    EXPECT_EQ(stored_, 1u);
    EXPECT_TRUE(notes_.outcome().starts_with(u"importFile - " + notes_.folder().file(u"c.txt") + u" > "));
    EXPECT_THAT(logged_, IsEmpty());
}

TEST_F(Import, StopsWhenAsked)
{
    ImportEvents told = events();
    told.stop = [this] { return !added_.empty(); };
    FileImport import(*notes_, nullptr, told);
    EXPECT_TRUE(import.importFiles({write(u"a.txt", "1"), write(u"b.txt", "2")}));
    EXPECT_THAT(titles(), ElementsAre(u"a|1"));
    added_.clear();
    notes_.folder().write(u"in/c.txt", "1");
    EXPECT_TRUE(FileImport(*notes_, nullptr, told).importFolder(notes_.folder().file(u"in")));
    EXPECT_THAT(titles(), ElementsAre(u"a|1", u"c|1")) << "no duplicates are removed after a Stop";
}

// Folders that are linked to one another hold each file once; a folder that cannot be listed is told.
TEST_F(Import, WalksEachFolderOnceAndTellsOfTheRest)
{
    write(u"a/one.txt", "one");
    write(u"b/two.txt", "two");
    const std::u16string gone = notes_.folder().file(u"gone");
#ifndef _WIN32
    ASSERT_EQ(symlink(text::toUtf8(notes_.folder().file(u"b")).c_str(),
                  text::toUtf8(notes_.folder().file(u"a/b")).c_str()),
        0);
    ASSERT_EQ(symlink(text::toUtf8(notes_.folder().file(u"a")).c_str(),
                  text::toUtf8(notes_.folder().file(u"b/a")).c_str()),
        0);
#endif
    FileImport import(*notes_, nullptr, events());
    EXPECT_TRUE(import.importFolder(notes_.folder().path()));
    EXPECT_EQ(titles().size(), 2u);
    logged_.clear();
    import.importFolder(gone);
    ASSERT_EQ(logged_.size(), 1u);
    EXPECT_TRUE(logged_[0].starts_with(u"Folder cannot be listed: " + gone));
}

} // namespace
} // namespace vellums

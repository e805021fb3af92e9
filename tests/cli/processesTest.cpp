// Several processes on one file, and processes that are killed at any moment.
#include "platform/files.h"
#include "tests/support/temporaryFolder.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <map>
#include <random>
#include <sstream>

namespace vellums::cli {
namespace {

class Processes : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override
    {
        if (platform::separator() != u'/')
            GTEST_SKIP() << "driven through a shell, which is not at hand here";
    }

    // Runs a script in the test's folder, $cli and $db being the program and the database.
    int shell(const std::string& script)
    {
        const std::string head = "cd '" + text::toUtf8(folder_.path()) +
            "' && cli='" VELLUMS_BINARY_DIR "/vellums-cli' && db=notes." + GetParam() + "\n";
        folder_.write(u"script", head + script);
        return std::system(("sh '" + text::toUtf8(folder_.file(u"script")) + "'").c_str());
    }
    std::string output(std::u16string_view name) { return tests::bytesOf(folder_.file(name)); }
    void expectSound() { EXPECT_EQ(shell("$cli check $db > faults 2>&1"), 0) << output(u"faults"); }
    // The complete lines of an output, but for a header.
    static std::vector<std::string> lines(const std::string& text, std::size_t header = 0)
    {
        std::vector<std::string> all;
        std::size_t start = 0;
        for (std::size_t end = 0; (end = text.find('\n', start)) != text.npos; start = end + 1)
            if (header == 0 || header-- == 0)
                all.push_back(text.substr(start, end - start));
        return all;
    }
    std::map<std::string, std::string> stored(const std::string& column)
    {
        EXPECT_EQ(shell("$cli sql $db 'SELECT ID, " + column + " FROM [Notes]' > rows"), 0);
        std::map<std::string, std::string> all;
        for (const std::string& line : lines(output(u"rows"), 1))
            all[line.substr(0, line.find('\t'))] = line.substr(line.find('\t') + 1);
        return all;
    }

    tests::TemporaryFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(
    Formats, Processes, testing::Values("mdb", "accdb"), [](const auto& test) { return test.param; });

// A process that waited too long for the others says so and has added nothing; it tries again.
TEST_P(Processes, ThatAddAtTheSameTimeLoseNothing)
{
    constexpr int kWriters = 4;
    constexpr int kEach = 50;
    ASSERT_EQ(shell("$cli create $db --table Notes\n"
                    "for p in 1 2 3 4; do\n"
                    "  (for i in $(seq 50); do\n"
                    "    for attempt in 1 2 3 4 5; do\n"
                    "      id=$(echo \"text $p $i\" | $cli add $db 2> error$p) || continue\n"
                    "      echo \"$id text $p $i\" >> added$p\n"
                    "      break\n"
                    "    done\n"
                    "  done) &\n"
                    "done\n"
                    "wait\n"
                    "cat added* > added\n"),
        0);
    EXPECT_EQ(output(u"errors"), "");
    std::map<std::string, std::string> added;
    for (const std::string& line : lines(output(u"added")))
        EXPECT_TRUE(added.emplace(line.substr(0, line.find(' ')), line.substr(line.find(' ') + 1)).second)
            << "given out twice: " << line;
    EXPECT_EQ(added.size(), static_cast<std::size_t>(kWriters * kEach));
    EXPECT_EQ(stored("VLTEXT"), added);
    expectSound();
}

TEST_P(Processes, ThatAreKilledWhileTheyImportLeaveWhatTheyReported)
{
    constexpr int kFiles = 250;
    constexpr int kKills = 15;
    std::mt19937 random(20240305);
    std::map<std::string, std::string> texts;
    for (int i = 0; i < kFiles; ++i) {
        const std::string name = "in/" + std::to_string(i) + ".txt";
        std::string text = "text " + std::to_string(i) + " ";
        text.append(i % 10 == 0 ? 20000 : random() % 900, static_cast<char>('a' + i % 26));
        folder_.write(text::fromUtf8(name), text);
        texts[text::toUtf8(folder_.file(text::fromUtf8(name)))] = text;
    }
    const auto import = [&](const std::string& prefix) {
        const auto begin = std::chrono::steady_clock::now();
        shell("rm -f $db $db-journal output\n$cli create $db --table Notes && " + prefix +
            " $cli import $db in > output 2> errors");
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    const double wholeSeconds = import("");
    ASSERT_EQ(lines(output(u"output")).size(), texts.size()) << output(u"errors");
    ASSERT_EQ(stored("VLTEXT").size(), texts.size());

    std::size_t killedEarly = 0;
    for (int i = 0; i < kKills; ++i) {
        std::ostringstream seconds;
        seconds << std::fixed << std::uniform_real_distribution<>(0.005, wholeSeconds)(random);
        SCOPED_TRACE("killed after " + seconds.str());
        import("timeout -s KILL " + seconds.str());
        expectSound();
        const auto stays = stored("VLTEXT");
        const auto links = stored("VLLINK");
        const auto reported = lines(output(u"output"));
        killedEarly += reported.size() < texts.size() ? 1 : 0;
        for (const std::string& line : reported) {
            const std::string id = line.substr(0, line.find('\t'));
            const std::string path = line.substr(line.find('\t') + 1);
            ASSERT_TRUE(stays.contains(id)) << line << " is lost";
            EXPECT_EQ(stays.at(id), texts.at(path));
            EXPECT_EQ(links.at(id), path);
        }
        for (const auto& [id, link] : links)
            EXPECT_EQ(stays.at(id), texts.at(link)) << "half of a record stays";
    }
    EXPECT_GT(killedEarly, 0u) << "no process was killed in its work";
}

} // namespace
} // namespace vellums::cli

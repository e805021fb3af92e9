// The disk stops at every operation of acts on many records, each record a batch of its own.
#include "maint/delDupRec.h"
#include "store/embedded/embeddedProvider.h"
#include "store/records/batches.h"
#include "store/records/records.h"
#include "tests/support/crashingDisk.h"
#include "tests/support/testNotebook.h"
#include "text/decimal.h"
#include "text/unicode.h"

#include <gmock/gmock.h>

#include <set>
#include <utility>

namespace vellums {
namespace {

using Ids = std::vector<std::int32_t>;
using Texts = std::vector<std::u16string>;

struct Act {
    const char* name;
    std::function<void(const Notebook&, const Ids&, const BulkUser&)> carryOut;
    const char16_t* undone; // where a record is found while it is not yet changed
    bool keepsAll;          // no text may be missing from both tables
    bool copies = false;
};

const Act kActs[] = {
    {"delete", [](const Notebook& n, const Ids& ids, const BulkUser& u) { (void)delRecords(n, ids, u); },
        u"[Notes]", false},
    {"copy", [](const Notebook& n, const Ids& ids, const BulkUser& u) { copyRecords(n, u"Other", ids, u); },
        u"", true, true},
    {"move", [](const Notebook& n, const Ids& ids, const BulkUser& u) { moveRecords(n, u"Other", ids, u); },
        u"[Notes]", true, true},
    {"stick", [](const Notebook& n, const Ids& ids, const BulkUser& u) { setStickyRecs(n, ids, u); },
        u"[Notes] WHERE VLTYPE=''", true},
    {"remove duplicates", [](const Notebook& n, const Ids&, const BulkUser& u) { delDupRec(n, u); },
        u"[Notes]", true},
};

// Four records with one digest each, or, for the last act, five with the same.
class Sample {
public:
    explicit Sample(const Act& act)
        : act_(act)
    {
        notes_->provider = &provider_;
        notes_.run(u"SELECT * INTO [Other] FROM [Notes]");
        const bool alike = act.name == std::string("remove duplicates");
        for (int i = 0; i < 4 + alike; ++i) {
            const std::u16string body = alike ? u"alike" : u"body " + text::decimal(i);
            EXPECT_TRUE(addRecord(*notes_, {body, u"title", u""}));
        }
        notes_.run(u"UPDATE [Notes] SET VLDATE='2001-2-3'");
        for (const std::u16string& id : notes_.rows(u"SELECT ID FROM [Notes] ORDER BY ID"))
            ids_.push_back(std::stoi(text::toUtf8(id)));
        if (alike)
            ids_.erase(ids_.begin());
        rows_ = rows(u"[Notes]");
    }

    // Whether the act came to its end. What it reported as lasting is kept.
    bool carryOut(int operations)
    {
        BulkUser user;
        user.safetyCopy = false;
        user.lasting = [this](std::size_t done) {
            isSecondPart_ = isSecondPart_ || (!lasting_.empty() && done <= lasting_.back());
            lasting_.push_back(done);
        };
        const auto lastsMs = std::exchange(Batches::lastsMs, 0);
        tests::CrashingDisk disk(notes_.file());
        disk.stopAfter(operations);
        try {
            act_.carryOut(*notes_, ids_, user);
        } catch (const tests::DiskStopped&) { // where the engine could not make a report of it
        }
        Batches::lastsMs = lastsMs;
        return !disk.struck;
    }

    // After the file has been opened again: no record is half, none is lost, and what was reported is there.
    void expectWhole(bool finished)
    {
        std::set<std::u16string> seen;
        for (const char16_t* const table : {u"[Notes]", u"[Other]"})
            for (const std::u16string& row : rows(table)) {
                EXPECT_TRUE(rows_.contains(row)) << testing::PrintToString(row);
                seen.insert(row);
            }
        EXPECT_TRUE(!act_.keepsAll || seen == rows_) << testing::PrintToString(seen);
        EXPECT_EQ(notes_.rows(u"SELECT ID FROM [Other] WHERE VLDATE < #2020-1-1#"), Texts());
        EXPECT_EQ(notes_.rows(u"SELECT ID FROM [Notes] WHERE VLTYPE > '' AND VLTYPE < '2002'"), Texts());

        const Texts left =
            act_.undone[0] == 0 ? Texts() : notes_.rows(u"SELECT ID FROM " + std::u16string(act_.undone));
        const std::size_t copied = notes_.rows(u"SELECT ID FROM [Other]").size();
        const std::size_t done = lasting_.empty() ? 0 : lasting_.back();
        EXPECT_TRUE(!act_.copies || copied >= (isSecondPart_ ? ids_.size() : done)) << copied;
        for (std::size_t i = 0; i < done && (!act_.copies || isSecondPart_); ++i)
            EXPECT_THAT(left, testing::Not(testing::Contains(text::decimal(ids_[i]))));
        EXPECT_TRUE(!finished || done == ids_.size()) << done;
    }

private:
    std::set<std::u16string> rows(const std::u16string& table)
    {
        const Texts all = notes_.rows(u"SELECT VLHEAD, VLTEXT, VLLINK, VLMD5 FROM " + table);
        return {all.begin(), all.end()};
    }

    const Act& act_;
    EmbeddedProvider provider_;
    tests::TestNotebook notes_;
    Ids ids_;
    std::set<std::u16string> rows_; // at the beginning
    std::vector<std::size_t> lasting_;
    bool isSecondPart_ = false; // the copies are done, the deletions have begun
};

TEST(CrashedActs, AreWholeForEachRecordWhereverTheDiskStops)
{
    for (const Act& act : kActs) {
        bool finished = false;
        int operations = 0;
        for (; !finished; ++operations) {
            SCOPED_TRACE(std::string(act.name) + " until operation " + std::to_string(operations));
            Sample sample(act);
            finished = sample.carryOut(operations);
            sample.expectWhole(finished);
            ASSERT_LT(operations, 500);
        }
        EXPECT_GT(operations, 20) << act.name << " was not stopped where it matters";
    }
}

} // namespace
} // namespace vellums

#include "jet/index/bTree.h"

#include "jet/catalogue/blankDatabase.h"
#include "jet/file/dataPage.h"
#include "jet/file/maps/freePages.h"
#include "jet/file/maps/usageMap.h"
#include "jet/index/indexPage.h"
#include "jet/index/key.h"
#include "tests/support/sanitized.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>
#include <random>
#include <set>

namespace vellums::jet {
namespace {

constexpr PageNo kOwner = 2; // any table will do

using Model = std::set<std::pair<Bytes, RowRef>>;

// A tree in a file of its own. Nothing is committed.
class Tree {
public:
    Tree()
    {
        createDatabase(folder_.file(u"tree.mdb"), FileFormat::Jet4, 45000);
        file_.emplace(folder_.file(u"tree.mdb"), OpenMode::Write);
        free_.emplace(*file_);
        const PageNo maps = free_->allocate();
        initDataPage(file_->writeNew(maps), 0);
        place_ = {free_->allocate(), {maps, appendRow(file_->write(maps), Bytes(69), 0)}, kOwner};
        UsageMap(*file_, place_.usageMap).add(place_.root, *free_);
        BTree::initRoot(file_->writeNew(place_.root), kOwner);
    }
    BTree tree() { return {*file_, place_}; }
    PageFile& file() { return *file_; }
    FreePages& free() { return *free_; }
    const TreePlace& place() const { return place_; }

    // The tree holds exactly the model, and no rule is broken.
    void expect(const Model& model)
    {
        const BTree::Report report = tree().inspect();
        EXPECT_TRUE(report.faults.empty());
        for (const std::u16string& fault : report.faults)
            ADD_FAILURE() << std::string(fault.begin(), fault.end());
        ASSERT_EQ(report.entries.size(), model.size());
        auto entry = report.entries.begin();
        for (const auto& [key, row] : model) {
            EXPECT_TRUE(entry->key == key && entry->row == row);
            ++entry;
        }
        for (const PageNo page : report.pages)
            EXPECT_FALSE(free_->isFree(page));
    }

private:
    tests::TemporaryFolder folder_;
    std::optional<PageFile> file_;
    std::optional<FreePages> free_;
    TreePlace place_;
};

Bytes longKey(std::int32_t number, bool ascending = true)
{
    Bytes stored;
    append<std::int32_t>(stored, number);
    Bytes key;
    appendKeyPart(key, {ColumnType::Long, ascending, {}, true}, KeyValue{stored, {}, false});
    return key;
}

Bytes textKey(std::u16string_view text, bool ascending = true)
{
    Bytes key;
    appendKeyPart(key, {ColumnType::Text, ascending, {}, true}, KeyValue{{}, std::u16string(text), false});
    return key;
}

RowRef rowNumber(std::uint32_t n)
{
    return {1000 + n / 200, static_cast<std::uint8_t>(n % 200)};
}

// Long texts with shared beginnings: few entries to a page, so that three levels appear.
Bytes randomKey(std::mt19937& random)
{
    switch (random() % 8) {
    case 0:
        return {std::byte{0}}; // NULL
    case 1:
        return longKey(static_cast<std::int32_t>(random() % 50)); // many duplicates
    default:
        break;
    }
    std::u16string text(random() % 3 * 60, u'm');
    for (unsigned i = 0; i < 20 + random() % 150; ++i)
        text.push_back(static_cast<char16_t>(u'a' + random() % 3));
    return textKey(text, random() % 2 == 0);
}

TEST(BTree, HoldsWhatAnOrderedSetHolds)
{
    for (unsigned seed = 1; seed <= (tests::kSanitized ? 2U : 6U); ++seed) {
        Tree tree;
        Model model;
        std::mt19937 random(seed);
        PageNo pagesWhenFull = 0;
        for (int round = 0; round < 2; ++round) {
            for (unsigned i = 0; i < 1500; ++i) {
                const Bytes key = randomKey(random);
                const RowRef row = rowNumber(i);
                const auto near = model.lower_bound({key, RowRef{}});
                const bool isNew = near == model.end() || near->first != key;
                EXPECT_EQ(tree.tree().insert(key, row, tree.free()), isNew);
                model.insert({key, row});
                if (random() % 4 == 0) {
                    const auto victim =
                        std::next(model.begin(), static_cast<std::ptrdiff_t>(random() % model.size()));
                    EXPECT_TRUE(random() % 2 == 0
                            ? tree.tree().eraseByRow(victim->second, tree.free())
                            : tree.tree().erase(victim->first, victim->second, tree.free()));
                    model.erase(victim);
                }
                if (i % 300 == 0)
                    tree.expect(model);
            }
            tree.expect(model);
            if (round == 0)
                pagesWhenFull = tree.file().pageCount();
            while (!model.empty()) {
                const auto victim = std::next(model.begin(),
                    random() % 3 == 0 ? 0 : static_cast<std::ptrdiff_t>(random() % model.size()));
                EXPECT_TRUE(tree.tree().erase(victim->first, victim->second, tree.free()));
                model.erase(victim);
                if (model.size() % 400 == 0)
                    tree.expect(model);
            }
            EXPECT_EQ(tree.tree().inspect().pages.size(), 1U) << "an empty tree is one leaf";
        }
        EXPECT_LT(tree.file().pageCount(), pagesWhenFull * 3 / 2) << "pages come back";
        if (HasFailure())
            FAIL() << "seed " << seed;
    }
}

TEST(BTree, FillsPagesWhenKeysRise)
{
    constexpr std::int32_t kKeys = tests::kSanitized ? 10000 : 50000;
    constexpr std::size_t kLeaves = (kKeys + 599) / 600; // full ones below one node
    Tree tree;
    for (std::int32_t i = 0; i < kKeys; ++i)
        EXPECT_TRUE(tree.tree().insert(longKey(i), rowNumber(static_cast<std::uint32_t>(i)), tree.free()));
    const BTree::Report report = tree.tree().inspect();
    EXPECT_TRUE(report.faults.empty());
    EXPECT_EQ(report.pages.size(), kLeaves + 1);
    EXPECT_EQ(report.entries.size(), static_cast<std::size_t>(kKeys));
    for (std::int32_t i = 0; i < kKeys; i += 617)
        EXPECT_EQ(tree.tree().find(longKey(i)), std::vector{rowNumber(static_cast<std::uint32_t>(i))});
    EXPECT_TRUE(tree.tree().find(longKey(-1)).empty());
    EXPECT_FALSE(tree.tree().erase(longKey(7), rowNumber(8), tree.free()));
    EXPECT_THROW(tree.tree().insert(longKey(7), rowNumber(7), tree.free()), Error);
}

TEST(BTree, DividesAPageWhoseSharedPrefixIsLost)
{
    Tree tree;
    Model model;
    const auto insert = [&](const Bytes& key, std::uint32_t n) {
        tree.tree().insert(key, rowNumber(n), tree.free());
        model.insert({key, rowNumber(n)});
    };
    // Several hundred keys fit on one page only because they share 200 bytes.
    const std::u16string shared(200, u'm');
    for (std::uint32_t n = 0; n < 150; ++n)
        insert(
            textKey(shared + static_cast<char16_t>(u'a' + n % 26) + static_cast<char16_t>(u'a' + n / 26)), n);
    ASSERT_EQ(tree.tree().inspect().pages.size(), 1U);
    insert(textKey(u"a"), 900);
    insert(textKey(u"z"), 901);
    tree.expect(model);
}

TEST(BTree, IsRebuiltFromItsEntries)
{
    std::mt19937 random(9);
    Tree tree;
    for (const unsigned count : {3000U, 0U, 1U, 700U, 3000U, 40U}) {
        Model model;
        std::vector<IndexEntry> entries;
        for (unsigned i = 0; i < count; ++i)
            entries.push_back({randomKey(random), rowNumber(i)});
        for (const IndexEntry& entry : entries)
            model.insert({entry.key, entry.row});
        tree.tree().rebuild(entries, tree.free());
        tree.expect(model);
        for (unsigned i = 5000; i < 5100; ++i) {
            const Bytes key = randomKey(random);
            tree.tree().insert(key, rowNumber(i), tree.free());
            model.insert({key, rowNumber(i)});
        }
        tree.expect(model);
    }
}

TEST(BTree, RefusesKeysThatAreTooLong)
{
    Tree tree;
    EXPECT_THROW(tree.tree().insert(Bytes(1193), {1000, 0}, tree.free()), Error);
    for (std::uint8_t i = 0; i < 40; ++i) {
        Bytes key(1192, std::byte{static_cast<unsigned char>(i * 37)});
        EXPECT_TRUE(tree.tree().insert(key, {1000, i}, tree.free()));
    }
    EXPECT_TRUE(tree.tree().inspect().faults.empty());
    EXPECT_EQ(tree.tree().inspect().entries.size(), 40U);
}

// Whatever stands in a page, the answer is an error or some rows, never an endless loop.
TEST(BTree, SurvivesDamagedPages)
{
    Tree tree;
    for (std::uint32_t i = 0; i < 1200; ++i)
        tree.tree().insert(textKey(std::u16string(i % 90, u'x') + static_cast<char16_t>(u'a' + i % 26)),
            rowNumber(i), tree.free());
    const std::vector<PageNo> pages = tree.tree().inspect().pages;
    ASSERT_GT(pages.size(), 5U);
    int noticed = 0;
    std::mt19937 random(4);
    constexpr int kRounds = tests::kSanitized ? 600 : 3000;
    for (int round = 0; round < kRounds; ++round) {
        const PageNo page = pages[random() % pages.size()];
        const PageView before = tree.file().read(page);
        const Bytes saved(before.bytes().begin(), before.bytes().end());
        const MutableBytes bytes = tree.file().write(page);
        const std::size_t at = random() % 4 == 0 ? random() % kPageSize : random() % 60;
        const PageNo other = pages[random() % pages.size()];
        if (random() % 2 == 0 && at >= 12 && at < 24)
            store<std::uint32_t>(bytes, at / 4 * 4, other);
        else
            bytes[at] = static_cast<std::byte>(random());
        noticed += tree.tree().inspect().faults.empty() ? 0 : 1;
        try {
            tree.tree().find(textKey(u"xxc"));
            tree.tree().forEach([](ByteView, RowRef) { return true; });
        } catch (const Error&) {
        }
        std::copy(saved.begin(), saved.end(), tree.file().write(page).begin());
    }
    EXPECT_GT(noticed, kRounds / 2);
    EXPECT_TRUE(tree.tree().inspect().faults.empty());
}

} // namespace
} // namespace vellums::jet

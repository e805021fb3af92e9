// A page of rows, as the file has it: the row table grows from the front, the rows from the back.
//
//   | header | entry 0 | entry 1 | ... | free bytes | ... | row 1 | row 0 |
//
// The constructor checks the whole row table once, so a row's place needs no check afterwards: starts never
// rise from entry to entry, and the lowest is not inside the table. Changes keep the free bytes in one
// piece, by moving the rows that lie lower; numbers of rows never change, because pointers from other pages
// hold them. A row that is deleted here keeps its entry, with nothing between its start and its end.
#include "jet/file/dataPage.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet {
namespace {

constexpr std::uint16_t kStartMask = 0x1FFF;

// In pages that are written.
std::size_t entryOffset(int row)
{
    return kDataHeader + 2 * static_cast<std::size_t>(row);
}

// A page tells its format by its size.
const Format& formatOfPage(ByteView page)
{
    if (page.size() != kJet4.pageSize && page.size() != kJet3.pageSize)
        throwDamaged(u"a page of rows is of another kind");
    return page.size() == kJet4.pageSize ? kJet4 : kJet3;
}

// Makes a row longer by `delta` bytes, or shorter, at its start; its end stays where it is. All rows that
// lie below it, those with higher numbers, move by as much, whole, towards the start of the page or away
// from it.
void shiftRows(MutableBytes page, int row, std::ptrdiff_t delta)
{
    const DataPage view(page);
    const int count = view.rowCount();
    const std::size_t low = view.start(count - 1);
    const std::size_t start = view.start(row);
    std::memmove(page.data() + (static_cast<std::ptrdiff_t>(low) - delta), page.data() + low, start - low);
    for (int r = row; r < count; ++r) {
        const auto entry = load<std::uint16_t>(page, entryOffset(r));
        const auto moved = static_cast<std::ptrdiff_t>(entry & kStartMask) - delta;
        store<std::uint16_t>(page, entryOffset(r),
            static_cast<std::uint16_t>((entry & ~kStartMask) | static_cast<std::uint16_t>(moved)));
    }
}

void recountFreeBytes(MutableBytes page)
{
    const auto count = load<std::uint16_t>(page, kJet4.dataPage.rowCount);
    std::size_t low = kPageSize;
    if (count > 0)
        low = load<std::uint16_t>(page, entryOffset(count - 1)) & kStartMask;
    store<std::uint16_t>(page, 2, static_cast<std::uint16_t>(low - entryOffset(count)));
}

} // namespace

DataPage::DataPage(PageView page)
    : page_(std::move(page))
    , bytes_(page_.bytes())
    , rowTable_(formatOfPage(bytes_).dataPage.rowTable)
    , rowCount_(load<std::uint16_t>(bytes_, formatOfPage(bytes_).dataPage.rowCount))
{
    if (bytes_[0] != std::byte{1})
        throwDamaged(u"a page of rows is of another kind");
    if (entryOffset(rowCount_) > bytes_.size())
        throwDamaged(u"the row table of a page is too long");
    // For every row that is looked at by its place; so the entries, which lie inside, are read without
    // further checks.
    std::size_t end = bytes_.size();
    const std::size_t lowest = entryOffset(rowCount_);
    for (const std::byte* entry = bytes_.data() + rowTable_; entry != bytes_.data() + lowest; entry += 2) {
        std::uint16_t at = 0;
        std::memcpy(&at, entry, sizeof at);
        at &= kStartMask;
        if (at > end || at < lowest)
            throwDamaged(u"the rows of a page overlap");
        end = at;
    }
}

std::size_t DataPage::start(int row) const
{
    assert(row >= 0 && row < rowCount_);
    return load<std::uint16_t>(bytes_, entryOffset(row)) & kStartMask;
}

std::uint16_t DataPage::flags(int row) const
{
    if (row >= rowCount_)
        throwDamaged(u"a pointer leads to a row that does not exist");
    return load<std::uint16_t>(bytes_, entryOffset(row)) & kDeletedFlags;
}

ByteView DataPage::bytes(int row) const&
{
    if (row >= rowCount_)
        throwDamaged(u"a pointer leads to a row that does not exist");
    return bytes_.subspan(start(row), end(row) - start(row));
}

PageView DataPage::row(int row) const
{
    if (row >= rowCount_)
        throwDamaged(u"a pointer leads to a row that does not exist");
    return page_.part(start(row), end(row) - start(row));
}

int DataPage::countedFreeBytes() const
{
    const std::size_t low = rowCount_ == 0 ? bytes_.size() : start(rowCount_ - 1);
    return static_cast<int>(low - entryOffset(rowCount_));
}

bool DataPage::isEmpty() const
{
    for (int r = 0; r < rowCount_; ++r)
        if (flags(r) != kDeletedFlags)
            return false;
    return true;
}

void initDataPage(MutableBytes page, std::uint32_t owner)
{
    std::fill(page.begin(), page.end(), std::byte{0});
    store<std::uint16_t>(page, 0, 0x0101);
    store<std::uint32_t>(page, 4, owner);
    recountFreeBytes(page);
}

std::uint8_t appendRow(MutableBytes page, ByteView row, std::uint16_t flags)
{
    const DataPage view(page);
    assert(view.hasRoomFor(row.size()));
    if (static_cast<int>(row.size()) + 2 > view.countedFreeBytes())
        throwDamaged(u"a page of rows counts its free bytes wrongly");
    const int number = view.rowCount();
    const std::size_t low = number == 0 ? kPageSize : view.start(number - 1);
    const std::size_t start = low - row.size();
    std::copy(row.begin(), row.end(), page.begin() + static_cast<std::ptrdiff_t>(start));
    store<std::uint16_t>(page, entryOffset(number), static_cast<std::uint16_t>(start | flags));
    store<std::uint16_t>(page, kJet4.dataPage.rowCount, static_cast<std::uint16_t>(number + 1));
    recountFreeBytes(page);
    return static_cast<std::uint8_t>(number);
}

void replaceRow(MutableBytes page, int row, ByteView bytes, std::uint16_t flags)
{
    const DataPage view(page);
    const auto delta =
        static_cast<std::ptrdiff_t>(bytes.size()) - static_cast<std::ptrdiff_t>(view.bytes(row).size());
    if (delta > view.countedFreeBytes())
        throwDamaged(u"a row does not fit in its page");
    const Bytes content(bytes.begin(), bytes.end()); // it may lie in this page
    shiftRows(page, row, delta);
    const std::size_t start = DataPage(page).start(row);
    std::copy(content.begin(), content.end(), page.begin() + static_cast<std::ptrdiff_t>(start));
    store<std::uint16_t>(page, entryOffset(row), static_cast<std::uint16_t>(start | flags));
    recountFreeBytes(page);
}

void deleteRow(MutableBytes page, int row)
{
    replaceRow(page, row, {}, kDeletedFlags);
}

} // namespace vellums::jet

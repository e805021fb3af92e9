// Entries lie one after the other without lengths: a bit mask tells where each ends. All but the first leave
// out the bytes that every entry of the page begins with. Reading puts them back, so that whoever works with
// a page sees whole keys; writing finds the longest common beginning anew. Keys must rise from entry to
// entry; a page where they do not, or whose mask and counts disagree, is damaged.
#include "jet/index/indexPage.h"

#include <algorithm>
#include <cassert>

namespace vellums::jet {
namespace {

std::size_t commonLength(ByteView a, ByteView b)
{
    const std::size_t limit = std::min(a.size(), b.size());
    std::size_t length = 0;
    while (length < limit && a[length] == b[length])
        ++length;
    return length;
}

void appendBigEndian(Bytes& bytes, std::uint32_t number, int count)
{
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::byte>(number >> shift & 0xFF));
}

std::uint32_t bigEndian(ByteView bytes)
{
    std::uint32_t number = 0;
    for (const std::byte b : bytes)
        number = number << 8 | std::to_integer<std::uint32_t>(b);
    return number;
}

// Where the entries end, by the mask. It has seven bits more than the entry area has places; they must be
// clear.
std::vector<std::size_t> entryEnds(ByteView page)
{
    std::vector<std::size_t> ends;
    for (std::size_t i = 0; i < kEntryArea - kEntryMask; ++i) {
        auto bits = std::to_integer<unsigned>(page[kEntryMask + i]);
        for (; bits != 0; bits &= bits - 1)
            ends.push_back(i * 8 + static_cast<std::size_t>(std::countr_zero(bits)));
    }
    if (!ends.empty() && (ends.front() == 0 || ends.back() > kEntryAreaSize))
        throwDamaged(u"the entry mask of an index page is wrong");
    return ends;
}

// The prefix must end before the row pointer of the first entry: it is a part of the key.
void readEntries(IndexPage& out, ByteView page, std::size_t trailer)
{
    const std::vector<std::size_t> ends = entryEnds(page);
    const std::size_t used = ends.empty() ? 0 : ends.back();
    if (load<std::uint16_t>(page, 2) != kEntryAreaSize - used)
        throwDamaged(u"the free bytes of an index page are wrong");
    const std::size_t prefixLength = load<std::uint16_t>(page, 24);
    const ByteView area = page.subspan(kEntryArea);
    Bytes entry;
    Bytes before;
    std::size_t start = 0;
    for (const std::size_t end : ends) {
        if (start == 0)
            entry.clear();
        else
            entry.assign(area.begin(), area.begin() + static_cast<std::ptrdiff_t>(prefixLength));
        append(entry, area.subspan(start, end - start));
        if (entry.size() < trailer || (start == 0 && prefixLength > entry.size() - trailer))
            throwDamaged(u"an entry of an index page is too short");
        const ByteView bound = ByteView(entry).first(entry.size() - (trailer - kRowPointer));
        if (start != 0 && compareBytes(before, bound) >= 0)
            throwDamaged(u"the entries of an index page are not in order");
        before.assign(bound.begin(), bound.end());
        out.entries.add(entry);
        start = end;
    }
}

} // namespace

std::size_t EntryList::lowerBound(ByteView wanted) const
{
    std::size_t low = 0;
    std::size_t high = size();
    while (low < high) {
        const std::size_t middle = low + (high - low) / 2;
        if (compareBytes(bound(middle), wanted) < 0)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

PageNo EntryList::child(std::size_t entry) const
{
    return bigEndian(at(entry).last(kChildPointer));
}

void EntryList::insert(std::size_t before, ByteView entry)
{
    assert(before <= size() && entry.size() >= trailer_);
    const std::size_t place = start(before);
    bytes_.insert(bytes_.begin() + static_cast<std::ptrdiff_t>(place), entry.begin(), entry.end());
    ends_.insert(ends_.begin() + static_cast<std::ptrdiff_t>(before), place);
    for (std::size_t i = before; i < ends_.size(); ++i)
        ends_[i] += entry.size();
}

void EntryList::erase(std::size_t entry)
{
    assert(entry < size());
    const std::size_t first = start(entry);
    const std::size_t length = ends_[entry] - first;
    const auto from = bytes_.begin() + static_cast<std::ptrdiff_t>(first);
    bytes_.erase(from, from + static_cast<std::ptrdiff_t>(length));
    ends_.erase(ends_.begin() + static_cast<std::ptrdiff_t>(entry));
    for (std::size_t i = entry; i < ends_.size(); ++i)
        ends_[i] -= length;
}

EntryList EntryList::part(std::size_t first, std::size_t last) const
{
    assert(first <= last && last <= size());
    EntryList list(trailer_);
    list.bytes_.assign(bytes_.begin() + static_cast<std::ptrdiff_t>(start(first)),
        bytes_.begin() + static_cast<std::ptrdiff_t>(start(last)));
    for (std::size_t i = first; i < last; ++i)
        list.ends_.push_back(ends_[i] - start(first));
    return list;
}

// Entries are sorted, so what the first and the last begin with all of them begin with. Other programs use
// no prefix until a page would overflow, and neither does this.
std::size_t EntryList::prefix(std::size_t first, std::size_t last) const
{
    if (last - first < 2 || bytes(first, last) <= kEntryAreaSize)
        return 0;
    return commonLength(keyOf(bound(first)), keyOf(bound(last - 1)));
}

std::size_t EntryList::packed(std::size_t first, std::size_t last) const
{
    const std::size_t saved = last == first ? 0 : (last - first - 1) * prefix(first, last);
    return bytes(first, last) - saved;
}

std::size_t IndexPage::slotFor(ByteView bound) const
{
    const std::size_t slot = entries.lowerBound(bound);
    return slot == entries.size() && tail == 0 && slot != 0 ? slot - 1 : slot;
}

IndexPage readIndexPage(const PageFile& file, PageNo page, PageNo table)
{
    if (page == 0)
        throwDamaged(u"an index points to no page");
    const PageView view = file.read(page);
    const ByteView bytes = view;
    const auto kind = std::to_integer<int>(bytes[0]);
    if ((kind != 3 && kind != 4) || bytes[1] != std::byte{1} || load<std::uint32_t>(bytes, 4) != table)
        throwDamaged(u"an index points to a page that is none of its own");
    IndexPage out(page, kind == 4);
    out.level = std::to_integer<std::uint8_t>(bytes[26]);
    out.previous = load<std::uint32_t>(bytes, 12);
    out.next = load<std::uint32_t>(bytes, 16);
    out.tail = load<std::uint32_t>(bytes, 20);
    if (out.leaf && out.tail != 0)
        throwDamaged(u"a leaf of an index has a child");
    readEntries(out, bytes, out.leaf ? kRowPointer : kRowPointer + kChildPointer);
    return out;
}

void writeIndexPage(MutableBytes bytes, const IndexPage& page, PageNo table)
{
    assert(bytes.size() == kPageSize && page.entries.fits());
    const EntryList& entries = page.entries;
    const std::size_t prefixLength = entries.prefix(0, entries.size());
    std::fill(bytes.begin(), bytes.end(), std::byte{});
    bytes[0] = page.leaf ? std::byte{4} : std::byte{3};
    bytes[1] = std::byte{1};
    store<std::uint32_t>(bytes, 4, table);
    store<std::uint32_t>(bytes, 12, page.previous);
    store<std::uint32_t>(bytes, 16, page.next);
    store<std::uint32_t>(bytes, 20, page.tail);
    store<std::uint16_t>(bytes, 24, static_cast<std::uint16_t>(prefixLength));
    bytes[26] = std::byte{page.level};
    std::size_t end = 0;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const ByteView part = entries.at(i).subspan(i == 0 ? 0 : prefixLength);
        std::copy(part.begin(), part.end(), bytes.begin() + static_cast<std::ptrdiff_t>(kEntryArea + end));
        end += part.size();
        bytes[kEntryMask + end / 8] |= static_cast<std::byte>(1U << (end % 8));
    }
    store<std::uint16_t>(bytes, 2, static_cast<std::uint16_t>(kEntryAreaSize - end));
}

Bytes leafEntry(ByteView key, RowRef row)
{
    Bytes entry(key.begin(), key.end());
    appendBigEndian(entry, row.page, 3);
    entry.push_back(std::byte{row.row});
    return entry;
}

Bytes nodeEntry(ByteView bound, PageNo child)
{
    Bytes entry(bound.begin(), bound.end());
    appendBigEndian(entry, child, 4);
    return entry;
}

RowRef rowOf(ByteView leafEntry)
{
    const ByteView pointer = leafEntry.last(kRowPointer);
    return {bigEndian(pointer.first(3)), std::to_integer<std::uint8_t>(pointer[3])};
}

std::strong_ordering compareBytes(ByteView a, ByteView b)
{
    const std::size_t limit = std::min(a.size(), b.size());
    const int order = limit == 0 ? 0 : std::memcmp(a.data(), b.data(), limit);
    return order != 0 ? order <=> 0 : a.size() <=> b.size();
}

} // namespace vellums::jet

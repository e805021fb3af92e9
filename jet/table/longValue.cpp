// A row keeps twelve bytes of a long value: its length, and either that the value follows in the row, or the
// place of a row that is the whole value, or of the first row of a chain. Each row of a chain begins with the
// place of the next. A chain is followed no further than the length says or the file could hold rows, so a
// circle ends in an error. Writing places the rows first and links them afterwards, when all places are
// known.
#include "jet/table/longValue.h"

#include "jet/table/pageSpace.h"

#include <algorithm>

namespace vellums::jet {
namespace {

constexpr std::uint32_t kLengthMask = 0x3FFFFFFF;
constexpr std::uint32_t kInlineBit = 0x80000000;
constexpr std::uint32_t kSingleBit = 0x40000000;

PageView longValueRow(const PageFile& file, RowRef at)
{
    const DataPage page(file.read(at.page));
    if (page.owner() != kLongValueOwner || page.flags(at.row) != 0)
        throwDamaged(u"a long value leads to a row that is none");
    return page.row(at.row);
}

// Calls back with the place and the chunk of each row of a chain. A chunk is at least one byte, so the
// length is reached in the end; what the last row has beyond it is left out.
template <typename Callback>
void eachChunk(const PageFile& file, const LongValueReference& reference, Callback&& callback)
{
    std::size_t length = 0;
    std::size_t hops = 0;
    const std::size_t mostHops = std::size_t{file.pageCount()} * kMaxRowsOnPage;
    for (RowRef at = reference.first; at.page != 0 && length < reference.length;) {
        const PageView view = longValueRow(file, at);
        const ByteView row = view;
        if (row.size() < 5 || ++hops > mostHops)
            throwDamaged(u"the parts of a long value form a circle");
        const RowRef next = rowRefOf(load<std::uint32_t>(row, 0));
        const ByteView chunk = row.subspan(4, std::min(row.size() - 4, reference.length - length));
        length += chunk.size();
        callback(at, chunk);
        at = next;
    }
    if (length < reference.length)
        throwDamaged(u"a long value ends too early");
}

PageOwner ownerOf(const Column& column)
{
    if (column.ownedMap.page == 0)
        throwUnsupported(u"The field '" + column.name + u"' has no map of its pages and cannot be changed.");
    return {kLongValueOwner, column.ownedMap, column.freeMap};
}

Bytes makeReference(std::uint32_t lengthAndForm, RowRef first)
{
    Bytes bytes;
    append<std::uint32_t>(bytes, lengthAndForm);
    append<std::uint32_t>(bytes, first.page == 0 ? 0 : pointerTo(first));
    append<std::uint32_t>(bytes, 0);
    return bytes;
}

Bytes writeSingle(PageFile& file, const PageOwner& owner, ByteView value)
{
    const auto length = static_cast<std::uint32_t>(value.size());
    return makeReference(length | kSingleBit, placeRow(file, owner, value, 0));
}

// From the last chunk to the first would need no second visit, but lays the value out backwards.
Bytes writeChain(PageFile& file, const PageOwner& owner, ByteView value)
{
    std::vector<RowRef> places;
    for (ByteView rest = value; !rest.empty();) {
        const ByteView chunk = rest.first(std::min(rest.size(), kChunkBytes));
        rest = rest.subspan(chunk.size());
        Bytes row(4);
        append(row, chunk);
        places.push_back(placeAlone(file, owner, row));
        file.makeRoom();
    }
    for (std::size_t i = 0; i + 1 < places.size(); ++i) {
        const MutableBytes page = file.write(places[i].page);
        store<std::uint32_t>(page, DataPage(page).start(places[i].row), pointerTo(places[i + 1]));
        file.makeRoom();
    }
    return makeReference(
        static_cast<std::uint32_t>(value.size()), places.empty() ? RowRef{} : places.front());
}

} // namespace

LongValueReference::LongValueReference(ByteView bytes)
    : length(load<std::uint32_t>(bytes, 0) & kLengthMask)
    , inlined((load<std::uint32_t>(bytes, 0) & kInlineBit) != 0)
    , single(!inlined && (load<std::uint32_t>(bytes, 0) & kSingleBit) != 0)
    , first(rowRefOf(load<std::uint32_t>(bytes, 4)))
{
}

ByteView readLongValue(const PageFile& file, ByteView reference, Bytes& scratch)
{
    if (reference.empty())
        return {};
    const ByteView head = slice(reference, 0, kLongValueHeader);
    const LongValueReference value(head);
    if (value.inlined)
        return slice(reference, kLongValueHeader, value.length);
    if (value.single) {
        const PageView row = longValueRow(file, value.first);
        const ByteView content = slice(row, 0, value.length);
        if (row.isLasting())
            return content;
        scratch.assign(content.begin(), content.end());
        return scratch;
    }
    scratch.clear();
    scratch.reserve(std::min(value.length, std::size_t{file.pageCount()} * kPageSize));
    eachChunk(file, value, [&](RowRef, ByteView chunk) { append(scratch, chunk); });
    return scratch;
}

bool isInline(ByteView reference)
{
    return reference.size() < kLongValueHeader || LongValueReference(reference).inlined;
}

Bytes inlineReference(ByteView value)
{
    Bytes bytes = makeReference(static_cast<std::uint32_t>(value.size()) | kInlineBit, {});
    append(bytes, value);
    return bytes;
}

Bytes writeLongValue(PageFile& file, const Column& column, ByteView value)
{
    if (value.size() > kMaxLongValue)
        throwFieldTooSmall();
    const PageOwner owner = ownerOf(column);
    return value.size() <= kMaxSingleBytes ? writeSingle(file, owner, value) : writeChain(file, owner, value);
}

Bytes copyLongValue(const PageFile& from, ByteView reference, PageFile& to, const Column& column)
{
    Bytes scratch;
    const ByteView value = readLongValue(from, reference, scratch);
    const PageOwner owner = ownerOf(column);
    return LongValueReference(reference).single ? writeSingle(to, owner, value)
                                                : writeChain(to, owner, value);
}

void freeLongValue(PageFile& file, const Column& column, ByteView reference)
{
    if (isInline(reference))
        return;
    const LongValueReference value(reference);
    const PageOwner owner = ownerOf(column);
    std::vector<RowRef> places;
    if (value.single)
        places.push_back(value.first);
    else
        eachChunk(file, value, [&](RowRef at, ByteView) { places.push_back(at); });
    for (const RowRef place : places) {
        removeRow(file, owner, place);
        file.makeRoom();
    }
}

} // namespace vellums::jet

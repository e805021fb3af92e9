// Pages of an Access file: their numbers, and ranges of their bytes.
#pragma once

#include "jet/file/bytes.h"
#include "jet/file/format.h"

#include <array>
#include <cstdint>
#include <memory>
#include <utility>

namespace vellums::jet {

using PageNo = std::uint32_t;

inline constexpr std::size_t kPageSize = kJet4.pageSize; // of what is written
inline constexpr PageNo kMaxPages = 524288;              // 2 GiB

// A row's place: its page and its entry in the page's row table.
struct RowRef {
    PageNo page = 0;
    std::uint8_t row = 0;

    friend auto operator<=>(const RowRef&, const RowRef&) = default;
};

// Pointers in the file: the low byte is the row, the upper three the page.
inline RowRef rowRefOf(std::uint32_t pointer)
{
    return {pointer >> 8, static_cast<std::uint8_t>(pointer & 0xFF)};
}
inline std::uint32_t pointerTo(RowRef ref)
{
    return ref.page << 8 | ref.row;
}

// A page in memory; smaller ones leave the rest unused.
struct Page {
    std::array<std::byte, kPageSize> bytes;
};

// Bytes of a page together with what keeps them: a share of the page in memory, or nothing where they
// lie in the map of the file, which stays as long as the file is open. The bytes are asked of an object
// that has a name, because they may go with it.
class PageView {
public:
    PageView() = default;
    // Bytes that somebody else keeps for as long as the view is used.
    explicit PageView(ByteView bytes)
        : bytes_(bytes)
    {
    }
    explicit PageView(std::shared_ptr<const Page> page, std::size_t size = kPageSize)
        : bytes_(ByteView(page->bytes).first(size))
        , page_(std::move(page))
    {
    }

    std::size_t size() const { return bytes_.size(); }
    std::byte operator[](std::size_t at) const { return bytes_[at]; }
    ByteView bytes() const& { return bytes_; }
    ByteView bytes() const&& = delete;
    operator ByteView() const& { return bytes_; }
    operator ByteView() const&& = delete;

    // A part of it, which must lie inside; it keeps the page too.
    PageView part(std::size_t offset, std::size_t length) const
    {
        PageView inner(*this);
        inner.bytes_ = bytes_.subspan(offset, length);
        return inner;
    }

    // The bytes stay when this object goes.
    bool isLasting() const { return !page_; }

private:
    ByteView bytes_;
    std::shared_ptr<const Page> page_;
};

} // namespace vellums::jet

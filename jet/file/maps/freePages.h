// The free pages of the file, and how pages are taken and given back.
#pragma once

#include "jet/file/pageFile.h"

#include <vector>

namespace vellums::jet {

// First bytes of pages that were given back.
inline constexpr std::uint8_t kFreedDefinition = 0x08;
inline constexpr std::uint8_t kFreedData = 0x09;
inline constexpr std::uint8_t kKeepsFirstByte = 0;

// The free pages of the whole file: page 1, row 0. A set bit means free.
class FreePages {
public:
    explicit FreePages(PageFile& file);

    // Makes the map anew: of the pages inside the file those are free that are not said to be used.
    static void reset(PageFile& file, const std::vector<bool>& used);

    // The lowest free page, from now on not free; the file grows where it lies beyond the end. The
    // page is all zeros and to be written in full.
    PageNo allocate();
    // Gives a page back; its first byte becomes `kind` (0x08 definition, 0x09 data), other pages keep
    // theirs (`kind` 0).
    void release(PageNo page, std::uint8_t kind);
    // Inside the file and free.
    bool isFree(PageNo page) const;
    // Pages of kind 0x05 of the map itself.
    std::vector<PageNo> bitmapPages() const;

private:
    PageFile& file_;
};

} // namespace vellums::jet

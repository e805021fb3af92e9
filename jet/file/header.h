// Page 0: what kind of file it is, its sort order, and whether it may be read at all.
#pragma once

#include "jet/file/bytes.h"
#include "jet/file/format.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vellums::jet {

// A sort order as it stands in page 0 and in text columns: u16 LCID, a zero byte, a version byte.
struct SortOrder {
    std::uint16_t lcid = 1033;
    std::uint8_t version = 0; // with 1033: 0 General legacy, 1 General

    friend bool operator==(const SortOrder&, const SortOrder&) = default;
};

struct Header {
    std::uint8_t version = 0; // byte 0x14: 0 Jet 3, 1 Jet 4, 2 to 6 ACE
    const Format* format = &kJet4;
    SortOrder sortOrder;        // the default of the file
    std::uint16_t codePage = 0; // of names and texts, where the format has them so

    bool isAce() const { return version >= 2; }
};

// Reads page 0. `path` goes into the messages. Throws Error: not a database (3343), encrypted, or locked by
// another password than this (3031). A password locks the header alone; of a file without one any will do.
Header parseHeader(ByteView page0, const std::u16string& path, std::u16string_view password);

// A password locks it; false also for what is no database.
bool isLocked(ByteView page0);

// The format alone, locked or not; null: it is no database.
const Format* formatOf(ByteView page0);

// The 128 masked bytes at 0x18 with the mask taken off or put on; it is its own inverse.
void maskHeader(MutableBytes page0);

} // namespace vellums::jet

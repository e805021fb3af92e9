// Where things lie in an Access file: in Jet 3 (Access 97) and in what came after it, Jet 4 and ACE, which on
// this level are one format. Whatever differs between the two stands here and nowhere else.
//
//                        Jet 3                          Jet 4, ACE
//   pages                2048 bytes                     4096
//   names and texts      in the file's code page        UTF-16LE; texts also compressed
//   numbers in rows      a byte, with a jump table      two bytes
//
// A page tells its format by its size. What is written is always of the second kind, so code that writes
// may take the sizes from kJet4.
#pragma once

#include <cstddef>

namespace vellums::jet {

struct Format {
    std::size_t pageSize;
    bool codePageTexts; // names have one byte for their length then, else two
    bool narrowRows;    // counts and offsets in rows take one byte
    bool writable;
    bool keepsIndexes; // else they are passed over

    struct Header { // places in page 0
        std::size_t sortOrder;
        std::size_t sortVersion; // 0: there is none
        std::size_t passwordBytes;
        std::size_t creationDate; // it masks the password; 0: no second mask
    } header;

    struct DataPage {
        std::size_t rowCount;
        std::size_t rowTable;
    } dataPage;

    struct Definition { // places in its head, and sizes of its parts
        std::size_t rowCount;
        std::size_t autoNumber;
        std::size_t tableType;
        std::size_t columnSlots;
        std::size_t variableSlots;
        std::size_t columns;
        std::size_t logicalIndexes;
        std::size_t physicalIndexes;
        std::size_t ownedMap;
        std::size_t freeMap;
        std::size_t headBytes;
        std::size_t counterBytes;
        std::size_t columnBytes;
        std::size_t physicalBytes;
        std::size_t logicalBytes;
    } definition;

    struct Column { // places in the record of a column; its type is the first byte
        std::size_t number;
        std::size_t slot;
        std::size_t position;
        std::size_t sortOrder;   // of decimals precision and scale
        std::size_t sortVersion; // 0: there is none
        std::size_t flags;
        std::size_t moreFlags; // 0: there are none
        std::size_t offset;
        std::size_t length;
    } column;

    // Pages that one page of bits in a usage map speaks of.
    constexpr std::size_t mapSpan() const { return (pageSize - 4) * 8; }
};

// clang-format off
inline constexpr Format kJet3 = {
    2048, true, true, false, false,
    {0x3A, 0, 20, 0},
    {8, 10},
    {12, 16, 20, 21, 23, 25, 27, 31, 35, 39, 43, 8, 18, 39, 20},
    {1, 3, 5, 9, 0, 13, 0, 14, 16},
};
inline constexpr Format kJet4 = {
    4096, false, false, true, true,
    {0x6E, 0x71, 40, 0x72},
    {12, 14},
    {16, 20, 40, 41, 43, 45, 47, 51, 55, 59, 63, 12, 25, 52, 28},
    {5, 7, 9, 11, 14, 15, 16, 21, 23},
};
// clang-format on

} // namespace vellums::jet

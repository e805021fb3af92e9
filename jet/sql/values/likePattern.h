// LIKE: `%` any number of characters, `_` one, `[...]` one of a list, `[!...]` one that is not in it;
// case, width and kana do not count.
//
// A pattern falls apart at its `%` into pieces of fixed length. They are looked for one behind the
// other, each at its leftmost place, because a later place is never better; a piece at an end of the
// pattern is tied to that end of the text. A piece is found by looking for two of its rarest units,
// sixteen bytes of text at a time, over the bytes as they lie in the file.
#pragma once

#include "jet/table/table.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace vellums::jet::sql {

class LikePattern {
public:
    // Any text is a pattern: a bracket that is not closed stands for itself.
    explicit LikePattern(std::u16string_view pattern);

    // Whether the whole text matches.
    bool matches(std::u16string_view text) const;
    bool matches(const StoredText& text) const;

    struct Element {
        enum class Kind { Unit, Any, List };
        Kind kind = Kind::Any;
        char16_t unit = 0;    // folded
        std::size_t list = 0; // index into lists_
    };

    // Both ends folded and part of the range.
    struct Range {
        char16_t first;
        char16_t last;
    };

    struct List {
        std::vector<Range> ranges;
        bool negated = false;
    };

    // One unit of a piece as the scan looks for it: it is there when for one of the tests
    // (text | mask) == value.
    struct Anchor {
        std::size_t offset = 0; // in the piece
        std::size_t count = 0;  // of tests; 0: no such unit
        std::array<char16_t, 4> masks{};
        std::array<char16_t, 4> values{};
    };

    struct Piece {
        std::vector<Element> elements;
        // For texts of one byte per character and of two. Where the first has no test, a piece is
        // looked for place by place.
        std::array<Anchor, 2> narrow;
        std::array<Anchor, 2> wide;
        bool fitsNarrow = true; // false: no text of one byte per character holds it
    };

private:
    std::size_t readList(std::u16string_view pattern, std::size_t open, Piece& piece);
    void finishPiece(Piece& piece);
    template <typename Units>
    bool matchUnits(const Units& text) const;
    template <typename Units>
    bool pieceAt(const Piece& piece, const Units& text, std::size_t at) const;
    template <typename Units>
    std::size_t findPiece(const Piece& piece, const Units& text, std::size_t from, std::size_t end) const;

    std::vector<Piece> pieces_; // none of them empty
    std::vector<List> lists_;
    bool openStart_ = false; // begins with %
    bool openEnd_ = false;   // ends with %
    bool hasPercent_ = false;
    bool fitsNarrow_ = true;
    std::size_t shortest_ = 0; // units that a matching text has at least
};

} // namespace vellums::jet::sql

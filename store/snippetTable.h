// The table that holds the notes, described once: whoever makes, recognises, upgrades, searches or reads one
// goes by this list. The order counts: a table with other columns, or with these in another order, is none.
//
// The first version had the columns up to VLDATE; tables of it, and of the second one, are still met and get
// the columns that they lack when they are opened.
#pragma once

#include "text/clsMD5.h"

#include <string>
#include <string_view>
#include <vector>

namespace vellums {

enum class SnippetKind { Counter, Text, Memo, Date };

struct SnippetColumn {
    std::u16string_view name;
    SnippetKind kind;
    int length;    // of texts: characters at most
    bool searched; // by the search box, in tables as they are made
    bool nullable;
    int since; // the version of the table that brought it
};

inline constexpr std::u16string_view kIdColumn = u"ID";
inline constexpr std::u16string_view kHeadColumn = u"VLHEAD"; // the title
inline constexpr std::u16string_view kTextColumn = u"VLTEXT";
inline constexpr std::u16string_view kTypeColumn = u"VLTYPE"; // the stamp of sticky records
inline constexpr std::u16string_view kDateColumn = u"VLDATE"; // of the last change, or of the source file
inline constexpr std::u16string_view kLinkColumn = u"VLLINK"; // path of the source file
inline constexpr std::u16string_view kMd5Column = u"VLMD5";   // digest of the text

inline constexpr int kLongestText = 255; // what a text column has when nothing is said

// clang-format off
inline constexpr SnippetColumn kSnippetColumns[] = {
    // name       kind                  length            searched nullable since
    {kIdColumn,   SnippetKind::Counter, 0,                false,   false,   1},
    {kHeadColumn, SnippetKind::Text,    kLongestText,     true,    true,    1},
    {kTextColumn, SnippetKind::Memo,    0,                true,    true,    1},
    {kTypeColumn, SnippetKind::Text,    kLongestText,     false,   true,    1},
    {kDateColumn, SnippetKind::Date,    0,                false,   false,   1},
    {kLinkColumn, SnippetKind::Text,    kLongestText,     true,    true,    2},
    {kMd5Column,  SnippetKind::Text,    text::kMd5Digits, false,   true,    3},
};
// clang-format on
inline constexpr int kSnippetVersion = 3;

// The unique index over the first column.
inline constexpr std::u16string_view kSnippetIndex = u"VLIDX";

// Null for any other name. Names are compared as they stand.
const SnippetColumn* snippetColumn(std::u16string_view name);

// The columns that a table of the version has, in their order.
std::vector<std::u16string> snippetColumnNames(int version = kSnippetVersion);

// The column as CREATE TABLE and ALTER TABLE take it, the counter with its index.
std::u16string columnDefinition(const SnippetColumn& column);

} // namespace vellums

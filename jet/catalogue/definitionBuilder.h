// Makes the pages of a new table: its definition, its usage maps, the roots of its indexes.
#pragma once

#include "jet/table/tableDefinition.h"

#include <vector>

namespace vellums::jet {

inline constexpr std::size_t kMapsOnPage = 57;   // that many fit on a page
inline constexpr std::uint8_t kUserTable = 0x4E; // table types
inline constexpr std::uint8_t kSystemTable = 0x53;

// Usage maps that a table needs: two of its own, two for each long-value column, one for each index.
std::size_t mapCount(const TableDefinition& definition);

// Gives the table's usage maps their places, in this order: pages of the table, those with free space;
// the same for each long-value column, by column number; the pages of each index.
void placeMaps(TableDefinition& definition, const std::vector<PageNo>& mapPages);

// One page of maps as placeMaps() has set them out: `page` gets an empty map for each place that lies
// on `number`; those of indexes hold the root page.
void writeMapPage(MutableBytes page, PageNo number, const TableDefinition& definition);

// Fills `joined` and `counterOffsets` from the other fields. Logical indexes are written in the order
// of the list. `distinctKeys` are the counters of the physical indexes; missing ones are 0.
void encodeDefinition(TableDefinition& definition, const std::vector<std::uint32_t>& distinctKeys = {});

} // namespace vellums::jet

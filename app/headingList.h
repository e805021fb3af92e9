// The heading list: the titles of the records that match the search box.
#pragma once

#include "ports/windowPorts.h"
#include "store/notebook.h"

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace vellums {

// Runs the query that the search box and its options stand for and fills the list; sets the caption of
// the window. False: the list stays as it is, and the panel says why, or `giveUp`, which is asked now and
// then, has become true.
[[nodiscard]] bool dbQuery(const Notebook& notebook, const ListPorts& list, const SearchPorts& search,
    const std::function<bool()>& giveUp = {});

// The entries of these records, ascending.
std::vector<int> entriesOf(const ListBox& lstHeads, const std::set<std::int32_t>& ids);

// "Vellums - <file - table>".
std::u16string windowCaption(const Notebook& notebook);

// "12 records found in Vellums.mdb - Memo."
std::u16string foundText(const Notebook& notebook, int count);

} // namespace vellums

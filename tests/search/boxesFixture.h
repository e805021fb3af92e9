// A notebook and a window with the boxes on top, their commands and a timer that the test lets ring.
#pragma once

#include "search/searchBoxes.h"
#include "search/searchFields.h"
#include "tests/support/windowNotebook.h"

#include <gtest/gtest.h>

namespace vellums::tests {

class BoxesFixture : public testing::Test, protected WindowNotebook {
protected:
    BoxesFixture()
    {
        moments.tableOpened.add(
            [this] { rebuildSearchFields(*notes, window.mnu_AvailFields, window.lstHeads); });
    }
    void addNote(const std::u16string& title, const std::u16string& text)
    {
        notes.run(
            u"INSERT INTO Notes (VLHEAD,VLTEXT,VLDATE) VALUES ('" + title + u"','" + text + u"',#2020-1-1#)");
    }

    MemoryPostponed instantSearch;
    InstantSearch instant{window.mnu_InstantSrch, window.mnu_AvailFields, instantSearch,
        [this] { return records.current().hasUnsavedChanges(); }};
    SearchBoxes boxes{*notes, ports.search, ports.find, records, instant};
};

} // namespace vellums::tests

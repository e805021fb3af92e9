// The two boxes on top: search words for the heading list, and the keyword of the search in the text.
#pragma once

#include "app/recordCommands.h"
#include "search/instantSearch.h"

#include <functional>

namespace vellums {

class SearchBoxes {
public:
    SearchBoxes(Notebook& notebook, SearchPorts search, FindPorts find, RecordCommands& commands,
        InstantSearch& instantSearch);

    // The search box.
    void newSearch(); // the focus, with everything selected
    void searchEnter();
    void searchEscape();
    // The search that is due after letters were typed. Given up, and due again, when `userGoesOn`, which
    // is asked now and then, becomes true.
    void searchInstantly(const std::function<bool()>& userGoesOn);

    // The find box.
    void findEnter();
    void findEscape();
    void findInline();
    void findPrevious();
    void findNext();

    // The list of places found.
    void selectResult(); // the entry that was clicked
    void copyResult();
    void copyAllResults();

    // Search options.
    void toggleSortOnTitle();
    void toggleInstantSearch();
    void toggleSearchField(std::size_t index); // the next query uses it

private:
    Notebook& notebook_;
    SearchPorts search_;
    FindPorts find_;
    RecordCommands& commands_;
    InstantSearch& instantSearch_;
};

} // namespace vellums

// The two boxes on top: search words for the heading list, and the keyword of the search in the text.
#pragma once

#include "app/recordCommands.h"

#include <functional>

namespace vellums {

class SearchBoxes {
public:
    // `instantSearch` ends in a call of searchInstantly() unless it is cancelled before.
    SearchBoxes(Notebook& notebook, MainWindow window, RecordCommands& commands, Postponed& instantSearch);

    // The search box.
    void newSearch(); // the focus, with everything selected
    void searchEnter();
    void searchEscape();
    // The text has changed; while an input method composes, the change is not the last word.
    void searchTextChanged();
    void compositionStarted();
    void compositionEnded();
    // What has been put off by searchTextChanged(). Given up, and put off again, when `userGoesOn`, which
    // is asked now and then, becomes true.
    void searchInstantly(const std::function<bool()>& userGoesOn);

    // The find box.
    void findEnter();
    void findEscape();
    void findTextChanged();

    // Search options.
    void toggleSortOnTitle();
    void toggleInstantSearch();

private:
    bool searchesWhileTyping() const;
    void postponeSearch();

    Notebook& notebook_;
    MainWindow window_;
    RecordCommands& commands_;
    Postponed& instantSearch_;
    bool composing_ = false;
};

} // namespace vellums

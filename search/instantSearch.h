// When the list follows the letters of the search box: what comes of each change of its text. The search
// itself is a command (SearchBoxes::searchInstantly()).
#pragma once

#include "ports/controls.h"

#include <functional>

namespace vellums {

class InstantSearch {
public:
    // The options say whether it follows: mnu_InstantSrch, and mnu_AvailFields where the text is not
    // searched. `pause` ends in a call of SearchBoxes::searchInstantly() unless it is cancelled before;
    // `hasUnsaved` tells whether that would ask about unsaved text.
    InstantSearch(const CheckItem& mnu_InstantSrch, const MenuItems& mnu_AvailFields, Postponed& pause,
        std::function<bool()> hasUnsaved);

    // The text of the box has changed; while an input method composes, the change is not the last word.
    void textChanged();
    void compositionStarted();
    void compositionEnded();

    void again(); // a search that was given up is due again
    void cancel();

private:
    bool searchesWhileTyping() const;

    const CheckItem& mnu_InstantSrch_;
    const MenuItems& mnu_AvailFields_;
    Postponed& pause_;
    std::function<bool()> hasUnsaved_;
    bool composing_ = false;
};

} // namespace vellums

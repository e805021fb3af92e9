// A change of the search box starts the pause anew, or cancels it where the list does not follow letters. The
// pause ends when nothing else waits for the thread, so quick typing never queues searches; a search that is
// under way asks in between whether the user goes on, and is then given up and due again. Where a search
// would bring up the question about unsaved text it waits for a real pause first.
//
// While an input method composes, the box's text changes without being the user's word; the end of the
// composition counts as the one change.
#include "search/instantSearch.h"

#include "store/snippetTable.h"

#include <utility>

namespace vellums {
namespace {

// A letter of the search words must not answer the question about unsaved changes, so the question waits
// until nobody types.
constexpr int kQuietBeforeQuestionMs = 1000;

} // namespace

InstantSearch::InstantSearch(const CheckItem& mnu_InstantSrch, const MenuItems& mnu_AvailFields,
    Postponed& pause, std::function<bool()> hasUnsaved)
    : mnu_InstantSrch_(mnu_InstantSrch)
    , mnu_AvailFields_(mnu_AvailFields)
    , pause_(pause)
    , hasUnsaved_(std::move(hasUnsaved))
{
}

// Titles and source paths alone are searched in no time.
bool InstantSearch::searchesWhileTyping() const
{
    if (mnu_InstantSrch_.checked())
        return true;
    for (std::size_t i = 0; i < mnu_AvailFields_.size(); ++i)
        if (mnu_AvailFields_.at(i).tag == kTextColumn)
            return !mnu_AvailFields_.at(i).checked;
    return true;
}

void InstantSearch::textChanged()
{
    if (!composing_ && searchesWhileTyping())
        again();
    else
        cancel();
}

void InstantSearch::compositionStarted()
{
    composing_ = true;
    cancel();
}

void InstantSearch::compositionEnded()
{
    composing_ = false;
    textChanged();
}

void InstantSearch::again()
{
    pause_.start(hasUnsaved_() ? kQuietBeforeQuestionMs : 0);
}

void InstantSearch::cancel()
{
    pause_.cancel();
}

} // namespace vellums

#include "search/instantSearch.h"

#include "store/snippetTable.h"

#include <utility>

namespace vellums {
namespace {

// A letter of the search words must not answer the question about unsaved changes, so the question waits
// until nobody types.
constexpr int kQuietBeforeQuestionMs = 1000;

} // namespace

InstantSearch::InstantSearch(WindowPorts window, Postponed& pause, std::function<bool()> hasUnsaved)
    : window_(window)
    , pause_(pause)
    , hasUnsaved_(std::move(hasUnsaved))
{
}

// Titles and source paths alone are searched in no time.
bool InstantSearch::searchesWhileTyping() const
{
    if (window_.mnu_InstantSrch.checked())
        return true;
    for (std::size_t i = 0; i < window_.mnu_AvailFields.size(); ++i)
        if (window_.mnu_AvailFields.at(i).tag == kTextColumn)
            return !window_.mnu_AvailFields.at(i).checked;
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

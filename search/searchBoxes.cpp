#include "search/searchBoxes.h"

#include "app/start/settings.h"
#include "search/findInText.h"
#include "search/inlineSearch.h"
#include "search/searchFields.h"

namespace vellums {

SearchBoxes::SearchBoxes(
    Notebook& notebook, WindowPorts window, RecordCommands& commands, InstantSearch& instantSearch)
    : notebook_(notebook)
    , window_(window)
    , commands_(commands)
    , instantSearch_(instantSearch)
{
}

void SearchBoxes::newSearch()
{
    window_.txtKey.focus();
    window_.txtKey.selectAll();
}

// Whatever was put off is done by this search.
void SearchBoxes::searchEnter()
{
    instantSearch_.cancel();
    commands_.search();
}

void SearchBoxes::searchEscape()
{
    window_.txtKey.setText({});
    searchEnter();
}

void SearchBoxes::searchInstantly(const std::function<bool()>& userGoesOn)
{
    if (!commands_.searchUnless(userGoesOn))
        instantSearch_.again();
}

// The first Enter lists the places and selects the first of them, each further one goes backwards and around
// to the last. This pairing is meant.
void SearchBoxes::findEnter()
{
    findPrevious();
}

void SearchBoxes::findInline()
{
    findInText(notebook_, window_, FindCommand::Inline);
}

void SearchBoxes::findPrevious()
{
    findInText(notebook_, window_, FindCommand::Previous);
}

void SearchBoxes::findNext()
{
    findInText(notebook_, window_, FindCommand::Next);
}

void SearchBoxes::selectResult()
{
    lstInLineSrchClick(window_);
}

void SearchBoxes::copyResult()
{
    vellums::copyResult(notebook_, window_);
}

void SearchBoxes::copyAllResults()
{
    vellums::copyAllResults(notebook_, window_);
}

void SearchBoxes::findEscape()
{
    window_.txtInline.setText({});
    hideResults(window_);
}

void SearchBoxes::toggleSortOnTitle()
{
    CheckItem& item = window_.mnu_SortOnTitle;
    item.setChecked(!item.checked());
    writeSetting(notebook_.settingsFile, kSortOnTitleSetting, item.checked());
    commands_.search();
}

void SearchBoxes::toggleSearchField(std::size_t index)
{
    if (index < window_.mnu_AvailFields.size())
        vellums::toggleSearchField(window_, index);
}

void SearchBoxes::toggleInstantSearch()
{
    window_.mnu_InstantSrch.setChecked(!window_.mnu_InstantSrch.checked());
}

} // namespace vellums

#include "search/searchBoxes.h"

#include "app/start/settings.h"
#include "search/findInText.h"
#include "search/inlineSearch.h"
#include "search/searchFields.h"

namespace vellums {

SearchBoxes::SearchBoxes(Notebook& notebook, SearchPorts search, FindPorts find, RecordCommands& commands,
    InstantSearch& instantSearch)
    : notebook_(notebook)
    , search_(search)
    , find_(find)
    , commands_(commands)
    , instantSearch_(instantSearch)
{
}

void SearchBoxes::newSearch()
{
    search_.txtKey.focus();
    search_.txtKey.selectAll();
}

// Whatever was put off is done by this search.
void SearchBoxes::searchEnter()
{
    instantSearch_.cancel();
    commands_.search();
}

void SearchBoxes::searchEscape()
{
    search_.txtKey.setText({});
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
    findInText(notebook_, find_, search_.txtKey, FindCommand::Inline);
}

void SearchBoxes::findPrevious()
{
    findInText(notebook_, find_, search_.txtKey, FindCommand::Previous);
}

void SearchBoxes::findNext()
{
    findInText(notebook_, find_, search_.txtKey, FindCommand::Next);
}

void SearchBoxes::selectResult()
{
    lstInLineSrchClick(find_);
}

void SearchBoxes::copyResult()
{
    vellums::copyResult(notebook_, find_.lstInLineSrch);
}

void SearchBoxes::copyAllResults()
{
    vellums::copyAllResults(notebook_, find_.lstInLineSrch);
}

void SearchBoxes::findEscape()
{
    find_.txtInline.setText({});
    hideResults(find_.lstInLineSrch);
}

void SearchBoxes::toggleSortOnTitle()
{
    CheckItem& item = search_.mnu_SortOnTitle;
    item.setChecked(!item.checked());
    writeSetting(notebook_.settingsFile, kSortOnTitleSetting, item.checked());
    commands_.search();
}

void SearchBoxes::toggleSearchField(std::size_t index)
{
    if (index < search_.mnu_AvailFields.size())
        vellums::toggleSearchField(search_.mnu_AvailFields, index);
}

void SearchBoxes::toggleInstantSearch()
{
    search_.mnu_InstantSrch.setChecked(!search_.mnu_InstantSrch.checked());
}

} // namespace vellums

#include "search/searchBoxes.h"

#include "app/settings.h"
#include "search/findInText.h"
#include "search/inlineSearch.h"

namespace vellums {
namespace {

// A letter of the search words must not answer the question about unsaved changes, so the question waits
// until nobody types.
constexpr int kQuietBeforeQuestionMs = 1000;

} // namespace

SearchBoxes::SearchBoxes(
    Notebook& notebook, MainWindow window, RecordCommands& commands, Postponed& instantSearch)
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

// Titles and source paths alone are searched in no time.
bool SearchBoxes::searchesWhileTyping() const
{
    if (window_.mnu_InstantSrch.checked())
        return true;
    for (std::size_t i = 0; i < window_.mnu_AvailFields.size(); ++i)
        if (window_.mnu_AvailFields.at(i).tag == u"VLTEXT")
            return !window_.mnu_AvailFields.at(i).checked;
    return true;
}

void SearchBoxes::searchTextChanged()
{
    if (!composing_ && searchesWhileTyping())
        postponeSearch();
    else
        instantSearch_.cancel();
}

void SearchBoxes::postponeSearch()
{
    instantSearch_.start(commands_.current().hasUnsavedChanges() ? kQuietBeforeQuestionMs : 0);
}

void SearchBoxes::compositionStarted()
{
    composing_ = true;
    instantSearch_.cancel();
}

void SearchBoxes::compositionEnded()
{
    composing_ = false;
    searchTextChanged();
}

void SearchBoxes::searchInstantly(const std::function<bool()>& userGoesOn)
{
    if (!commands_.searchUnless(userGoesOn))
        postponeSearch();
}

void SearchBoxes::findEnter()
{
    findInText(notebook_, window_, FindCommand::Previous);
}

void SearchBoxes::findEscape()
{
    window_.txtInline.setText({});
    hideResults(window_);
}

void SearchBoxes::findTextChanged()
{
    window_.txtInlineTip.setText({}); // it was about the text before
}

void SearchBoxes::toggleSortOnTitle()
{
    CheckItem& item = window_.mnu_SortOnTitle;
    item.setChecked(!item.checked());
    setPrefValue(notebook_.settingsFile, kOptionsSection, u"obTitle", item.checked() ? u"1" : u"0");
    commands_.search();
}

void SearchBoxes::toggleInstantSearch()
{
    window_.mnu_InstantSrch.setChecked(!window_.mnu_InstantSrch.checked());
}

} // namespace vellums

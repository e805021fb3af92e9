#include "app/recordCommands.h"

#include "app/headingList.h"
#include "platform/clipboard.h"
#include "platform/text.h"
#include "store/headingQuery.h"

#include <algorithm>

namespace vellums {
namespace {

constexpr std::int32_t kNoRecord = -1;

std::u16string saveQuestion(const Notebook& notebook)
{
    return notebook.say(u"Save changes to the current snippet?", u"是否保存当前记录所作修改?");
}

} // namespace

RecordCommands::RecordCommands(Notebook& notebook, MainWindow window, Moments& moments)
    : notebook_(notebook)
    , window_(window)
    , moments_(moments)
    , current_(notebook, window)
{
}

void RecordCommands::start()
{
    current_.clear();
    moments_.tableOpened.happen();
    refresh();
    moments_.listFilled.happen();
}

bool RecordCommands::leaveRecord()
{
    if (!current_.hasUnsavedChanges())
        return true;
    return window_.dialogs.askYesNo(saveQuestion(notebook_)) == Answer::No || current_.save();
}

void RecordCommands::search()
{
    if (leaveRecord())
        refresh();
}

bool RecordCommands::searchUnless(const std::function<bool()>& userGoesOn)
{
    bool gaveUp = false;
    if (leaveRecord())
        fillList(kNoRecord, [&] { return gaveUp = gaveUp || userGoesOn(); });
    return !gaveUp;
}

void RecordCommands::reload()
{
    if (!leaveRecord())
        return;
    refresh();
    moments_.listFilled.happen();
}

void RecordCommands::refresh()
{
    fillList(kNoRecord);
}

void RecordCommands::refreshKeeping(std::int32_t id)
{
    fillList(id);
}

// Runs the query and shows the wanted record, or the first one where the list lacks it.
void RecordCommands::fillList(std::int32_t wanted, const std::function<bool()>& giveUp)
{
    if (!dbQuery(notebook_, window_, searchPattern(window_.txtKey.text()), giveUp))
        return;
    const int count = window_.lstHeads.count();
    if (count == 0) {
        current_.clear();
    } else {
        const std::vector<int> entries = entriesOf({wanted});
        const int entry = entries.empty() ? 0 : entries.front();
        window_.lstHeads.select(entry);
        if (!current_.load(window_.lstHeads.datum(entry)))
            return; // its error is the last line shown
    }
    notebook_.status.found(foundText(notebook_, count));
}

void RecordCommands::selectHeading()
{
    const int entry = window_.lstHeads.current();
    if (entry < 0 || entry >= window_.lstHeads.count() || window_.lstHeads.datum(entry) == current_.id())
        return;
    const std::int32_t wanted = window_.lstHeads.datum(entry);
    if (current_.hasUnsavedChanges()) {
        const Answer answer = window_.dialogs.askYesNoCancel(saveQuestion(notebook_));
        if (answer == Answer::Cancel || (answer == Answer::Yes && !current_.save())) {
            showRecordOf(current_.id());
            return;
        }
        if (answer == Answer::Yes) // saving a new record puts its heading into the list
            showRecordOf(wanted);
    }
    if (!current_.load(wanted))
        showRecordOf(current_.id());
}

// Where the records stand in the list now, ascending.
std::vector<int> RecordCommands::entriesOf(const std::set<std::int32_t>& ids) const
{
    std::vector<int> entries;
    for (int i = 0; i < window_.lstHeads.count(); ++i)
        if (ids.contains(window_.lstHeads.datum(i)))
            entries.push_back(i);
    return entries;
}

// Selects the entry of a record without loading it.
void RecordCommands::showRecordOf(std::int32_t id)
{
    const std::vector<int> entries = entriesOf({id});
    window_.lstHeads.select(entries.empty() ? -1 : entries.front());
}

void RecordCommands::pasteNew()
{
    const bool unsavedNew = current_.id() < 0 && current_.hasUnsavedChanges();
    const bool leaves = unsavedNew
        ? window_.dialogs.askYesNo(notebook_.say(u"Save a new snippet?", u"是否保存当前记录?")) ==
                Answer::No ||
            current_.save()
        : leaveRecord();
    if (!leaves)
        return;
    const std::optional<std::u16string> text = platform::clipboardText();
    addFromClipboard(text.value_or(u""), text && !text->empty());
}

void RecordCommands::capture()
{
    const std::optional<std::u16string> text = platform::clipboardText();
    if (text && !text->empty() && leaveRecord())
        addFromClipboard(*text, true);
}

void RecordCommands::addFromClipboard(const std::u16string& text, bool fromClipboard)
{
    NewRecord record;
    record.text = text;
    record.link = window_.chkSort.caption();
    const std::optional<AddedRecord> added = addRecord(notebook_, record);
    if (!added)
        return;
    window_.chkSort.setCaption({});
    window_.lstHeads.insert(0, {added->title, added->id});
    window_.lstHeads.select(0);
    if (!current_.load(added->id))
        return;
    if (fromClipboard)
        notebook_.status.done(
            notebook_.say(u"1 record created from the Clibboard.", u"已从剪粘板新增 1 条记录"));
    else
        notebook_.status.done(notebook_.say(u"1 record created.", u"已新建 1 条记录"));
}

void RecordCommands::duplicate()
{
    if (current_.id() < 0 || !leaveRecord())
        return;
    if (dupRecord(notebook_, current_.id()))
        refresh();
}

void RecordCommands::deleteSelected()
{
    const std::vector<int> selected = window_.lstHeads.selected();
    if (selected.empty())
        return;
    const std::u16string question =
        notebook_.say(u"Are you sure to delete selected records?    ", u"确定删除选定的记录?   ");
    if (!window_.mnu_ezdel.checked() && window_.dialogs.askYesNo(question) != Answer::Yes)
        return;
    std::vector<std::int32_t> ids;
    for (const int entry : selected)
        ids.push_back(window_.lstHeads.datum(entry));
    const bool shownIsAmongThem = std::find(ids.begin(), ids.end(), current_.id()) != ids.end();
    if (!shownIsAmongThem && !leaveRecord())
        return;

    const std::size_t deleted = delRecords(notebook_, ids);
    if (deleted == 0)
        return;
    const bool whole = deleted == ids.size();
    if (takeFromList({ids.begin(), ids.begin() + static_cast<std::ptrdiff_t>(deleted)}, !whole) && whole)
        notebook_.status.done(
            notebook_.say(platform::decimal(static_cast<std::int64_t>(deleted)) + u" record(s) deleted.",
                u"已删除 " + platform::decimal(static_cast<std::int64_t>(deleted)) + u" 条记录"));
}

bool RecordCommands::takeFromList(const std::set<std::int32_t>& ids, bool afterFailure)
{
    const std::vector<int> gone = entriesOf(ids);
    window_.lstHeads.remove(gone);
    if (afterFailure && !ids.contains(current_.id())) {
        showRecordOf(current_.id());
        return true;
    }
    const int next = gone.empty() ? 0 : std::min(gone.front(), window_.lstHeads.count() - 1);
    if (next < 0) {
        current_.clear();
        return true;
    }
    window_.lstHeads.select(next);
    return current_.load(window_.lstHeads.datum(next));
}

void RecordCommands::save()
{
    current_.save();
}

bool RecordCommands::mayClose()
{
    if (!current_.hasUnsavedChanges())
        return true;
    switch (window_.dialogs.askYesNoCancel(saveQuestion(notebook_))) {
    case Answer::Yes:
        return current_.save();
    case Answer::No:
        return true;
    case Answer::Cancel:
        break;
    }
    return false;
}

} // namespace vellums

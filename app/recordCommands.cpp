// What a command may do to the text in the boxes is decided in one place, leave(): before anything is
// replaced it asks about unsaved changes, and a command that gets false does nothing at all. Commands that
// ask anything take IDs beforehand, never indexes of the list, and look the records up again afterwards
// (entriesOf), as saving may have changed the list meanwhile.
//
// Filling the list anew never overwrites text that nobody was asked about: fillList() then leaves the record
// shown and only selects its entry. That is how text survives which is typed while long work ends.
//
// A text that the user gave up (No) stays in the boxes until something replaces it. givenUp_ remembers it by
// the record's generation and the texts themselves, so that one more letter makes it unsaved text again.
#include "app/recordCommands.h"

#include "app/bulkWork.h"
#include "app/clipboardText.h"
#include "app/headingList.h"
#include "platform/files.h"
#include "text/decimal.h"
#include "text/titles.h"

#include <algorithm>
#include <cassert>

namespace vellums {
namespace {

constexpr std::int32_t kNoRecord = -1;

std::u16string saveQuestion(const Notebook& notebook)
{
    return notebook.say(u"Save changes to the current snippet?", u"是否保存当前记录所作修改?");
}

// A failure has been told where it was met.
void saySaved(const Notebook& notebook, CurrentRecord::Saving saving)
{
    switch (saving) {
    case CurrentRecord::Saving::Failed:
        break;
    case CurrentRecord::Saving::Saved:
        notebook.status.done(notebook.say(u"1 record saved.", u"已保存 1 条记录"));
        break;
    case CurrentRecord::Saving::Added:
        notebook.status.done(notebook.say(u"1 record added.", u"已添加 1 条记录"));
        break;
    case CurrentRecord::Saving::AddedAgain:
        notebook.status.done(notebook.say(
            u"The record no longer existed. 1 record added.", u"原记录已不存在, 已添加 1 条记录"));
        break;
    }
}

} // namespace

RecordCommands::RecordCommands(Notebook& notebook, WindowPorts window, Moments& moments)
    : notebook_(notebook)
    , list_(window.list)
    , search_(window.search)
    , lstInLineSrch_(window.find.lstInLineSrch)
    , mnu_ezdel_(window.mnu_ezdel)
    , progress_(window.progress)
    , dialogs_(window.dialogs)
    , moments_(moments)
    , current_(notebook, window.record, window.list, window.find.lstInLineSrch)
{
}

void RecordCommands::start()
{
    current_.clear();
    moments_.tableOpened.happen();
    refresh();
    moments_.listFilled.happen();
}

bool RecordCommands::isGivenUp() const
{
    return givenUp_ && givenUp_->generation == current_.generation() && givenUp_->texts == current_.shown();
}

// The answer counts for the text that was asked about: what came into the boxes while the question stood is
// asked about again.
bool RecordCommands::leave(const std::u16string& question, Buttons buttons)
{
    while (current_.hasUnsavedChanges()) {
        RecordTexts asked = current_.shown();
        const Answer answer =
            buttons == Buttons::YesNo ? dialogs_.askYesNo(question) : dialogs_.askYesNoCancel(question);
        if (answer == Answer::Cancel)
            return false;
        if (answer == Answer::Yes)
            return keep();
        if (asked != current_.shown())
            continue;
        givenUp_ = {current_.generation(), std::move(asked)};
        return true;
    }
    return true;
}

bool RecordCommands::leaveRecord()
{
    return leave(saveQuestion(notebook_), Buttons::YesNo);
}

// A search that was interrupted comes again: it does not ask twice about the same text.
bool RecordCommands::leaveForSearch()
{
    return isGivenUp() || leaveRecord();
}

// Saves before the record is left; a record that had to be added again is news even then.
bool RecordCommands::keep()
{
    const CurrentRecord::Saving saving = current_.save();
    if (saving == CurrentRecord::Saving::AddedAgain)
        saySaved(notebook_, saving);
    return saving != CurrentRecord::Saving::Failed;
}

void RecordCommands::search()
{
    if (leaveForSearch())
        fillList(kNoRecord);
}

bool RecordCommands::searchUnless(const std::function<bool()>& userGoesOn)
{
    bool gaveUp = false;
    if (leaveForSearch())
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

// Runs the query and shows the wanted record, or the first one where the list lacks it. Text that nobody
// was asked about stays.
void RecordCommands::fillList(std::int32_t wanted, const std::function<bool()>& giveUp)
{
    if (!dbQuery(notebook_, list_, search_, giveUp))
        return;
    if (current_.hasUnsavedChanges() && !isGivenUp())
        showRecordOf(current_.id());
    else
        showFirst(wanted);
    sayCount();
}

void RecordCommands::showFirst(std::int32_t wanted)
{
    if (list_.lstHeads.count() == 0) {
        current_.clear();
        return;
    }
    const std::vector<int> entries = entriesOf(list_.lstHeads, {wanted});
    const int entry = entries.empty() ? 0 : entries.front();
    assert(entry >= 0 && entry < list_.lstHeads.count());
    list_.lstHeads.select(entry);
    if (!current_.load(list_.lstHeads.datum(entry)))
        showRecordOf(current_.id());
}

void RecordCommands::sayCount()
{
    notebook_.status.found(foundText(notebook_, list_.lstHeads.count()));
}

void RecordCommands::selectHeading()
{
    const int entry = list_.lstHeads.current();
    if (entry < 0 || entry >= list_.lstHeads.count() || list_.lstHeads.datum(entry) == current_.id())
        return;
    const std::int32_t wanted = list_.lstHeads.datum(entry);
    const bool hadResults = lstInLineSrch_.visible();
    if (!leave(saveQuestion(notebook_), Buttons::YesNoCancel) || !current_.load(wanted)) {
        showRecordOf(current_.id());
        return;
    }
    if (list_.lstHeads.datum(list_.lstHeads.current()) != wanted)
        showRecordOf(wanted); // saving has changed the list
    if (hadResults)
        sayCount(); // the panel told of places in the text before
}

std::vector<std::int32_t> RecordCommands::selectedIds() const
{
    std::vector<std::int32_t> ids;
    for (const int entry : list_.lstHeads.selected())
        ids.push_back(list_.lstHeads.datum(entry));
    return ids;
}

// Selects the entry of a record without loading it.
void RecordCommands::showRecordOf(std::int32_t id)
{
    const std::vector<int> entries = entriesOf(list_.lstHeads, {id});
    list_.lstHeads.select(entries.empty() ? -1 : entries.front());
}

void RecordCommands::pasteNew()
{
    const bool unsavedNew = current_.id() < 0 && current_.hasUnsavedChanges();
    const std::u16string question =
        unsavedNew ? notebook_.say(u"Save a new snippet?", u"是否保存当前记录?") : saveQuestion(notebook_);
    if (!leave(question, Buttons::YesNo))
        return;
    if (const std::optional<std::u16string> text = clipboardText(notebook_))
        addFromClipboard(*text, !text->empty());
}

void RecordCommands::capture()
{
    const std::optional<std::u16string> text = clipboardText(notebook_);
    if (text && !text->empty() && leaveRecord())
        addFromClipboard(*text, true);
}

void RecordCommands::addFromClipboard(const std::u16string& text, bool fromClipboard)
{
    NewRecord record;
    record.text = text;
    record.link = list_.chkSort.caption();
    const std::optional<AddedRecord> added = addRecord(notebook_, record);
    if (!added)
        return;
    list_.chkSort.setCaption({});
    list_.lstHeads.insert(0, {added->title, added->id});
    list_.lstHeads.select(0);
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
    // Before the question: entries may change places while it stands.
    const std::vector<std::int32_t> ids = selectedIds();
    if (ids.empty())
        return;
    const std::u16string question =
        notebook_.say(u"Are you sure to delete selected records?    ", u"确定删除选定的记录?   ");
    if (!mnu_ezdel_.checked() && dialogs_.askYesNo(question) != Answer::Yes)
        return;
    // Text of a record that is to be deleted is not asked about; that of another one is, since the list will
    // load an entry afterwards.
    const bool shownIsAmongThem = std::find(ids.begin(), ids.end(), current_.id()) != ids.end();
    if (!shownIsAmongThem && !leaveRecord())
        return;

    const ChangedRecords deleted = deleteRecords(ids);
    if (deleted.ids.empty())
        return;
    const std::u16string count = text::decimal(static_cast<std::int64_t>(deleted.ids.size()));
    if (takeFromList({deleted.ids.begin(), deleted.ids.end()}, !deleted.whole()) && !deleted.result.failed())
        notebook_.status.done(notebook_.say(count + u" record(s) deleted.", u"已删除 " + count + u" 条记录"));
}

ChangedRecords RecordCommands::deleteRecords(const std::vector<std::int32_t>& ids)
{
    BulkWork work(notebook_, progress_, dialogs_, notebook_.say(u"Deleting records", u"正在删除记录"));
    return delRecords(notebook_, ids, work.user());
}

bool RecordCommands::takeFromList(const std::set<std::int32_t>& ids, bool afterFailure)
{
    const std::vector<int> gone = entriesOf(list_.lstHeads, ids);
    assert(std::is_sorted(gone.begin(), gone.end()));
    list_.lstHeads.remove(gone);
    if (afterFailure && !ids.contains(current_.id())) {
        showRecordOf(current_.id());
        return true;
    }
    const int next = gone.empty() ? 0 : std::min(gone.front(), list_.lstHeads.count() - 1);
    if (next < 0) {
        current_.clear();
        return true;
    }
    list_.lstHeads.select(next);
    return current_.load(list_.lstHeads.datum(next));
}

void RecordCommands::save()
{
    saySaved(notebook_, current_.save());
}

bool RecordCommands::mayClose()
{
    return leave(saveQuestion(notebook_), Buttons::YesNoCancel);
}

// Each is kept in its file until it is in the database or the user gives it up.
void RecordCommands::offerUnsavedTexts()
{
    for (const std::u16string& file : unsavedTextFiles(notebook_)) {
        const std::optional<UnsavedText> text = readUnsavedText(file);
        if (!text) {
            notebook_.status.failed(notebook_.say(
                u"This file of unsaved text is damaged: " + file, u"未保存文本的文件已损坏: " + file));
            continue;
        }
        const std::u16string name = text->title.empty() ? text::titleOf(text->text) : text->title;
        const Answer answer = dialogs_.askYesNoCancel(
            notebook_.say(u"When the last session ended, this text had not been saved:\r\n\r\n" + name +
                    u"\r\n\r\nTake it back? (No: it is given up; Cancel: ask again at the next start.)",
                u"上次会话结束时, 以下文本尚未保存:\r\n\r\n" + name +
                    u"\r\n\r\n是否恢复? (否: 放弃; 取消: 下次启动时再询问)"));
        if (answer == Answer::Cancel)
            continue;
        if (answer == Answer::Yes) {
            const std::optional<TakenBack> back = takeBack(notebook_, *text);
            if (!back)
                continue;
            saySaved(notebook_, back->added ? CurrentRecord::Saving::Added : CurrentRecord::Saving::Saved);
            refreshKeeping(back->id);
        }
        // Reached when the text is in the database or given up, and only then.
        if (!platform::removeFile(file))
            notebook_.status.failed(
                notebook_.say(u"This file cannot be removed: " + file, u"无法删除文件: " + file));
    }
}

} // namespace vellums

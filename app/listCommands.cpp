#include "app/listCommands.h"

#include "app/bulkWork.h"
#include "store/records/records.h"
#include "text/decimal.h"

namespace vellums {
namespace {

std::u16string counted(std::size_t count)
{
    return text::decimal(static_cast<std::int64_t>(count));
}

// "Failed to copy records. <reason>".
std::u16string copyFailure(const Notebook& notebook, const ChangedRecords& copied)
{
    return notebook.say(u"Failed to copy records.", u"记录复制失败。") + u" " +
        copied.result.reason(notebook);
}

} // namespace

ListCommands::ListCommands(
    Notebook& notebook, Progress& progress, Dialogs& dialogs, RecordCommands& records, ListMenus menus)
    : notebook_(notebook)
    , progress_(progress)
    , dialogs_(dialogs)
    , records_(records)
    , menus_(menus)
{
}

void ListCommands::rebuildMenu()
{
    buildTableMenu(notebook_, menus_.mnu_avtables, menus_.mnu_moverec);
}

void ListCommands::stick()
{
    setSticky(true);
}

void ListCommands::unstick()
{
    setSticky(false);
}

// The order of the list changes, and so does what the shown record remembers of its stamp and date: a
// later save must not write the old ones back, not even when only some records could be changed.
void ListCommands::setSticky(bool sticky)
{
    const std::vector<std::int32_t> ids = records_.selectedIds();
    if (ids.empty() || !records_.leaveRecord())
        return;
    ChangedRecords changed;
    {
        BulkWork work(notebook_, progress_, dialogs_,
            sticky ? notebook_.say(u"Sticking records", u"正在置顶记录")
                   : notebook_.say(u"Unsticking records", u"正在取消置顶"));
        changed = (sticky ? setStickyRecs : ClearStickyRecs)(notebook_, ids, work.user());
    }
    if (!changed.whole())
        records_.current().rereadStampAndDate();
    if (!changed.ids.empty())
        records_.refreshKeeping(records_.current().id());
}

std::u16string ListCommands::targetOf(std::size_t index) const
{
    return index < menus_.mnu_avtables.size() ? menus_.mnu_avtables.at(index).tag : std::u16string();
}

void ListCommands::moveTo(std::size_t index)
{
    const std::u16string target = targetOf(index);
    const std::vector<std::int32_t> ids = records_.selectedIds();
    if (target.empty() || ids.empty() || !records_.leaveRecord())
        return;
    MovedRecords moved;
    {
        BulkWork work(notebook_, progress_, dialogs_, notebook_.say(u"Moving records", u"正在移动记录"));
        moved = moveRecords(notebook_, target, ids, work.user());
    }
    if (moved.copied.result.failed())
        notebook_.status.failed(copyFailure(notebook_, moved.copied));
    if (moved.deleted.result.failed())
        notebook_.status.failed(notebook_.say(u"Failed to delete source records.", u"源记录删除失败。") +
            u" " + moved.deleted.result.reason(notebook_));
    // When everything was done, those that were not copied are gone, too.
    const std::vector<std::int32_t>& left = moved.whole() ? ids : moved.deleted.ids;
    if (!left.empty() && !records_.takeFromList({left.begin(), left.end()}, !moved.whole()))
        return;
    const std::u16string count = counted(moved.deleted.ids.size());
    if (!left.empty() || moved.whole())
        notebook_.status.done(
            notebook_.say(count + u" record(s) moved to " + target, count + u" 条记录已移动至 " + target));
}

void ListCommands::copyTo(std::size_t index)
{
    const std::u16string target = targetOf(index);
    const std::vector<std::int32_t> ids = records_.selectedIds();
    if (target.empty() || ids.empty() || !records_.leaveRecord())
        return;
    BulkWork work(notebook_, progress_, dialogs_, notebook_.say(u"Copying records", u"正在复制记录"));
    const ChangedRecords copied = copyRecords(notebook_, target, ids, work.user());
    const std::u16string count = counted(copied.ids.size());
    if (copied.result.failed())
        notebook_.status.failed(copyFailure(notebook_, copied));
    else
        notebook_.status.done(
            notebook_.say(count + u" record(s) copied to " + target, count + u" 条记录已复制至 " + target));
}

} // namespace vellums

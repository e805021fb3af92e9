#include "app/listCommands.h"

#include "platform/text.h"
#include "store/records.h"

namespace vellums {
namespace {

std::u16string counted(std::size_t count)
{
    return platform::decimal(static_cast<std::int64_t>(count));
}

std::u16string copyFailure(const Notebook& notebook)
{
    return notebook.say(u"Failed to copy records.", u"记录复制失败。");
}

} // namespace

ListCommands::ListCommands(Notebook& notebook, MainWindow window, RecordCommands& records, ListMenus menus)
    : notebook_(notebook)
    , window_(window)
    , records_(records)
    , menus_(menus)
{
}

void ListCommands::rebuildMenu()
{
    buildTableMenu(notebook_, menus_.mnu_avtables, menus_.mnu_moverec);
}

std::vector<std::int32_t> ListCommands::selectedIds() const
{
    std::vector<std::int32_t> ids;
    for (const int entry : window_.lstHeads.selected())
        ids.push_back(window_.lstHeads.datum(entry));
    return ids;
}

void ListCommands::stick()
{
    setSticky(true);
}

void ListCommands::unstick()
{
    setSticky(false);
}

// The order of the list changes, and so does what the shown record remembers of its stamp and date.
void ListCommands::setSticky(bool sticky)
{
    const std::vector<std::int32_t> ids = selectedIds();
    if (ids.empty() || !records_.leaveRecord())
        return;
    if (sticky ? setStickyRecs(notebook_, ids) : ClearStickyRecs(notebook_, ids))
        records_.refreshKeeping(records_.current().id());
}

std::u16string ListCommands::targetOf(std::size_t index) const
{
    return index < menus_.mnu_avtables.size() ? menus_.mnu_avtables.at(index).tag : std::u16string();
}

// Only what was copied is deleted: a failure in between leaves records in both tables, never in none.
void ListCommands::moveTo(std::size_t index)
{
    const std::u16string target = targetOf(index);
    const std::vector<std::int32_t> ids = selectedIds();
    if (target.empty() || ids.empty() || !records_.leaveRecord())
        return;
    const CopiedRecords copied = copyRecords(notebook_, target, ids);
    const std::size_t deleted = delRecords(notebook_, copied.ids);
    const bool whole = !copied.failed && deleted == copied.ids.size();
    // Without a failure those that were not copied are gone, too.
    const std::vector<std::int32_t>& left = whole ? ids : copied.ids;
    const std::set<std::int32_t> gone(
        left.begin(), left.begin() + static_cast<std::ptrdiff_t>(whole ? ids.size() : deleted));
    if (!gone.empty() && !records_.takeFromList(gone, !whole))
        return;
    if (copied.failed)
        notebook_.status.failed(copyFailure(notebook_));
    else if (!whole)
        notebook_.status.failed(notebook_.say(u"Failed to delete source records.", u"源记录删除失败。"));
    else
        notebook_.status.done(notebook_.say(counted(deleted) + u" record(s) moved to " + target,
            counted(deleted) + u" 条记录已移动至 " + target));
}

void ListCommands::copyTo(std::size_t index)
{
    const std::u16string target = targetOf(index);
    const std::vector<std::int32_t> ids = selectedIds();
    if (target.empty() || ids.empty() || !records_.leaveRecord())
        return;
    const CopiedRecords copied = copyRecords(notebook_, target, ids);
    if (copied.failed)
        notebook_.status.failed(copyFailure(notebook_));
    else
        notebook_.status.done(notebook_.say(counted(copied.ids.size()) + u" record(s) copied to " + target,
            counted(copied.ids.size()) + u" 条记录已复制至 " + target));
}

} // namespace vellums

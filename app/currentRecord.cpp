#include "app/currentRecord.h"

#include "platform/clock.h"
#include "platform/text.h"
#include "store/sqlText.h"

namespace vellums {
namespace {

constexpr std::int32_t kNewRecord = -1;

} // namespace

std::u16string dateText(const std::optional<double>& date)
{
    using platform::decimal;
    const auto time = date ? platform::localTime(*date) : std::nullopt;
    if (!time)
        return {};
    return decimal(time->year, 4) + u"-" + decimal(time->month, 2) + u"-" + decimal(time->day, 2) + u" " +
        decimal(time->hour, 2) + u":" + decimal(time->minute, 2) + u":" + decimal(time->second, 2);
}

CurrentRecord::CurrentRecord(Notebook& notebook, MainWindow window)
    : notebook_(notebook)
    , window_(window)
{
    record_.id = kNewRecord;
}

bool CurrentRecord::load(std::int32_t id)
{
    std::optional<SnippetRecord> loaded = getRecText(notebook_, id);
    if (!loaded)
        return false;
    record_ = std::move(*loaded);
    conn_ = notebook_.dbConn;
    table_ = notebook_.dbTable;
    window_.txtType.setText(record_.head);
    window_.txtTarget().setText(record_.text);
    // Boxes may show a text otherwise than it was given (a U+0000 ends it): what they hold now counts.
    keepAsSaved(window_.txtType.text(), window_.txtTarget().text());
    showDetails();
    forgetResults();
    return true;
}

void CurrentRecord::clear()
{
    record_ = {};
    record_.id = kNewRecord;
    window_.txtType.setText({});
    window_.txtTarget().setText({});
    keepAsSaved({}, {});
    showDetails();
    forgetResults();
}

// The places found belong to the text before; without its mark the list is made anew by the next find.
void CurrentRecord::forgetResults()
{
    window_.lstInLineSrch.setTag({});
}

bool CurrentRecord::hasUnsavedChanges() const
{
    return window_.txtTarget().text() != savedText_ || window_.txtType.text() != savedTitle_;
}

bool CurrentRecord::save()
{
    const std::u16string title = window_.txtType.text();
    const std::u16string text = window_.txtTarget().text();
    if (record_.id < 0)
        return add(title, text, notebook_.say(u"1 record added.", u"已添加 1 条记录"));
    switch (modRecord(origin(), record_.id, title, text, record_.type)) {
    case Saved::Failed:
        return false;
    case Saved::Gone:
        return add(title, text,
            notebook_.say(
                u"The record no longer existed. 1 record added.", u"原记录已不存在, 已添加 1 条记录"));
    case Saved::Yes:
        break;
    }
    record_.date = platform::oleNow();
    keepAsSaved(title, text);
    if (conn_ == notebook_.dbConn && table_ == notebook_.dbTable)
        renameHeading(record_.id, platform::replaceAll(title, u"\r\n", u""));
    showDetails();
    notebook_.status.done(notebook_.say(u"1 record saved.", u"已保存 1 条记录"));
    return true;
}

bool CurrentRecord::add(const std::u16string& title, const std::u16string& text, const std::u16string& report)
{
    NewRecord record;
    record.text = text;
    record.link = record_.link.empty() ? window_.chkSort.caption() : record_.link;
    if (!title.empty())
        record.title = sqlQuoted(platform::replaceAll(title, u"\r\n", u""));
    const Notebook there = record_.id < 0 ? notebook_ : origin();
    const std::optional<AddedRecord> added = addRecord(there, record);
    if (!added)
        return false;
    window_.chkSort.setCaption({});
    record_.link = record.link;
    conn_ = there.dbConn;
    table_ = there.dbTable;
    const std::int32_t idBefore = record_.id;
    record_.id = added->id;
    record_.type.clear();
    record_.date = platform::oleNow();
    window_.txtType.setText(added->title);
    keepAsSaved(window_.txtType.text(), text);
    if (conn_ == notebook_.dbConn && table_ == notebook_.dbTable) {
        removeHeading(idBefore);
        window_.lstHeads.insert(0, {added->title, added->id});
        window_.lstHeads.select(0);
    }
    showDetails();
    notebook_.status.done(report);
    return true;
}

void CurrentRecord::renameHeading(std::int32_t id, const std::u16string& title)
{
    for (int i = 0; i < window_.lstHeads.count(); ++i)
        if (window_.lstHeads.datum(i) == id)
            window_.lstHeads.setText(i, title);
}

void CurrentRecord::removeHeading(std::int32_t id)
{
    std::vector<int> entries;
    for (int i = 0; i < window_.lstHeads.count(); ++i)
        if (window_.lstHeads.datum(i) == id)
            entries.push_back(i);
    window_.lstHeads.remove(entries);
}

void CurrentRecord::keepAsSaved(const std::u16string& title, const std::u16string& text)
{
    savedTitle_ = title;
    savedText_ = text;
}

void CurrentRecord::showDetails()
{
    window_.lblDate.setText(dateText(record_.date));
    window_.ucStatusRight.setText(record_.link);
}

Notebook CurrentRecord::origin() const
{
    Notebook there = notebook_;
    there.dbConn = conn_;
    there.dbTable = table_;
    return there;
}

} // namespace vellums

// The boxes and what is remembered of the record change together or not at all: the texts are put into the
// boxes first, and only when that is done does the record they belong to become the current one, by steps
// that cannot fail. Where putting them fails half way (no memory), the texts before come back. So a text
// is never taken for that of another record.
#include "app/currentRecord.h"

#include "app/headingList.h"
#include "platform/clock.h"
#include "text/oleDate.h"
#include "text/pieces.h"

namespace vellums {
namespace {

constexpr std::int32_t kNewRecord = -1;

} // namespace

std::u16string dateText(const std::optional<double>& date)
{
    const auto time = date ? text::localTime(*date) : std::nullopt;
    return time ? text::isoDateTime(*time) : std::u16string();
}

void hideResults(ListBox& lstInLineSrch)
{
    lstInLineSrch.setVisible(false);
    lstInLineSrch.fill({});
    lstInLineSrch.setTag({});
}

CurrentRecord::CurrentRecord(Notebook& notebook, RecordPorts boxes, ListPorts list, ListBox& lstInLineSrch)
    : notebook_(notebook)
    , boxes_(boxes)
    , list_(list)
    , lstInLineSrch_(lstInLineSrch)
{
    record_.id = kNewRecord;
}

bool CurrentRecord::load(std::int32_t id)
{
    std::optional<SnippetRecord> loaded = getRecText(notebook_, id);
    if (!loaded)
        return false;
    show(std::move(*loaded));
    return true;
}

void CurrentRecord::clear()
{
    SnippetRecord none;
    none.id = kNewRecord;
    show(std::move(none));
}

void CurrentRecord::show(SnippetRecord record)
{
    std::u16string conn = notebook_.dbConn;
    std::u16string table = notebook_.dbTable;
    RecordTexts texts;
    try {
        boxes_.txtTarget.setText(record.text);
        boxes_.txtType.setText(record.head);
        texts = shown(); // a box may show a text otherwise than it was given: what it holds now counts
        showDetails(record);
    } catch (...) {
        showSaved();
        throw;
    }
    record_ = std::move(record);
    conn_ = std::move(conn);
    table_ = std::move(table);
    saved_ = std::move(texts);
    ++generation_;
    hideResults(lstInLineSrch_); // they belong to the text before
}

// After a failure. Where not even this can be done, what the boxes hold counts as a new record: it may be
// saved twice, but never over another one.
void CurrentRecord::showSaved() noexcept
{
    try {
        boxes_.txtTarget.setText(saved_.text);
        boxes_.txtType.setText(saved_.title);
        showDetails(record_);
    } catch (...) {
        record_.id = kNewRecord;
    }
}

void CurrentRecord::rereadStampAndDate()
{
    if (record_.id < 0)
        return;
    const std::optional<SnippetRecord> now = getRecText(origin(), record_.id);
    if (!now)
        return;
    record_.type = now->type;
    record_.date = now->date;
    showDetails(record_);
}

RecordTexts CurrentRecord::shown() const
{
    return {boxes_.txtType.text(), boxes_.txtTarget.text()};
}

bool CurrentRecord::hasUnsavedChanges() const
{
    return boxes_.txtTarget.text() != saved_.text || boxes_.txtType.text() != saved_.title;
}

CurrentRecord::Saving CurrentRecord::save()
{
    RecordTexts texts = shown();
    if (record_.id < 0)
        return add(texts) ? Saving::Added : Saving::Failed;
    const std::u16string heading = text::replaceAll(texts.title, u"\r\n", u""); // as it will be stored
    switch (modRecord(origin(), record_.id, texts.title, texts.text, record_.type)) {
    case Saved::Failed:
        return Saving::Failed;
    case Saved::Gone:
        return add(texts) ? Saving::AddedAgain : Saving::Failed;
    case Saved::Yes:
        break;
    }
    saved_ = std::move(texts);
    record_.date = platform::oleNow();
    ++generation_;
    if (isInList())
        for (const int entry : entriesOf(list_.lstHeads, {record_.id}))
            list_.lstHeads.setText(entry, heading);
    showDetails(record_);
    return Saving::Saved;
}

// Adds what the boxes hold as a new record: to the current table or, where they show a record that is gone,
// to the table it came from. What can throw comes before the statement; once that has been carried out, the
// record is remembered first and shown afterwards, so that a failure in between cannot have the next save add
// it a second time.
bool CurrentRecord::add(const RecordTexts& texts)
{
    NewRecord record;
    record.text = texts.text;
    record.link = linkToStore();
    record.title = texts.title;
    Notebook there = record_.id < 0 ? notebook_ : origin();
    RecordTexts saved = texts;
    const std::optional<AddedRecord> added = addRecord(there, record);
    if (!added)
        return false;
    const std::int32_t idBefore = record_.id;
    record_.id = added->id;
    record_.type.clear();
    record_.date = platform::oleNow();
    conn_ = std::move(there.dbConn);
    table_ = std::move(there.dbTable);
    record_.link = std::move(record.link);
    ++generation_;
    list_.chkSort.setCaption({});
    boxes_.txtType.setText(added->title);
    saved.title = boxes_.txtType.text();
    saved_ = std::move(saved); // up to here a failure leaves unsaved text of the new record
    if (isInList()) {
        list_.lstHeads.remove(entriesOf(list_.lstHeads, {idBefore}));
        list_.lstHeads.insert(0, {added->title, added->id});
        list_.lstHeads.select(0);
    }
    showDetails(record_);
    return true;
}

UnsavedText CurrentRecord::unsavedText() const
{
    UnsavedText kept;
    kept.conn = record_.id < 0 ? notebook_.dbConn : conn_;
    kept.parent = notebook_.dbParent;
    kept.table = record_.id < 0 ? notebook_.dbTable : table_;
    kept.id = record_.id;
    kept.titleBefore = saved_.title;
    kept.textBefore = saved_.text;
    kept.title = boxes_.txtType.text();
    kept.text = boxes_.txtTarget.text();
    kept.link = linkToStore();
    return kept;
}

// What was handed over with a text becomes the link of the record that it goes into.
std::u16string CurrentRecord::linkToStore() const
{
    return record_.link.empty() ? list_.chkSort.caption() : record_.link;
}

// The list shows the table that the record belongs to.
bool CurrentRecord::isInList() const
{
    return conn_ == notebook_.dbConn && table_ == notebook_.dbTable;
}

void CurrentRecord::showDetails(const SnippetRecord& record)
{
    boxes_.lblDate.setText(dateText(record.date));
    boxes_.ucStatusRight.setText(record.link);
}

Notebook CurrentRecord::origin() const
{
    Notebook there = notebook_;
    there.dbConn = conn_;
    there.dbTable = table_;
    return there;
}

} // namespace vellums

// The record that the title box and the text box show.
#pragma once

#include "app/unsavedText.h"
#include "ports/windowPorts.h"
#include "store/records/records.h"

#include <cstdint>

namespace vellums {

// What the two boxes hold.
struct RecordTexts {
    std::u16string title;
    std::u16string text;
    bool operator==(const RecordTexts&) const = default;
};

class CurrentRecord {
public:
    // A record is shown in its boxes and has its heading in the list; the places found in its text
    // (lstInLineSrch) go with it.
    CurrentRecord(Notebook& notebook, RecordPorts boxes, ListPorts list, ListBox& lstInLineSrch);

    // The ID; negative for a new record that is not in the table yet.
    std::int32_t id() const { return record_.id; }

    // Loads a record into the boxes. False: everything stays as it is, and the reason is told. What it
    // throws (no memory) leaves everything as it is, too.
    bool load(std::int32_t id);
    // Empties the boxes; what is typed then is a new record.
    void clear();
    // What other commands have changed in the table: the sticky stamp and the date. The texts stay.
    void rereadStampAndDate();

    RecordTexts shown() const;
    // Title or text differ from what was loaded or saved last.
    bool hasUnsavedChanges() const;
    // Changes whenever a record is shown or saved, so that what was said about one text is not taken for
    // another.
    std::uint64_t generation() const { return generation_; }

    // Saves what the boxes hold, where the record came from. A new record and one that is gone from its
    // table are added, and their heading is put into the list.
    enum class Saving {
        Failed, // nothing was saved, the boxes keep their text, the reason is told
        Saved,
        Added,
        AddedAgain, // the record was gone
    };
    Saving save();

    // What would be lost if the program ended now: for the next start.
    UnsavedText unsavedText() const;

private:
    void show(SnippetRecord record);
    void showSaved() noexcept;
    void showDetails(const SnippetRecord& record);
    bool add(const RecordTexts& texts);
    std::u16string linkToStore() const;
    bool isInList() const;
    Notebook origin() const;

    Notebook& notebook_;
    RecordPorts boxes_;
    ListPorts list_;
    ListBox& lstInLineSrch_;
    SnippetRecord record_;
    std::u16string conn_; // where the record came from
    std::u16string table_;
    RecordTexts saved_; // as the boxes held them after loading or saving
    std::uint64_t generation_ = 0;
};

// Empties the list of places found in a text and takes it away.
void hideResults(ListBox& lstInLineSrch);

// "yyyy-mm-dd hh:nn:ss"; empty without a date.
std::u16string dateText(const std::optional<double>& date);

} // namespace vellums

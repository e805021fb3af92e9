// The record that the title box and the text box show.
#pragma once

#include "app/mainWindow.h"
#include "store/records.h"

#include <cstdint>

namespace vellums {

class CurrentRecord {
public:
    CurrentRecord(Notebook& notebook, MainWindow window);

    // The ID; negative for a new record that is not in the table yet.
    std::int32_t id() const { return record_.id; }

    // Loads a record into the boxes. False: they stay as they are, and the panel says why.
    bool load(std::int32_t id);
    // Empties the boxes; what is typed then is a new record.
    void clear();

    // Title or text differ from what was loaded or saved last.
    bool hasUnsavedChanges() const;

    // Saves what the boxes hold, where the record came from. False: nothing was saved, the boxes keep
    // their text, and the panel says why. A new record and one that is gone from its table are added,
    // and their heading is put into the list.
    bool save();

    // The list shows this title for the record.
    void renameHeading(std::int32_t id, const std::u16string& title);

private:
    void showDetails();
    void forgetResults();
    void removeHeading(std::int32_t id);
    bool add(const std::u16string& title, const std::u16string& text, const std::u16string& report);
    void keepAsSaved(const std::u16string& title, const std::u16string& text);
    Notebook origin() const;

    Notebook& notebook_;
    MainWindow window_;
    SnippetRecord record_;
    std::u16string conn_; // where the record came from
    std::u16string table_;
    std::u16string savedTitle_; // as the boxes held them after loading or saving
    std::u16string savedText_;
};

// "yyyy-mm-dd hh:nn:ss"; empty without a date.
std::u16string dateText(const std::optional<double>& date);

} // namespace vellums

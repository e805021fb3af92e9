// The commands around the current record and the heading list. Whatever would replace the text that is
// shown asks about unsaved changes first, and stops when the save failed.
#pragma once

#include "app/currentRecord.h"
#include "app/mainWindow.h"
#include "app/moments.h"

#include <set>

namespace vellums {

class RecordCommands {
public:
    RecordCommands(Notebook& notebook, MainWindow window, Moments& moments);

    CurrentRecord& current() { return current_; }

    // At the end of the window's initialisation: the table's search fields, the first query.
    void start();

    void search();        // what the search box asks for
    void reload();        // the same again
    void selectHeading(); // the user selected another entry of the list
    void pasteNew();      // "+": a new record from the clipboard, or an empty one
    void capture();       // F5: a new record from the clipboard if it holds text
    void duplicate();
    void deleteSelected();
    void save();
    bool mayClose(); // false: the window stays open

    // Before something replaces what is shown: asks, saves. False: stop.
    bool leaveRecord();
    // Fills the list again without asking: after an import or a maintenance command.
    void refresh();

private:
    void showRecordOf(std::int32_t id);
    std::vector<int> entriesOf(const std::set<std::int32_t>& ids) const;
    void addFromClipboard(const std::u16string& text, bool fromClipboard);

    Notebook& notebook_;
    MainWindow window_;
    Moments& moments_;
    CurrentRecord current_;
};

} // namespace vellums

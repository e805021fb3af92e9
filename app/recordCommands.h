// The commands around the current record and the heading list. Whatever would replace the text that is
// shown asks about unsaved changes first, and stops when the save failed.
//
// They take the whole window, as they hold it together: the search box fills the list, an entry of the list
// shows a record, and a record that is saved, deleted or left changes the list. Of the find box they touch
// nothing but the places found, which belong to the text that is shown.
#pragma once

#include "app/currentRecord.h"
#include "ports/moments.h"
#include "ports/windowPorts.h"

#include <functional>
#include <optional>
#include <set>
#include <vector>

namespace vellums {

class RecordCommands {
public:
    RecordCommands(Notebook& notebook, WindowPorts window, Moments& moments);

    CurrentRecord& current() { return current_; }
    const CurrentRecord& current() const { return current_; }

    // At the end of the window's initialisation: the table's search fields, the first query.
    void start();

    void search(); // what the search box asks for
    // The same, but given up as soon as the user goes on typing, which the routine is asked for now and
    // then. False: it was given up, and the list is as before.
    bool searchUnless(const std::function<bool()>& userGoesOn);
    void reload();        // the same again
    void selectHeading(); // the user selected another entry of the list
    void pasteNew();      // "+": a new record from the clipboard, or an empty one
    void capture();       // F5: a new record from the clipboard if it holds text
    void duplicate();
    void deleteSelected();
    void save();
    bool mayClose(); // false: the window stays open
    // At the program's start: texts that the end of a session had cut off.
    void offerUnsavedTexts();

    // Of the entries that are selected in the list, from top to bottom.
    std::vector<std::int32_t> selectedIds() const;
    // Before something replaces what is shown: asks, saves. False: stop.
    bool leaveRecord();
    // Fills the list again without asking: after an import or a maintenance command. Text that is not
    // saved, typed while the command ran, stays in the boxes.
    void refresh();
    // The same, but this record stays selected and is loaded anew where the list still has it.
    void refreshKeeping(std::int32_t id);
    // Takes records that are gone out of the list and shows the one that took the place of the first, or
    // the last. After a failure or a Stop the shown record stays if it is still there. False: a record could
    // not be loaded, and the panel says why.
    bool takeFromList(const std::set<std::int32_t>& ids, bool afterFailure);

private:
    enum class Buttons { YesNo, YesNoCancel };
    bool leave(const std::u16string& question, Buttons buttons);
    bool leaveForSearch();
    // The unsaved text was asked about, and the user gave it up.
    bool isGivenUp() const;
    bool keep();
    void fillList(std::int32_t wanted, const std::function<bool()>& giveUp = {});
    void showFirst(std::int32_t wanted);
    void sayCount();
    void showRecordOf(std::int32_t id);
    ChangedRecords deleteRecords(const std::vector<std::int32_t>& ids);
    void addFromClipboard(const std::u16string& text, bool fromClipboard);

    Notebook& notebook_;
    ListPorts list_;
    SearchPorts search_;
    ListBox& lstInLineSrch_;
    CheckItem& mnu_ezdel_;
    Progress& progress_;
    Dialogs& dialogs_;
    Moments& moments_;
    CurrentRecord current_;
    // The text that the user gave up, while it is still in the boxes.
    struct GivenUp {
        std::uint64_t generation = 0; // of the current record
        RecordTexts texts;
    };
    std::optional<GivenUp> givenUp_;
};

} // namespace vellums

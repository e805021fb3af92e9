// The commands that bring files and folders into the current table.
#pragma once

#include "app/recordCommands.h"

#include <string>
#include <vector>

namespace vellums {

class ImportCommands {
public:
    ImportCommands(Notebook& notebook, Progress& progress, Dialogs& dialogs, RecordCommands& records);

    // The user chooses a folder and confirms it.
    void importFolder();
    // Folders are imported with all that lies below them, files each for itself; what does not exist is
    // passed over. Unsaved text is asked about first. At the end the list is filled again.
    void importPaths(const std::vector<std::u16string>& paths);

private:
    Notebook& notebook_;
    Progress& progress_;
    Dialogs& dialogs_;
    RecordCommands& records_;
};

} // namespace vellums

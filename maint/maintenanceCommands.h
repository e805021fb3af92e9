// The maintenance commands of the menu.
#pragma once

#include "app/recordCommands.h"

namespace vellums {

class MaintenanceCommands {
public:
    MaintenanceCommands(Notebook& notebook, Progress& progress, Dialogs& dialogs, RecordCommands& records);

    // Unsaved text is asked about first; at the end the list is filled again.
    void removeDuplicates();
    // Unsaved text is no obstacle: the file that is replaced holds none of it.
    void compactData();

private:
    Notebook& notebook_;
    Progress& progress_;
    Dialogs& dialogs_;
    RecordCommands& records_;
};

} // namespace vellums

// What happens before the window exists: the program's own files, the language, the database and the
// table.
#pragma once

#include "store/notebook.h"

#include <functional>
#include <string>

namespace vellums {

// The part of it that every program of the notebook does: its folder, the names of its own files, and what
// the settings file says of safety copies.
void useProgramFolder(Notebook& notebook, const std::u16string& appDir, const std::u16string& exeName);

// Fills the notebook for a program that lies in that folder under that name. Creates Vellums.mdb where
// there is no database at all; a failure to do so is shown in the panel, and the program goes on.
// chooseProvider is called once the settings file is known; without it the notebook has its provider
// already. True: a database was created, this is a first start.
bool startUp(Notebook& notebook, const std::u16string& appDir, const std::u16string& exeName,
    const std::function<void(Notebook&)>& chooseProvider = {});

} // namespace vellums

// The window program. What is made first goes last: OLE outlives the providers, these the notebook that
// points to one of them, and the notebook the window.
#include "app/start/commandLine.h"
#include "app/start/engines.h"
#include "app/start/startUp.h"
#include "platform/entryPoint.h"
#include "platform/files.h"
#include "platform/programPath.h"
#include "store/ado/adoProvider.h"
#include "ui/main/frmMain.h"

#include <utility>

#include <commctrl.h>
#include <ole2.h>

namespace {

// OLE for the folder dialog and for installed providers, for as long as the program runs.
struct Ole {
    Ole()
        : result(OleInitialize(nullptr))
    {
    }
    ~Ole()
    {
        if (SUCCEEDED(result))
            OleUninitialize();
    }
    HRESULT result;
};

} // namespace

int programMain(const std::vector<std::u16string>& /*arguments*/, const std::u16string& commandLine)
{
    using namespace vellums;
    const Ole ole;
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&controls);

    Engines engines({[](const std::u16string& id) { return AdoProvider::usable(id); },
        [](const std::u16string& id) { return std::make_unique<AdoProvider>(id); }});
    Outcome outcome; // what start-up has to say is shown by the window
    Notebook notebook(outcome);
    const bool firstStart = startUp(notebook, platform::programFolder(), platform::programName(),
        [&](Notebook& started) { engines.serve(started); });
    ui::frmMain window(notebook, outcome);
    Start start = parseCommandLine(commandLine);
    for (std::u16string& path : start.paths)
        // Now, while the current folder is still that of whoever started the program.
        path = platform::absolutePath(path);
    window.open({std::move(start), firstStart}, SW_SHOWNORMAL);
    return ui::runWindow(window);
}

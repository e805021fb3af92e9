// The window program.
#include "app/commandLine.h"
#include "app/startUp.h"
#include "platform/entryPoint.h"
#include "platform/programPath.h"
#include "store/embedded/embeddedProvider.h"
#include "ui/frmMain.h"

#include <commctrl.h>
#include <ole2.h>

namespace {

// OLE for the folder dialog, for as long as the program runs.
struct Ole {
    Ole() { OleInitialize(nullptr); }
    ~Ole() { OleUninitialize(); }
};

} // namespace

int programMain(const std::vector<std::u16string>& /*arguments*/, const std::u16string& commandLine)
{
    using namespace vellums;
    const Ole ole;
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&controls);

    const EmbeddedProvider provider;
    ui::LateStatus status;
    Notebook notebook(status);
    notebook.provider = &provider;
    ui::frmMain window(notebook);
    status.target = &window.statusLine();
    const bool firstStart = startUp(notebook, platform::programFolder(), platform::programName());
    window.open({parseCommandLine(commandLine).paths, firstStart}, SW_SHOWNORMAL);
    return ui::runWindow(window);
}

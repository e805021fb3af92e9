#include "ui/windows/taskbarProgress.h"

#include <initguid.h>
#include <shobjidl.h>

namespace vellums::ui {

TaskbarProgress::~TaskbarProgress()
{
    if (taskbar_ != nullptr)
        taskbar_->Release();
}

void TaskbarProgress::show(std::size_t done, std::size_t total)
{
    // Made when something is to be shown first: most commands are over before.
    if (!asked_) {
        asked_ = true;
        void* made = nullptr;
        if (SUCCEEDED(
                CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER, IID_ITaskbarList3, &made)))
            taskbar_ = static_cast<ITaskbarList3*>(made);
    }
    if (taskbar_ == nullptr)
        return;
    if (total == 0)
        taskbar_->SetProgressState(window_, TBPF_INDETERMINATE);
    else
        taskbar_->SetProgressValue(window_, done, total);
}

void TaskbarProgress::hide()
{
    if (taskbar_ != nullptr)
        taskbar_->SetProgressState(window_, TBPF_NOPROGRESS);
}

} // namespace vellums::ui

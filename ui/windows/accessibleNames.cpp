#include "ui/windows/accessibleNames.h"

#include "ui/windows/childWindow.h"
#include "ui/windows/wide.h"

#include <initguid.h>

#include <oleacc.h>

namespace vellums::ui {
namespace {

// PROPID_ACC_NAME of the accessibility service.
constexpr GUID kNameProperty = {0x608d3df8, 0x8128, 0x4aa7, {0xa4, 0x28, 0xf5, 0x5e, 0x49, 0x26, 0x72, 0x91}};
constexpr GUID kServiceClass = {0xb5f8350b, 0x0548, 0x48b1, {0xa6, 0xee, 0x88, 0xbd, 0x00, 0xb4, 0xa5, 0xe7}};
constexpr GUID kServiceInterface = {
    0x6e26e776, 0x04f0, 0x495d, {0x80, 0xe4, 0x33, 0x30, 0x35, 0x2e, 0x31, 0x69}};

} // namespace

void createUnseenLabel(HWND parent, int id, const std::u16string& name)
{
    createChild(parent, L"STATIC", id, 0, name);
}

void setAccessibleName(HWND control, const std::u16string& name)
{
    IAccPropServices* service = nullptr;
    if (FAILED(CoCreateInstance(kServiceClass, nullptr, CLSCTX_INPROC_SERVER, kServiceInterface,
            reinterpret_cast<void**>(&service))))
        return;
    service->SetHwndPropStr(
        control, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, kNameProperty, wide(name));
    service->Release();
}

} // namespace vellums::ui

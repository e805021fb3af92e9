#include "platform/process.h"

#include "platform/win32/ownedHandle.h"
#include "platform/win32/systemPath.h"
#include "text/letterCase.h"

#include <windows.h>

namespace vellums::platform {
namespace {

// A mutex name may hold no backslash and no more than MAX_PATH characters; the end of a path tells
// more than its beginning, and a sum over the whole of it tells the rest apart.
std::wstring mutexName(const std::u16string& executable)
{
    std::u16string path = text::lowerCase(executable);
    std::uint64_t sum = 14695981039346656037u;
    for (char16_t& c : path) {
        if (c == u'\\')
            c = u'/';
        sum = (sum ^ c) * 1099511628211u;
    }
    constexpr std::size_t kKept = 150;
    if (path.size() > kKept)
        path.erase(0, path.size() - kKept);
    return L"Local\\" + toWide(path) + L"?" + std::to_wstring(sum);
}

} // namespace

std::uint32_t processId()
{
    return GetCurrentProcessId();
}

struct SingleInstance::Claim {
    OwnedHandle mutex;
    bool first = true;
};

SingleInstance::SingleInstance(const std::u16string& executable)
    : claim_(std::make_unique<Claim>())
{
    claim_->mutex = OwnedHandle(CreateMutexW(nullptr, FALSE, mutexName(executable).c_str()));
    const DWORD code = GetLastError();
    // Denied: it exists, made by a program with more rights.
    claim_->first = claim_->mutex ? code != ERROR_ALREADY_EXISTS : code != ERROR_ACCESS_DENIED;
}

SingleInstance::SingleInstance(SingleInstance&&) noexcept = default;
SingleInstance& SingleInstance::operator=(SingleInstance&&) noexcept = default;
SingleInstance::~SingleInstance() = default;

bool SingleInstance::first() const
{
    return claim_->first;
}

} // namespace vellums::platform

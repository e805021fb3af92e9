#include "platform/process.h"

#include "platform/posix/descriptor.h"
#include "platform/posix/systemPath.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace vellums::platform {

std::uint32_t processId()
{
    return static_cast<std::uint32_t>(::getpid());
}

// A lock on the executable itself: nothing is left behind, and every path to the file means the same.
struct SingleInstance::Claim {
    OwnedDescriptor file;
    bool first = true;

    explicit Claim(const std::u16string& executable)
        : file(::open(systemPath(executable).c_str(), O_RDONLY | O_CLOEXEC))
    {
        // Where the executable cannot be opened nobody can be told from anybody, and the program runs.
        first = file.fd < 0 || ::flock(file.fd, LOCK_EX | LOCK_NB) == 0;
    }
};

SingleInstance::SingleInstance(const std::u16string& executable)
    : claim_(std::make_unique<Claim>(executable))
{
}
SingleInstance::SingleInstance(SingleInstance&&) noexcept = default;
SingleInstance& SingleInstance::operator=(SingleInstance&&) noexcept = default;
SingleInstance::~SingleInstance() = default;

bool SingleInstance::first() const
{
    return claim_->first;
}

} // namespace vellums::platform

// Owner of a folder that is being listed.
#pragma once

#include <dirent.h>
#include <memory>

namespace vellums::platform {

struct CloseListing {
    void operator()(DIR* listing) const noexcept { ::closedir(listing); }
};
using OwnedListing = std::unique_ptr<DIR, CloseListing>;

} // namespace vellums::platform

// Lets the engine collect only a few pages before it writes, and map no file at all.
#pragma once

#include "jet/file/pageSource.h"

namespace vellums::tests {

class SmallMemory {
public:
    explicit SmallMemory(std::size_t changedPages, bool mapped = false)
        : before_(jet::PageSource::limits)
    {
        jet::PageSource::limits = {mapped ? before_.mappedBytes : 0, 3, changedPages};
    }
    ~SmallMemory() { jet::PageSource::limits = before_; }
    SmallMemory(const SmallMemory&) = delete;
    SmallMemory& operator=(const SmallMemory&) = delete;

private:
    jet::MemoryLimits before_;
};

} // namespace vellums::tests

// Memory that is refused at a chosen moment: operator new of this test program.
#pragma once

#include <cstddef>

namespace vellums::tests {

enum class Refuses {
    Once,  // the wanted allocation alone
    OnFrom // that one and all that follow
};

// While it lives, the allocation with that number (counted from 1) is refused.
class FailingMemory {
public:
    FailingMemory(std::size_t allocation, Refuses how);
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;
    ~FailingMemory();

    // Allocations since the beginning.
    static std::size_t counted();
};

} // namespace vellums::tests

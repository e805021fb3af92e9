#include "tests/memory/failingMemory.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> made{0};  // while it counts
std::atomic<std::size_t> first{0}; // 0: nothing is refused
std::atomic<bool> onFrom{false};

bool refused()
{
    if (first == 0)
        return false;
    const std::size_t number = ++made;
    return onFrom ? number >= first : number == first;
}

} // namespace

// All forms: a sanitizer would serve by itself what is missing here, and miss its own way of giving back.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return refused() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size)
{
    void* const memory = operator new(size, std::nothrow);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return operator new(size, std::nothrow);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace vellums::tests {

FailingMemory::FailingMemory(std::size_t allocation, Refuses how)
{
    made = 0;
    onFrom = how == Refuses::OnFrom;
    first = allocation;
}

FailingMemory::~FailingMemory()
{
    first = 0;
}

std::size_t FailingMemory::counted()
{
    return made;
}

} // namespace vellums::tests

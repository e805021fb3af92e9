// Lets the engine wait only a moment for a file that somebody else holds.
#pragma once

#include "jet/file/pageFile.h"

namespace vellums::tests {

class ShortWait {
public:
    ShortWait() { jet::PageFile::longestWait = std::chrono::milliseconds(50); }
    ~ShortWait() { jet::PageFile::longestWait = before_; }
    ShortWait(const ShortWait&) = delete;
    ShortWait& operator=(const ShortWait&) = delete;

private:
    std::chrono::milliseconds before_ = jet::PageFile::longestWait;
};

} // namespace vellums::tests

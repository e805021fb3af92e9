// What holds a database file after a test has written to it.
#pragma once

#include "jet/file/pageFile.h"
#include "jet/upkeep/checker.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

namespace vellums::tests {

// Each fault that the checker finds fails the test.
inline void expectSound(const std::u16string& path)
{
    jet::PageFile file(path, jet::OpenMode::Read);
    for (const std::u16string& fault : jet::checkFile(file))
        ADD_FAILURE() << text::toUtf8(path) << ": " << text::toUtf8(fault);
}

} // namespace vellums::tests

// A file that is there for the time of some work only.
#pragma once

#include "platform/files.h"

#include <string>
#include <utility>

namespace vellums::platform {

// Under this name, the program's own, there is a file only while this object lives: what a run that was cut
// off has left there goes at the beginning, what the work makes there at the end.
class PassingFile {
public:
    explicit PassingFile(std::u16string path)
        : path_(std::move(path))
    {
        removeFile(path_);
    }
    PassingFile(const PassingFile&) = delete;
    PassingFile& operator=(const PassingFile&) = delete;
    ~PassingFile() { removeFile(path_); }
    const std::u16string& path() const { return path_; }

private:
    std::u16string path_;
};

} // namespace vellums::platform

// A database file or its journal, as far as it is changed: every change can be watched first.
#pragma once

#include "jet/file/bytes.h"
#include "platform/files.h"

#include <functional>
#include <string>
#include <utility>

namespace vellums::jet {

// What is about to happen on the disk.
struct DiskOperation {
    enum class Kind { Write, Resize, Sync, SyncFolder };
    Kind kind;
    bool journal;         // on the journal, not the database
    std::uint64_t offset; // of a write; the new size
    ByteView bytes;       // of a write
};

class DiskFile {
public:
    enum class Role { Database, Journal };

    DiskFile(platform::File file, Role role)
        : file_(std::move(file))
        , role_(role)
    {
    }

    std::uint64_t size() const { return file_.size(); }
    std::size_t readAt(std::uint64_t offset, MutableBytes buffer) const
    {
        return file_.readAt(offset, buffer);
    }
    // Up to that many bytes, fewer at the end of the file.
    Bytes read(std::uint64_t offset, std::size_t length) const;
    platform::File::View view() const { return file_.view(); }

    // All throw platform::FileError.
    void writeAt(std::uint64_t offset, ByteView bytes);
    void resize(std::uint64_t size);
    void sync();
    static void syncFolderOf(const std::u16string& path);

    // Called before each of these four; what it throws stands for the disk that stops there. For tests of
    // what a crash leaves behind.
    static std::function<void(const DiskOperation&)> beforeOperation;

private:
    bool isJournal() const { return role_ == Role::Journal; }

    platform::File file_;
    Role role_;
};

} // namespace vellums::jet

#include "jet/file/diskFile.h"

namespace vellums::jet {

std::function<void(const DiskOperation&)> DiskFile::beforeOperation;

namespace {

void announce(const DiskOperation& operation)
{
    if (DiskFile::beforeOperation)
        DiskFile::beforeOperation(operation);
}

} // namespace

Bytes DiskFile::read(std::uint64_t offset, std::size_t length) const
{
    Bytes bytes(length);
    bytes.resize(file_.readAt(offset, bytes));
    return bytes;
}

void DiskFile::writeAt(std::uint64_t offset, ByteView bytes)
{
    announce({DiskOperation::Kind::Write, isJournal(), offset, bytes});
    file_.writeAt(offset, bytes);
}

void DiskFile::resize(std::uint64_t size)
{
    announce({DiskOperation::Kind::Resize, isJournal(), size, {}});
    file_.resize(size);
}

void DiskFile::sync()
{
    announce({DiskOperation::Kind::Sync, isJournal(), 0, {}});
    file_.sync();
}

void DiskFile::syncFolderOf(const std::u16string& path)
{
    announce({DiskOperation::Kind::SyncFolder, true, 0, {}});
    platform::syncFolderOf(path);
}

} // namespace vellums::jet

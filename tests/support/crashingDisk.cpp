#include "tests/support/crashingDisk.h"

#include "jet/file/journal.h"
#include "tests/support/bareFile.h"

#include <algorithm>
#include <random>

namespace vellums::tests {

using jet::Bytes;
using jet::DiskOperation;

CrashingDisk::CrashingDisk(const std::u16string& database)
    : sides_{{database, {}, {}}, {jet::journalPath(database), {}, {}}}
{
    for (Side& side : sides_)
        if (platform::fileExists(side.path))
            side.lasting = readBytes(side.path);
    jet::DiskFile::beforeOperation = [this](const DiskOperation& operation) { watch(operation); };
}

CrashingDisk::~CrashingDisk()
{
    jet::DiskFile::beforeOperation = nullptr;
}

void CrashingDisk::work()
{
    fault_ = Fault::None;
    for (Side& side : sides_) {
        side.waiting.resize(side.waiting.size() - side.begun);
        side.begun = 0;
    }
}

void CrashingDisk::stopAfter(int count)
{
    work();
    fault_ = Fault::Stop;
    left_ = count;
}

void CrashingDisk::failAfter(int count, bool forGood)
{
    fault_ = forGood ? Fault::Fail : Fault::FailOnce;
    left_ = count;
}

void CrashingDisk::watch(const DiskOperation& operation)
{
    Side& side = sides_[operation.journal ? 1 : 0];
    const bool fails = fault_ != Fault::None && left_-- <= 0;
    if (fails && !std::exchange(struck, true))
        struckAtJournalSync = operation.journal && operation.kind == DiskOperation::Kind::Sync;
    if (fails && left_ < -1 && fault_ == Fault::Stop)
        throw DiskStopped();
    const std::size_t before = side.waiting.size();
    if (!fails || (fault_ == Fault::Stop && operation.kind != DiskOperation::Kind::Sync))
        note(side, operation);
    if (fails && fault_ == Fault::Stop) {
        side.begun = side.waiting.size() - before;
        throw DiskStopped();
    }
    if (fails) {
        if (fault_ == Fault::FailOnce)
            fault_ = Fault::None;
        throw platform::FileError{platform::FileFault::Failed, 0};
    }
    ++operations;
    syncs += operation.kind == DiskOperation::Kind::Sync ? 1 : 0;
    if (operation.journal)
        journalKinds.push_back(operation.kind);
}

void CrashingDisk::note(Side& side, const DiskOperation& operation)
{
    switch (operation.kind) {
    case DiskOperation::Kind::Write:
        for (std::size_t at = 0; at < operation.bytes.size();) {
            const std::uint64_t offset = operation.offset + at;
            const std::size_t length = std::min(operation.bytes.size() - at,
                jet::kSectorSize - static_cast<std::size_t>(offset % jet::kSectorSize));
            const jet::ByteView sector = operation.bytes.subspan(at, length);
            side.waiting.push_back({false, offset, Bytes(sector.begin(), sector.end())});
            at += length;
        }
        break;
    case DiskOperation::Kind::Resize:
        side.waiting.push_back({true, operation.offset, {}});
        break;
    case DiskOperation::Kind::Sync:
        for (const Change& change : side.waiting)
            apply(side, change);
        side.waiting.clear();
        break;
    case DiskOperation::Kind::SyncFolder:
        break;
    }
}

// What a file has grown by may hold anything until it is written.
void CrashingDisk::apply(Side& side, const Change& change)
{
    const auto end = static_cast<std::size_t>(change.offset + change.bytes.size());
    if (change.resize || end > side.lasting.size())
        side.lasting.resize(end, side.path.ends_with(u"-journal") ? std::byte{0} : std::byte{0xA5});
    std::copy(change.bytes.begin(), change.bytes.end(),
        side.lasting.begin() + static_cast<std::ptrdiff_t>(change.offset));
}

void CrashingDisk::powerCut(unsigned seed)
{
    std::mt19937 random(seed);
    for (Side& side : sides_) {
        // None, some, most or all; or only the first, or the last ones.
        const auto kept = random() % 7;
        const std::size_t cut = random() % (side.waiting.size() + 1);
        for (std::size_t i = 0; i < side.waiting.size(); ++i)
            if (kept < 5 ? random() % 4 < kept : (i < cut) == (kept == 5))
                apply(side, side.waiting[i]);
        side.waiting.clear();
        side.begun = 0;
        writeBytes(side.path, side.lasting);
    }
    work();
}

} // namespace vellums::tests

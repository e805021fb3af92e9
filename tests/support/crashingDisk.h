// A disk that stops or fails at a chosen operation, and forgets what was not synced when the power goes.
//
// It watches a database and its journal from its making on. Of what was not synced, powerCut() keeps any
// subset of the sectors and changes of length. The operation at which the disk stopped is among them where
// nobody has used the files since.
#pragma once

#include "jet/file/diskFile.h"

#include <string>
#include <vector>

namespace vellums::tests {

struct DiskStopped { };

class CrashingDisk {
public:
    explicit CrashingDisk(const std::u16string& database);
    ~CrashingDisk();
    CrashingDisk(const CrashingDisk&) = delete;
    CrashingDisk& operator=(const CrashingDisk&) = delete;

    // After that many operations everything throws DiskStopped.
    void stopAfter(int operations);
    // After that many operations one fails, or all do.
    void failAfter(int operations, bool forGood);
    void work();

    // Files as they may be found after a power cut now. The disk works again.
    void powerCut(unsigned seed);

    bool struck = false;              // it has stopped or failed
    bool struckAtJournalSync = false; // there
    int operations = 0;               // so far
    int syncs = 0;
    std::vector<jet::DiskOperation::Kind> journalKinds; // what was done with the journal

private:
    enum class Fault { None, Stop, FailOnce, Fail };
    struct Change {
        bool resize = false;
        std::uint64_t offset = 0;
        jet::Bytes bytes;
    };
    struct Side {
        std::u16string path;
        jet::Bytes lasting;
        std::vector<Change> waiting;
        std::size_t begun = 0; // of them, those of the operation at which the disk stopped
    };

    void watch(const jet::DiskOperation& operation);
    static void note(Side& side, const jet::DiskOperation& operation);
    static void apply(Side& side, const Change& change);

    Side sides_[2]; // database, journal
    Fault fault_ = Fault::None;
    int left_ = 0;
};

} // namespace vellums::tests

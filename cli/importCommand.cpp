#include "cli/importCommand.h"

#include "cli/output.h"
#include "cli/session.h"
#include "io/fileImport.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/terminal.h"
#include "platform/text.h"

#include <cstdio>
#include <utility>

namespace vellums::cli {
namespace {

// Prints each record once it is safely stored, and how far the import is where a person looks on.
class ImportReport {
public:
    io::ImportEvents events()
    {
        io::ImportEvents events;
        events.added = [this](const AddedRecord& record, const std::u16string& path) { added(record, path); };
        events.stored = [this] { stored(); };
        events.logged = [this](const std::u16string& message) {
            clearProgress();
            complain(message);
            allTaken_ = false;
        };
        events.stop = [this] { return !writable_; };
        return events;
    }

    bool allTaken() const { return allTaken_; }

    void clearProgress()
    {
        if (std::exchange(progressShown_, false))
            std::fputs("\r                              \r", stderr);
    }

private:
    void added(const AddedRecord& record, const std::u16string& path)
    {
        ++count_;
        waiting_ += platform::decimal(record.id) + u"\t" + escaped(path) + u"\n";
        showProgress();
    }

    void stored()
    {
        clearProgress();
        print(std::exchange(waiting_, {}));
        writable_ = flush();
    }

    void showProgress()
    {
        constexpr std::uint64_t kPauseMs = 100;
        if (!terminal_ || platform::steadyMs() - shownMs_ < kPauseMs)
            return;
        shownMs_ = platform::steadyMs();
        progressShown_ = true;
        std::fprintf(stderr, "\r%llu imported", static_cast<unsigned long long>(count_));
        std::fflush(stderr);
    }

    std::u16string waiting_;
    std::uint64_t count_ = 0;
    bool terminal_ = platform::errorsGoToTerminal();
    bool progressShown_ = false;
    bool allTaken_ = true; // everything that the import knows how to take
    std::uint64_t shownMs_ = 0;
    bool writable_ = true; // a record that cannot be told must not be followed by more
};

} // namespace

void runImport(const Arguments& arguments)
{
    Session session(arguments.values[0]);
    session.chooseTable(arguments.table);
    ImportReport report;
    io::ImportEvents events = report.events();
    events.duplicates.safetyCopy = !arguments.noBackup;
    io::FileImport import(session.notebook(), nullptr, std::move(events));
    std::vector<std::u16string> files;
    const auto check = [&](bool done) {
        report.clearProgress();
        if (!done)
            session.fail();
    };
    const auto importFiles = [&] { check(files.empty() || import.importFiles(std::exchange(files, {}))); };
    for (std::size_t i = 1; i < arguments.values.size(); ++i) {
        const std::u16string path = platform::absolutePath(arguments.values[i]);
        if (!platform::folderExists(path)) {
            files.push_back(path); // a missing one is told to the log
            continue;
        }
        importFiles();
        check(import.importFolder(path));
    }
    importFiles();
    if (!session.outcome().isEmpty())
        complain(session.outcome().line(false));
    if (!report.allTaken())
        throw Failure{u""};
}

} // namespace vellums::cli

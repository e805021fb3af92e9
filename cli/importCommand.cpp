// What is printed is a promise: an ID appears only when its record is lasting. So lines wait (waiting_) until
// the batch they belong to has been stored, and when the output cannot be written any more the import stops,
// rather than adding records that nobody is told of.
#include "cli/importCommand.h"

#include "cli/output.h"
#include "cli/session.h"
#include "cli/terminalProgress.h"
#include "io/fileImport.h"
#include "platform/files.h"
#include "text/decimal.h"

#include <utility>

namespace vellums::cli {
namespace {

// Prints each record once it is safely stored.
class ImportReport {
public:
    explicit ImportReport(TerminalProgress& progress)
        : progress_(progress)
    {
    }

    ImportEvents events()
    {
        ImportEvents events;
        events.added = [this](const AddedRecord& record, const std::u16string& path) { added(record, path); };
        events.stored = [this] { stored(); };
        events.logged = [this](const std::u16string& message) {
            progress_.clear();
            complain(message);
            allTaken_ = false;
        };
        events.stop = [this] { return !writable_; };
        return events;
    }

    bool allTaken() const { return allTaken_; }

private:
    void added(const AddedRecord& record, const std::u16string& path)
    {
        ++count_;
        waiting_ += text::decimal(record.id) + u"\t" + escaped(path) + u"\n";
        progress_.step(count_, 0);
    }

    void stored()
    {
        progress_.clear();
        print(std::exchange(waiting_, {}));
        writable_ = flush();
    }

    TerminalProgress& progress_;
    std::u16string waiting_;
    std::size_t count_ = 0;
    bool allTaken_ = true; // everything that the import knows how to take
    bool writable_ = true; // a record that cannot be told must not be followed by more
};

} // namespace

void runImport(const Arguments& arguments)
{
    Session session(arguments.values[0], arguments.password);
    session.chooseTable(arguments.table);
    TerminalProgress progress;
    progress.begin(u"imported");
    ImportReport report(progress);
    ImportEvents events = report.events();
    events.duplicates = progress.bulkUser(!arguments.noBackup, u"duplicates removed");
    FileImport import(session.notebook(), nullptr, std::move(events));
    std::vector<std::u16string> files;
    const auto check = [&](bool done) {
        progress.clear();
        if (!done)
            session.fail();
    };
    // Files in a row share a connection and batches; a folder among them is imported at its place in the
    // order.
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

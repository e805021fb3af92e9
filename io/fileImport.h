// Import of files and folders into the current table.
//
// Text files (by the extension of their name) become one record each: the title from the name, the link
// the path. Files of no known kind are passed over. What cannot be read and what is larger than 512 KiB
// is told to the import log; where a dialog may be shown, large files are asked about instead.
#pragma once

#include "platform/sharedFile.h"
#include "ports/dialogs.h"
#include "store/notebook.h"
#include "store/records/batches.h"
#include "store/records/bulkAct.h"
#include "store/records/records.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vellums {

enum class FileKind { Other, Text, Word, Excel };

// The two rules below stand here for the tests of them.
//
// By the name's extension, in any letter case. A name without a dot, or with its only dot in front, is
// Other.
FileKind fileKind(std::u16string_view path);

// The text of a record: control characters and the like replaced, at most one empty line in a row, no
// blanks at both ends.
std::u16string importedText(std::u16string_view text);

// What an import tells while it goes on. All may be empty.
struct ImportEvents {
    std::function<void(const AddedRecord& record, const std::u16string& path)> added;
    std::function<void()> stored; // what was added up to now is lasting
    std::function<void(const std::u16string& message)> logged;
    std::function<bool()> stop; // asked after each entry and before each file; true: the import ends
    BulkUser duplicates;        // to whom the removal of a folder's duplicates turns
};

class FileImport {
public:
    // dialogs: null where nothing may be asked. Both must outlive the object.
    FileImport(const Notebook& notebook, Dialogs* dialogs, ImportEvents events = {});

    // Imports the files in order, on one connection. A file whose record the table refuses is told to the
    // log, and the others are imported. False: an error that the next record would meet as well ended it,
    // shown in the panel; what was imported before stays.
    bool importFiles(const std::vector<std::u16string>& paths);
    bool importFile(const std::u16string& path) { return importFiles({path}); }

    // Imports everything below the folder without asking, then removes the table's duplicates, unless
    // the import was stopped. False as above, or when their removal failed.
    bool importFolder(const std::u16string& folder);

    // At the end of all imports: shows how many records were made and how many files were not taken,
    // unless the panel tells of duplicates.
    void tellCount() const;

private:
    void addFile(Connection& connection, Batches& batches, const std::u16string& path);
    void addTextFile(Connection& connection, Batches& batches, const std::u16string& path,
        const platform::SharedFile& file);
    bool mayLoad(Batches& batches, const std::u16string& path, std::uint64_t size) const;
    void stored();
    void notTaken(const std::u16string& message);
    bool stopped() const { return events_.stop && events_.stop(); }

    const Notebook& notebook_;
    Dialogs* dialogs_;
    ImportEvents events_;
    std::size_t added_ = 0; // records that are not lasting yet
    std::size_t taken_ = 0; // records that are
    std::size_t notTaken_ = 0;
    bool duplicatesTold_ = false;
};

} // namespace vellums

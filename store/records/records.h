// Single records of the current table: add, load, save, duplicate, delete, stick, copy and move.
//
// Each routine that takes a Notebook opens a connection of its own and ends every failure with one line
// in the status panel; it tells its caller by its result. The forms that take a Connection throw
// ProviderError. The routines for several records are bulk acts (store/records/bulkAct.h).
#pragma once

#include "store/notebook.h"
#include "store/records/bulkAct.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vellums {

// One row of a snippet table.
struct SnippetRecord {
    std::int32_t id = 0; // 0: no record
    std::u16string head;
    std::u16string text;
    std::u16string type;        // the sticky stamp, or empty
    std::optional<double> date; // OLE automation date
    std::u16string link;
    std::u16string md5;
};

struct NewRecord {
    std::u16string text;
    std::u16string title; // on one line; its line ends go. Empty: derived from the text
    std::u16string link;
};

struct AddedRecord {
    std::int32_t id = 0;
    std::u16string title; // as it is stored
};

// Adds a record of now. The text is stored cleaned (text::cleanBody), with the digest of what is stored.
std::optional<AddedRecord> addRecord(const Notebook& notebook, const NewRecord& record);
AddedRecord addRecord(Connection& connection, const std::u16string& table, const NewRecord& record);

// What became of a save.
enum class Saved { Yes, Gone, Failed }; // Gone: there is no record of that ID any more; nothing was changed
// Stores title and text as addRecord() does, the sticky stamp as it is given, and now as the date.
Saved modRecord(const Notebook& notebook, std::int32_t id, const std::u16string& title,
    const std::u16string& text, const std::u16string& stamp);

// Adds a record with the same columns but the ID; date and stamp, too.
[[nodiscard]] bool dupRecord(const Notebook& notebook, std::int32_t id);

void delRecord(Connection& connection, const std::u16string& table, std::int32_t id);

// What became of an act on several records.
struct ChangedRecords {
    std::vector<std::int32_t> ids; // changed and lasting, in their order
    BulkResult result;
    bool whole() const { return result.whole(); }
};

// Deletes several records. Those that were gone already count as deleted.
ChangedRecords delRecords(
    const Notebook& notebook, const std::vector<std::int32_t>& ids, const BulkUser& user = {});

// Nothing: there is no such record, or loading failed and the panel says why.
std::optional<SnippetRecord> getRecText(const Notebook& notebook, std::int32_t id);
std::optional<SnippetRecord> getRecText(Connection& connection, const std::u16string& table, std::int32_t id);

// Stamps records, which puts them before all others; the record that was stamped last comes first.
ChangedRecords setStickyRecs(
    const Notebook& notebook, const std::vector<std::int32_t>& ids, const BulkUser& user = {});
// Takes the stamp away. A record whose source file is still there gets the date of that file.
ChangedRecords ClearStickyRecs(
    const Notebook& notebook, const std::vector<std::int32_t>& ids, const BulkUser& user = {});

// Those below show nothing; the caller has the words to begin the line with.

ChangedRecords deleteRecords(
    const Notebook& notebook, const std::vector<std::int32_t>& ids, const BulkUser& user, SafetyCopy copy);

// Copies records into another table of the database; each copy is dated now, and stands whole or not at
// all. Records that were gone are left out of the IDs and are no failure.
ChangedRecords copyRecords(const Notebook& notebook, const std::u16string& target,
    const std::vector<std::int32_t>& ids, const BulkUser& user = {});

// Copies, and deletes what was copied: a failure in between leaves records in both tables, never in none.
struct MovedRecords {
    ChangedRecords copied;
    ChangedRecords deleted; // nothing was tried where nothing was copied
    bool whole() const { return copied.whole() && deleted.whole(); }
};
MovedRecords moveRecords(const Notebook& notebook, const std::u16string& target,
    const std::vector<std::int32_t>& ids, const BulkUser& user = {});

} // namespace vellums

// Single records of the current table: add, load, save, duplicate, delete, stick, copy and move.
//
// Each routine that takes a Notebook opens a connection of its own and ends every failure with one line
// in the status panel; it tells its caller by its result. The forms that take a Connection throw
// ProviderError.
#pragma once

#include "store/notebook.h"

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
    std::optional<std::u16string> title; // already quoted for SQL; none or empty: derived from the text
    std::u16string link;                 // not quoted
};

struct AddedRecord {
    std::int32_t id = 0;
    std::u16string title; // as it is stored
};

// The title for a text that comes without one: a mail's subject, or the beginning of the first line.
std::u16string titleOf(std::u16string_view text);

std::optional<AddedRecord> addRecord(const Notebook& notebook, const NewRecord& record);
AddedRecord addRecord(Connection& connection, const std::u16string& table, const NewRecord& record);

// What became of a save.
enum class Saved { Yes, Gone, Failed }; // Gone: there is no record of that ID any more; nothing was changed
Saved modRecord(const Notebook& notebook, std::int32_t id, const std::u16string& title,
    const std::u16string& text, const std::u16string& stamp);

[[nodiscard]] bool dupRecord(const Notebook& notebook, std::int32_t id);

[[nodiscard]] bool delRecord(const Notebook& notebook, std::int32_t id);
// Deletes several records on one connection; gives the number deleted before the first failure.
std::size_t delRecords(const Notebook& notebook, const std::vector<std::int32_t>& ids);

// Nothing: there is no such record, or loading failed and the panel says why.
std::optional<SnippetRecord> getRecText(const Notebook& notebook, std::int32_t id);
std::optional<SnippetRecord> getRecText(Connection& connection, const std::u16string& table, std::int32_t id);

[[nodiscard]] bool setStickyRecs(const Notebook& notebook, const std::vector<std::int32_t>& ids);
[[nodiscard]] bool ClearStickyRecs(const Notebook& notebook, const std::vector<std::int32_t>& ids);

// What became of copying: the IDs that were copied and are lasting, in their order. Records that were gone
// are left out and are no failure.
struct CopiedRecords {
    std::vector<std::int32_t> ids;
    bool failed = false; // the panel says why; what was copied before stays
};

// Copies records into another table of the database; the copies are dated now.
CopiedRecords copyRecords(
    const Notebook& notebook, const std::u16string& target, const std::vector<std::int32_t>& ids);

} // namespace vellums

// Connections to a database, whoever serves them: ADO where a provider is installed, the embedded
// engine everywhere else.
#pragma once

#include "jet/file/error.h"
#include "jet/table/value.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vellums {

using jet::Value;

// Why a provider refused, in its own words. Leaves the store only as far as the routine that the user
// called.
struct ProviderError : std::exception {
    ProviderError(std::u16string text, std::int32_t code)
        : description(std::move(text))
        , number(code)
    {
    }
    const char* what() const noexcept override { return "ProviderError"; }

    std::u16string description; // the provider's sentence, ready to show
    std::int32_t number;        // as Err.Number would show it
};

// "description (number)", as it is shown.
std::u16string reasonOf(const ProviderError& error);

// The text of a value; empty where it is NULL or no text.
std::u16string textOf(const Value& value);

inline constexpr std::int32_t kOperationCanceled = jet::kCanceled;

// What a statement gave back, read forward once, while its connection is open.
class Recordset {
public:
    virtual ~Recordset() = default;
    virtual const std::vector<std::u16string>& columns() const = 0;
    // Moves to the next row, the first at the first call; false: there is none. Throws ProviderError.
    virtual bool next() = 0;
    // A value of the present row.
    virtual const Value& value(std::size_t column) const = 0;
};

struct SchemaTable {
    std::u16string name;
    std::u16string type; // "TABLE" for ordinary tables, "LINK" and "PASS-THROUGH" linked ones, "VIEW" queries
};

class Connection {
public:
    virtual ~Connection() = default;
    // Runs one statement that gives rows. Throws ProviderError.
    virtual std::unique_ptr<Recordset> query(std::u16string_view sql) = 0;
    // Lets queries be given up: while one runs, `wanted` is asked now and then, and true ends it with the
    // error kOperationCanceled. A provider that cannot be stopped goes on.
    virtual void stopWhen(const std::function<bool()>&) { }
    // Runs one statement; gives the number of rows it changed, -1 where a provider does not tell. Throws
    // ProviderError.
    virtual std::int32_t execute(std::u16string_view sql) = 0;
    // Where the provider has moved a journal that lay beside the database and does not belong to it as it is,
    // once; empty: it has not.
    virtual std::u16string takeJournalSetAside() { return {}; }
    // The tables in the order of the provider's schema. Throws ProviderError.
    virtual std::vector<SchemaTable> tables() = 0;

    // Statements between the two may be made lasting together, where the provider can; a failing one is
    // taken back alone. Throws ProviderError.
    virtual void beginBatch() { }
    virtual void endBatch() { }
};

// Who serves databases.
class Provider {
public:
    virtual ~Provider() = default;
    // The string names its file by a full path. Throws ProviderError.
    virtual std::unique_ptr<Connection> open(const std::u16string& connectionString) const = 0;
    // Makes a database file (full path) with one empty snippet table, whole or not at all. Throws
    // ProviderError.
    virtual void createDatabase(const std::u16string& path, const std::u16string& table) const = 0;
    // Writes a compacted copy of a database file. Both are full paths; the destination must not exist.
    // Throws ProviderError; the source is as it was, an unfinished destination may be left.
    virtual void compact(const std::u16string& source, const std::u16string& destination) const = 0;
    // Compacts a database file in place, whole or not at all, with nobody else at it meanwhile; it keeps its
    // password, where it has one. False: this provider can only write a copy. Throws ProviderError.
    virtual bool compactInPlace(const std::u16string& /*file*/, const std::u16string& /*password*/) const
    {
        return false;
    }
};

} // namespace vellums

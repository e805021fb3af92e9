// The notebook's state: which database and table are open, where the program's own files lie, and the
// line that tells what went wrong. Created once by start-up and passed along.
#pragma once

#include "store/connection.h"
#include "store/outcome.h"

#include <memory>
#include <string>
#include <string_view>

namespace vellums {

inline constexpr std::u16string_view kNoTable = u"-";

struct Notebook {
    explicit Notebook(StatusLine& line)
        : status(line)
    {
    }

    StatusLine& status;
    bool chinese = false; // language of the interface

    std::u16string appDir;  // the program's folder, no separator at the end unless it is a root
    std::u16string exeName; // the program's name without extension
    std::u16string settingsFile;
    std::u16string logFile;
    std::u16string handOverFile;

    std::u16string providerId = u"104"; // number of the connection-string template
    std::u16string dbConn;              // current connection string
    std::u16string dbParent;            // data folder, no separator at the end unless it is a root
    std::u16string dbTable;             // current table; kNoTable where there is none
    bool safetyCopies = true;           // before acts on many records; a setting

    // Who serves the databases; start-up chooses. Not owned.
    const Provider* provider = nullptr;

    // Opens a connection; a path in the string that is not absolute counts from dbParent. A journal that was
    // set aside shows in the status line. Throws ProviderError.
    std::unique_ptr<Connection> connect(const std::u16string& connectionString) const;
    // A connection to the current database.
    std::unique_ptr<Connection> connect() const { return connect(dbConn); }

    // The text in the language of the interface.
    std::u16string say(std::u16string_view english, std::u16string_view chineseText) const
    {
        return std::u16string(chinese ? chineseText : english);
    }
};

} // namespace vellums

// A database file that a command works on.
#pragma once

#include "store/embedded/embeddedConnection.h"
#include "store/embedded/embeddedProvider.h"
#include "store/notebook.h"

#include <memory>
#include <optional>
#include <string>

namespace vellums::cli {

// A failed operation: the sentence for standard error; the exit status is then 1.
struct Failure {
    std::u16string sentence;
};

// The notebook of one database file, served by the embedded engine whatever the file's name.
class Session {
public:
    // The file as it was named, and its password if it has one. The program's own files lie beside the
    // program.
    explicit Session(const std::u16string& file, const std::u16string& password = {});

    Notebook& notebook() { return notebook_; }
    // A journal that was set aside is told on standard error. Throws ProviderError.
    std::unique_ptr<EmbeddedConnection> open() const;
    // Makes `table` current; without a name the first snippet table. Throws Failure when there is none,
    // ProviderError.
    void chooseTable(const std::optional<std::u16string>& table);

    // What the routines have told up to now.
    const Outcome& outcome() const { return outcome_; }
    // Throws Failure with the line of the failed routine.
    [[noreturn]] void fail() const;

private:
    // Knows one file, so that no connection string needs to be taken apart.
    class OneFile : public EmbeddedProvider {
    public:
        OneFile(std::u16string file, std::u16string password)
            : file_(std::move(file))
            , password_(std::move(password))
        {
        }
        std::unique_ptr<Connection> open(const std::u16string& connectionString) const override;

    private:
        std::u16string file_;
        std::u16string password_;
    };

    std::u16string file_; // full path
    std::u16string password_;
    OneFile provider_;
    Outcome outcome_;
    Notebook notebook_;
};

} // namespace vellums::cli

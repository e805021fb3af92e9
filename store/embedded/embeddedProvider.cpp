#include "store/embedded/embeddedProvider.h"

#include "jet/upkeep/compactor.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "store/connectionString.h"
#include "store/embedded/embeddedConnection.h"
#include "store/snippetTable.h"
#include "text/letterCase.h"
#include "text/path.h"

namespace vellums {
namespace {

jet::ColumnType typeOf(SnippetKind kind)
{
    switch (kind) {
    case SnippetKind::Counter:
        return jet::ColumnType::Long;
    case SnippetKind::Text:
        return jet::ColumnType::Text;
    case SnippetKind::Memo:
        return jet::ColumnType::Memo;
    case SnippetKind::Date:
        return jet::ColumnType::Date;
    }
    return jet::ColumnType::Text;
}

jet::TableSpec snippetTable(const std::u16string& name)
{
    jet::TableSpec table;
    table.name = name;
    for (const SnippetColumn& column : kSnippetColumns) {
        jet::ColumnSpec spec;
        spec.name = column.name;
        spec.type = typeOf(column.kind);
        spec.length = static_cast<std::uint16_t>(column.length);
        spec.autoNumber = column.kind == SnippetKind::Counter;
        spec.required = !column.nullable && !spec.autoNumber;
        table.columns.push_back(std::move(spec));
    }
    jet::IndexSpec index;
    index.name = kSnippetIndex;
    index.columns = {{std::u16string(kIdColumn), true}};
    index.unique = true;
    table.indexes = {index};
    return table;
}

// Other programs go by the extension, so a file must be what its name promises.
jet::FileFormat formatOf(std::u16string_view path)
{
    const std::u16string lower = text::lowerCase(path);
    return lower.ends_with(u".accdb") ? jet::FileFormat::Ace12 : jet::FileFormat::Jet4;
}

// Leaves no empty journal beside the file, however the work ends.
class JournalRemoval {
public:
    explicit JournalRemoval(std::u16string file)
        : file_(std::move(file))
    {
    }
    JournalRemoval(const JournalRemoval&) = delete;
    JournalRemoval& operator=(const JournalRemoval&) = delete;
    ~JournalRemoval() { jet::removeIdleJournal(file_); }

private:
    std::u16string file_;
};

[[noreturn]] void failAsThere()
{
    throw jet::Error(3204, jet::kDuplicateSource, u"Database already exists.");
}

} // namespace

std::unique_ptr<Connection> EmbeddedProvider::open(const std::u16string& connectionString) const
{
    return std::make_unique<EmbeddedConnection>(fileOf(connectionString), databasePassword(connectionString));
}

void EmbeddedProvider::createDatabase(const std::u16string& path, const std::u16string& table) const
{
    asProvider([&] {
        // Numbers and sentences are those that an installed provider gives.
        if (platform::fileExists(path) || platform::folderExists(path))
            failAsThere();
        const std::u16string folder(text::folderOf(path));
        if (!folder.empty() && !platform::folderExists(folder))
            throw jet::Error(3044, jet::kFail,
                u"'" + path + u"' is not a valid path. Make sure that the path name is spelled correctly.");
        // Made under another name, so that a database without its table is never found, and moved only where
        // nobody has made one of this name meanwhile.
        const std::u16string unfinished = platform::unusedPath(path, u".new");
        try {
            jet::createDatabase(unfinished, formatOf(path), platform::oleNow());
            jet::Database(unfinished).createTable(snippetTable(table));
            platform::moveToFreeName(unfinished, path);
        } catch (const platform::FileError& e) {
            platform::removeFile(unfinished);
            if (e.fault == platform::FileFault::Exists)
                failAsThere();
            throw jet::Error(3043, jet::kFail, u"Disk or network error.");
        } catch (...) {
            platform::removeFile(unfinished);
            throw;
        }
    });
}

void EmbeddedProvider::compact(const std::u16string& source, const std::u16string& destination) const
{
    const JournalRemoval removal(source);
    asProvider([&] {
        jet::PageFile original(source, jet::OpenMode::Write);
        jet::compactCopy(original, destination);
    });
}

bool EmbeddedProvider::compactInPlace(const std::u16string& file, const std::u16string& password) const
{
    const JournalRemoval removal(file);
    asProvider([&] { jet::compactFile(file, password); });
    return true;
}

} // namespace vellums

#include "store/embedded/embeddedProvider.h"

#include "platform/clock.h"
#include "platform/files.h"
#include "store/connectionString.h"
#include "store/embedded/embeddedConnection.h"
#include "text/letterCase.h"
#include "text/path.h"

namespace vellums {
namespace {

jet::TableSpec snippetTable(const std::u16string& name)
{
    using jet::ColumnSpec;
    using jet::ColumnType;
    constexpr std::uint16_t kDefaultLength = 255;
    const auto column = [](std::u16string columnName, ColumnType type, std::uint16_t length) {
        ColumnSpec spec;
        spec.name = std::move(columnName);
        spec.type = type;
        spec.length = length;
        return spec;
    };
    jet::TableSpec table;
    table.name = name;
    table.columns = {
        column(u"ID", ColumnType::Long, 0),
        column(u"VLHEAD", ColumnType::Text, kDefaultLength),
        column(u"VLTEXT", ColumnType::Memo, 0),
        column(u"VLTYPE", ColumnType::Text, kDefaultLength),
        column(u"VLDATE", ColumnType::Date, 0),
        column(u"VLLINK", ColumnType::Text, kDefaultLength),
        column(u"VLMD5", ColumnType::Text, 32),
    };
    table.columns[0].autoNumber = true;
    table.columns[4].required = true; // it is made without the nullable flag
    jet::IndexSpec index;
    index.name = u"VLIDX";
    index.columns = {{u"ID", true}};
    index.unique = true;
    table.indexes = {index};
    return table;
}

jet::FileFormat formatOf(std::u16string_view path)
{
    const std::u16string lower = text::lowerCase(path);
    return lower.ends_with(u".accdb") ? jet::FileFormat::Ace12 : jet::FileFormat::Jet4;
}

} // namespace

std::unique_ptr<Connection> EmbeddedProvider::open(const std::u16string& connectionString) const
{
    return std::make_unique<EmbeddedConnection>(fileOf(connectionString));
}

void EmbeddedProvider::createDatabase(const std::u16string& path, const std::u16string& table) const
{
    asProvider([&] {
        if (platform::fileExists(path) || platform::folderExists(path))
            throw jet::Error(3204, jet::kDuplicateSource, u"Database already exists.");
        const std::size_t cut = text::lastSeparator(path);
        if (cut != std::u16string::npos && cut != 0 && !platform::folderExists(path.substr(0, cut + 1)))
            throw jet::Error(3044, jet::kFail,
                u"'" + path + u"' is not a valid path. Make sure that the path name is spelled correctly.");
        // Made under another name, so that a database without its table is never found.
        const std::u16string unfinished = platform::unusedPath(path, u".new");
        try {
            jet::createDatabase(unfinished, formatOf(path), platform::oleNow());
            jet::Database(unfinished).createTable(snippetTable(table));
            platform::replaceFile(unfinished, path);
        } catch (const platform::FileError&) {
            platform::removeFile(unfinished);
            throw jet::Error(3043, jet::kFail, u"Disk or network error.");
        } catch (...) {
            platform::removeFile(unfinished);
            throw;
        }
    });
}

void EmbeddedProvider::compact(const std::u16string&, const std::u16string&) const
{
    throw ProviderError(u"The embedded engine cannot compact databases yet.", jet::kFail);
}

} // namespace vellums

// Prints every table of an Access file as JSON lines: one for the table with its columns, then one for
// each row. Status 3: the file is refused; the reason is on standard error.

#include "jet/database.h"
#include "tests/readers/jsonLine.h"
#include "text/unicode.h"

#include <cstdio>

namespace {

using namespace vellums;

void print(const std::string& line)
{
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
}

std::vector<jet::Column> definitionOf(const std::u16string& path, const std::u16string& table)
{
    jet::PageFile file(path, jet::OpenMode::Read);
    const jet::Catalogue catalogue(file);
    return catalogue.open(*catalogue.find(table)).definition().columns;
}

void dumpTable(jet::Database& database, const jet::TableInfo& table)
{
    const jet::Result result = database.run(u"SELECT * FROM [" + table.name + u"]");
    const std::vector<jet::Column> columns = definitionOf(database.path(), table.name);
    std::string line = "{\"table\":" + tests::jsonText(table.name) +
        ",\"system\":" + (table.kind == jet::TableKind::System ? "true" : "false");
    line += ",\"columns\":[";
    for (std::size_t i = 0; i < result.columns.size(); ++i)
        line += (i == 0 ? "{\"name\":" : ",{\"name\":") + tests::jsonText(result.columns[i]) +
            ",\"type\":" + std::to_string(static_cast<int>(result.types[i])) +
            ",\"stored\":" + std::to_string(static_cast<int>(columns[i].type)) +
            ",\"calculated\":" + (columns[i].isCalculated() ? "true" : "false") + "}";
    print(line + "]}");
    for (const std::vector<jet::Value>& row : result.rows) {
        std::string text;
        for (const jet::Value& value : row)
            text += (text.empty() ? "[" : ",") + tests::jsonValue(value);
        print(text + "]");
    }
}

} // namespace

int main(int count, char** arguments)
{
    if (count != 2) {
        std::fputs("usage: dumpDatabase FILE\n", stderr);
        return 2;
    }
    try {
        jet::Database database(text::fromUtf8(arguments[1]));
        for (const jet::TableInfo& table : database.tables()) {
            if (table.kind != jet::TableKind::Table && table.kind != jet::TableKind::System)
                continue;
            try {
                dumpTable(database, table);
            } catch (const jet::Error& error) {
                print("{\"table\":" + tests::jsonText(table.name) +
                    ",\"refused\":" + tests::jsonText(error.description) + "}");
            }
        }
        return 0;
    } catch (const jet::Error& error) {
        std::fprintf(stderr, "%s\n", text::toUtf8(error.description).c_str());
        return 3;
    }
}

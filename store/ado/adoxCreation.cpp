// A table is described in full before it is appended to the catalogue, which is the call that has the engine
// make it. The connection that creation leaves in the catalogue holds the file open and is closed on every
// way out.
#include "store/ado/adoxCreation.h"

#include "platform/files.h"
#include "store/ado/adoState.h"
#include "store/ado/sourceValue.h"
#include "store/ado/throughCom.h"
#include "store/snippetTable.h"

namespace vellums {
namespace {

using platform::ComObject;

// Types and attributes as ADOX numbers them.
constexpr std::int32_t kInteger = 3;
constexpr std::int32_t kDate = 7;
constexpr std::int32_t kText = 202;
constexpr std::int32_t kMemo = 203;
constexpr std::int32_t kFixedNullable = 3;

std::int32_t typeOf(SnippetKind kind)
{
    switch (kind) {
    case SnippetKind::Counter:
        return kInteger;
    case SnippetKind::Text:
        return kText;
    case SnippetKind::Memo:
        return kMemo;
    case SnippetKind::Date:
        return kDate;
    }
    return kText;
}

std::u16string creationString(std::u16string_view providerId, const std::u16string& path)
{
    if (providerId == u"103")
        return u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + sourceValue(path) +
            u";Jet OLEDB:Engine Type=5;";
    return u"Provider=Microsoft.ACE.OLEDB.12.0;Data Source=" + sourceValue(path);
}

// A catalogue. Its connection, which would keep the file open, is closed by the destructor.
class OpenCatalogue {
public:
    OpenCatalogue()
        : catalogue_(ComObject::create(u"ADOX.Catalog"))
    {
    }
    OpenCatalogue(const OpenCatalogue&) = delete;
    OpenCatalogue& operator=(const OpenCatalogue&) = delete;
    ~OpenCatalogue()
    {
        try {
            closeAdo(catalogue_.getObject(u"ActiveConnection"));
        } catch (...) { // there is none
        }
    }
    const ComObject& operator*() const { return catalogue_; }
    const ComObject* operator->() const { return &catalogue_; }

private:
    ComObject catalogue_;
};

// The provider's own properties are there only once the column knows its catalogue.
void appendCounter(const ComObject& catalogue, const ComObject& columns, const SnippetColumn& column)
{
    const ComObject id = ComObject::create(u"ADOX.Column");
    id.put(u"Name", column.name);
    id.put(u"Type", typeOf(column.kind));
    id.putRef(u"ParentCatalog", catalogue);
    id.getObject(u"Properties").item(u"Autoincrement").put(u"Value", true);
    columns.call(u"Append", {id});
}

void appendIndex(const ComObject& table)
{
    const ComObject index = ComObject::create(u"ADOX.Index");
    index.put(u"Name", kSnippetIndex);
    index.put(u"Unique", true);
    index.getObject(u"Columns").call(u"Append", {kIdColumn});
    table.getObject(u"Indexes").call(u"Append", {index});
}

// What is not nullable keeps its attributes: it is made without that flag.
void appendColumn(const ComObject& columns, const SnippetColumn& column)
{
    const std::int32_t type = typeOf(column.kind);
    if (column.length == 0 || column.length == kLongestText) // the provider's own
        columns.call(u"Append", {column.name, type});
    else
        columns.call(u"Append", {column.name, type, column.length});
    if (column.nullable)
        columns.item(column.name).put(u"Attributes", kFixedNullable);
}

void appendTable(const ComObject& catalogue, const std::u16string& name)
{
    const ComObject table = ComObject::create(u"ADOX.Table");
    table.put(u"Name", name);
    table.putRef(u"ParentCatalog", catalogue);
    const ComObject columns = table.getObject(u"Columns");
    for (const SnippetColumn& column : kSnippetColumns) {
        if (column.kind == SnippetKind::Counter) {
            appendCounter(catalogue, columns, column);
            appendIndex(table);
        } else {
            appendColumn(columns, column);
        }
    }
    catalogue.getObject(u"Tables").call(u"Append", {table});
}

} // namespace

void createWithAdox(std::u16string_view providerId, const std::u16string& path, const std::u16string& table)
{
    const std::u16string connectionString = creationString(providerId, path);
    bool made = false;
    try {
        throughCom([&] {
            const OpenCatalogue catalogue;
            catalogue->call(u"Create", {connectionString});
            made = true;
            catalogue->put(u"ActiveConnection", connectionString);
            appendTable(*catalogue, table);
        });
    } catch (...) {
        if (made)
            platform::removeFile(path);
        throw;
    }
}

} // namespace vellums

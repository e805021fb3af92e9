#include "tests/ado/adoxDoubles.h"

#include "platform/clock.h"
#include "platform/files.h"
#include "tests/ado/adoDoubles.h"

namespace vellums::tests::ado {
namespace {

using platform::Variant;

constexpr std::int32_t kNullable = 2; // a bit of Attributes
constexpr HRESULT kDuplicateSource = -2147217897;

[[noreturn]] void refuseItem()
{
    refuse(3265, u"Item cannot be found in the collection corresponding to the requested name or ordinal.");
}

[[noreturn]] void refuseArguments()
{
    refuse(3001, u"Arguments are of the wrong type, are out of acceptable range, or are in conflict.");
}

class PropertyDouble : public Double {
public:
    PropertyDouble(Ref<Double> owner, Action put)
        : Double("Property")
        , owner_(std::move(owner))
    {
        setter(L"Value", std::move(put));
    }

private:
    Ref<Double> owner_;
};

class CollectionDouble : public Double {
public:
    // owner: kept alive as long.
    CollectionDouble(std::string name, Ref<Double> owner, Action append, Action item)
        : Double(std::move(name))
        , owner_(std::move(owner))
    {
        if (append)
            method(L"Append", 1, 3, std::move(append));
        if (item)
            getter(L"Item", std::move(item), 1);
    }

private:
    Ref<Double> owner_;
};

class CatalogDouble : public Double {
public:
    CatalogDouble();
    ConnectionDouble& connection() // refuses without one
    {
        if (!connection_ || !connection_->isOpen())
            refuse(3709,
                u"The connection cannot be used to perform this operation. It is either closed or invalid.");
        return *connection_;
    }

private:
    Ref<ConnectionDouble> connection_;

    void create(const std::u16string& connectionString);
    void connect(const std::u16string& connectionString);
};

class ColumnDouble : public Double {
public:
    ColumnDouble();

    std::u16string name;
    std::int32_t type = 202;
    std::int32_t size = 0;
    std::int32_t attributes = 0;
    bool autoIncrement = false;

private:
    Ref<CatalogDouble> parent_;
};

class IndexDouble : public Double {
public:
    IndexDouble();
    jet::IndexSpec spec;
};

class TableDouble : public Double {
public:
    TableDouble();
    jet::TableSpec spec() const;

private:
    std::u16string name_;
    Ref<CatalogDouble> parent_;
    std::vector<Ref<ColumnDouble>> columns_;
    std::vector<Ref<IndexDouble>> indexes_;

    void appendColumn(const Call& call);
    void giveColumn(const Call& call);
};

CatalogDouble::CatalogDouble()
    : Double("Catalog")
{
    method(L"Create", 1, 1, [this](const Call& call) { create(call.text(0)); });
    setter(L"ActiveConnection", [this](const Call& call) { connect(call.text(0)); });
    getter(L"ActiveConnection", [this](const Call& call) {
        if (connection_)
            call.give(connection_.counted());
        else
            call.give(Variant());
    });
    getter(L"Tables", [this](const Call& call) {
        call.give(new CollectionDouble(
            "Tables", Ref<Double>::shared(*this),
            [this](const Call& append) {
                connection().database().createTable(append.object<TableDouble>(0).spec());
            },
            nullptr));
    });
}

void CatalogDouble::create(const std::u16string& connectionString)
{
    const std::u16string path = keyword(connectionString, u"Data Source");
    const std::u16string provider = keyword(connectionString, u"Provider");
    const bool jet4 =
        provider == u"Microsoft.Jet.OLEDB.4.0" && keyword(connectionString, u"Jet OLEDB:Engine Type") == u"5";
    if (!jet4 && provider != u"Microsoft.ACE.OLEDB.12.0")
        refuse(3706, u"Provider cannot be found. It may not be properly installed.");
    if (platform::fileExists(path))
        refuse(kDuplicateSource, u"Database already exists.");
    jet::createDatabase(path, jet4 ? jet::FileFormat::Jet4 : jet::FileFormat::Ace12, platform::oleNow());
    connect(connectionString);
}

void CatalogDouble::connect(const std::u16string& connectionString)
{
    Ref<ConnectionDouble> opened(new ConnectionDouble);
    opened->open(connectionString);
    connection_ = std::move(opened);
}

ColumnDouble::ColumnDouble()
    : Double("Column")
{
    setter(L"Name", [this](const Call& call) { name = call.text(0); });
    setter(L"Type", [this](const Call& call) { type = call.number(0); });
    setter(L"Attributes", [this](const Call& call) { attributes = call.number(0); });
    refSetter(L"ParentCatalog",
        [this](const Call& call) { parent_ = Ref<CatalogDouble>::shared(call.object<CatalogDouble>(0)); });
    getter(L"Properties", [this](const Call& call) {
        call.give(
            new CollectionDouble("Properties", Ref<Double>::shared(*this), nullptr, [this](const Call& item) {
                if (!parent_ || item.text(0) != u"Autoincrement")
                    refuseItem();
                item.give(new PropertyDouble(Ref<Double>::shared(*this), [this](const Call& put) {
                    if (put.arguments[0]->vt != VT_BOOL || put.arguments[0]->boolVal != VARIANT_TRUE)
                        refuseArguments();
                    autoIncrement = true;
                }));
            }));
    });
}

IndexDouble::IndexDouble()
    : Double("Index")
{
    setter(L"Name", [this](const Call& call) { spec.name = call.text(0); });
    setter(L"Unique", [this](const Call& call) { spec.unique = call.arguments[0]->boolVal == VARIANT_TRUE; });
    getter(L"Columns", [this](const Call& call) {
        call.give(new CollectionDouble(
            "IndexColumns", Ref<Double>::shared(*this),
            [this](const Call& append) {
                spec.columns.push_back({append.text(0), true});
            },
            nullptr));
    });
}

TableDouble::TableDouble()
    : Double("Table")
{
    setter(L"Name", [this](const Call& call) { name_ = call.text(0); });
    refSetter(L"ParentCatalog",
        [this](const Call& call) { parent_ = Ref<CatalogDouble>::shared(call.object<CatalogDouble>(0)); });
    getter(L"Columns", [this](const Call& call) {
        call.give(new CollectionDouble(
            "Columns", Ref<Double>::shared(*this), [this](const Call& append) { appendColumn(append); },
            [this](const Call& item) { giveColumn(item); }));
    });
    getter(L"Indexes", [this](const Call& call) {
        call.give(new CollectionDouble(
            "Indexes", Ref<Double>::shared(*this),
            [this](const Call& append) {
                indexes_.push_back(Ref<IndexDouble>::shared(append.object<IndexDouble>(0)));
            },
            nullptr));
    });
}

void TableDouble::appendColumn(const Call& call)
{
    if (call.arguments[0]->vt == VT_DISPATCH) {
        columns_.push_back(Ref<ColumnDouble>::shared(call.object<ColumnDouble>(0)));
        return;
    }
    Ref<ColumnDouble> column(new ColumnDouble);
    column->name = call.text(0);
    column->type = call.number(1);
    column->size = call.has(2) ? call.number(2) : 0;
    columns_.push_back(std::move(column));
}

void TableDouble::giveColumn(const Call& call)
{
    for (const auto& column : columns_)
        if (column->name == call.text(0))
            return call.give(column.counted());
    refuseItem();
}

jet::TableSpec TableDouble::spec() const
{
    constexpr std::uint16_t kDefaultSize = 255;
    jet::TableSpec table;
    table.name = name_;
    for (const auto& column : columns_) {
        jet::ColumnSpec made;
        made.name = column->name;
        made.autoNumber = column->autoIncrement;
        made.required = !made.autoNumber && (column->attributes & kNullable) == 0;
        switch (column->type) {
        case 3:
            made.type = jet::ColumnType::Long;
            break;
        case 7:
            made.type = jet::ColumnType::Date;
            break;
        case 202:
            made.length = column->size == 0 ? kDefaultSize : static_cast<std::uint16_t>(column->size);
            break;
        case 203:
            made.type = jet::ColumnType::Memo;
            break;
        default:
            refuse(3001, u"Type is invalid.");
        }
        table.columns.push_back(std::move(made));
    }
    for (const auto& index : indexes_)
        table.indexes.push_back(index->spec);
    return table;
}

} // namespace

Double* newCatalog()
{
    return new CatalogDouble;
}

Double* newTable()
{
    return new TableDouble;
}

Double* newColumn()
{
    return new ColumnDouble;
}

Double* newIndex()
{
    return new IndexDouble;
}

} // namespace vellums::tests::ado

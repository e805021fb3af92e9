#include "store/ado/adoConnection.h"

#include "store/ado/adoRecordset.h"
#include "store/ado/adoState.h"
#include "store/ado/throughCom.h"

#include <algorithm>

namespace vellums {
namespace {

using platform::ComObject;
using platform::Variant;

constexpr std::int32_t kText = 1;        // CommandType, ExecuteOptions
constexpr std::int32_t kNoRecords = 128; // ExecuteOptions
constexpr std::int32_t kTables = 20;     // SchemaId

ComObject openConnection(const std::u16string& connectionString)
{
    return throughCom([&] {
        ComObject connection = ComObject::create(u"ADODB.Connection");
        connection.put(u"ConnectionString", connectionString);
        connection.call(u"Open");
        return connection;
    });
}

std::size_t columnOf(const Recordset& rows, std::u16string_view name)
{
    const auto& columns = rows.columns();
    const auto found = std::find(columns.begin(), columns.end(), name);
    if (found == columns.end())
        throw platform::ComError(DISP_E_UNKNOWNNAME, u"The provider's list of tables lacks a column.");
    return static_cast<std::size_t>(found - columns.begin());
}

} // namespace

AdoConnection::AdoConnection(const std::u16string& connectionString)
    : connection_(openConnection(connectionString))
{
}

AdoConnection::~AdoConnection()
{
    closeAdo(connection_);
}

// The connection itself is assigned. Its plain value would be its connection string, and the command
// would open a second connection, which knows no @@IDENTITY of this one.
ComObject AdoConnection::command(std::u16string_view sql) const
{
    ComObject command = ComObject::create(u"ADODB.Command");
    command.putRef(u"ActiveConnection", connection_);
    command.put(u"CommandType", kText);
    command.put(u"CommandText", sql);
    return command;
}

std::unique_ptr<Recordset> AdoConnection::query(std::u16string_view sql)
{
    return throughCom([&]() -> std::unique_ptr<Recordset> {
        return std::make_unique<AdoRecordset>(command(sql).call(u"Execute").toObject());
    });
}

std::int32_t AdoConnection::execute(std::u16string_view sql)
{
    return throughCom([&] {
        // The first argument is where ADO puts the number of rows; the second, the parameters, is left out.
        Variant changed;
        command(sql).call(u"Execute", {Variant::filledInto(changed), Variant::missing(), kText | kNoRecords});
        const bool told =
            changed.type() != VT_EMPTY && changed.type() != VT_NULL && changed.type() != VT_ERROR;
        return told ? changed.toNumber() : -1;
    });
}

std::vector<SchemaTable> AdoConnection::tables()
{
    return throughCom([&] {
        AdoRecordset rows(connection_.call(u"OpenSchema", {kTables}).toObject());
        const std::size_t name = columnOf(rows, u"TABLE_NAME");
        const std::size_t type = columnOf(rows, u"TABLE_TYPE");
        std::vector<SchemaTable> tables;
        while (rows.next())
            tables.push_back({textOf(rows.value(name)), textOf(rows.value(type))});
        return tables;
    });
}

} // namespace vellums

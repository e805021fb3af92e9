#include "tests/ado/adoDoubles.h"

#include "tests/ado/variantOfValue.h"
#include "text/letterCase.h"
#include "text/pieces.h"

#include <algorithm>

namespace vellums::tests::ado {
namespace {

using platform::Variant;

constexpr HRESULT kFail = E_FAIL;
constexpr std::int32_t kTablesSchema = 20;

[[noreturn]] void refuseClosed()
{
    refuse(3704, u"Operation is not allowed when the object is closed.");
}

// Fields and each Field keep the recordset.
class FieldDouble : public Double {
public:
    FieldDouble(std::u16string name, int type)
        : Double("Field")
    {
        getter(L"Name", [name = std::move(name)](const Call& call) { call.give(Variant(name)); });
        // Some objects give their numbers in another width than announced.
        getter(L"Type", [type](const Call& call) {
            call.give(Variant());
            if (call.result != nullptr) {
                call.result->vt = VT_I2;
                call.result->iVal = static_cast<SHORT>(type);
            }
        });
    }
};

class FieldsDouble : public Double {
public:
    explicit FieldsDouble(Ref<RecordsetDouble> recordset)
        : Double("Fields")
        , recordset_(std::move(recordset))
    {
        getter(L"Count", [this](const Call& call) {
            call.give(Variant(static_cast<std::int32_t>(recordset_->rows().columns.size())));
        });
        getter(
            L"Item", [this](const Call& call) { item(call); }, 1);
    }

private:
    Ref<RecordsetDouble> recordset_;

    void item(const Call& call)
    {
        const jet::Result& rows = recordset_->rows();
        const auto i = static_cast<std::size_t>(call.number(0));
        if (i >= rows.columns.size())
            refuse(3265,
                u"Item cannot be found in the collection corresponding to the requested name or ordinal.");
        call.give(new FieldDouble(rows.columns[i], adTypeOf(rows.types[i])));
    }
};

void checkProvider(const std::u16string& name)
{
    if (name.empty())
        refuse(kFail,
            u"[Microsoft][ODBC Driver Manager] Data source name not found and no default driver specified");
    if (text::equalNoCase(name, u"Other.Bitness"))
        refuse(REGDB_E_CLASSNOTREG, u"Class not registered");
    for (const char16_t* known : {u"Microsoft.ACE.OLEDB.12.0", u"Microsoft.Jet.OLEDB.4.0", u"SQLOLEDB.1"})
        if (text::equalNoCase(name, known))
            return;
    refuse(3706, u"Provider cannot be found. It may not be properly installed.");
}

jet::Result schemaRows(const std::vector<jet::TableInfo>& tables)
{
    jet::Result rows;
    rows.hasRows = true;
    for (const char16_t* column : {u"TABLE_CATALOG", u"TABLE_SCHEMA", u"TABLE_NAME", u"TABLE_TYPE",
             u"TABLE_GUID", u"DESCRIPTION", u"TABLE_PROPID", u"DATE_CREATED", u"DATE_MODIFIED"}) {
        rows.columns.emplace_back(column);
        rows.types.push_back(jet::ColumnType::Text);
    }
    for (const jet::TableInfo& table : tables) {
        std::vector<jet::Value> row(rows.columns.size());
        row[2] = table.name;
        row[3] = std::u16string(table.kind != jet::TableKind::Table ? u"SYSTEM TABLE" : u"TABLE");
        rows.rows.push_back(std::move(row));
    }
    return rows;
}

} // namespace

std::u16string keyword(std::u16string_view connectionString, std::u16string_view name)
{
    std::size_t at = 0;
    while (at < connectionString.size()) {
        const std::size_t equals = std::min(connectionString.find(u'=', at), connectionString.size());
        const std::u16string_view key = text::trimBlanks(connectionString.substr(at, equals - at));
        std::size_t start = std::min(equals + 1, connectionString.size());
        std::size_t end = 0;
        if (start < connectionString.size() && connectionString[start] == u'"') {
            end = std::min(connectionString.find(u'"', ++start), connectionString.size());
            at = std::min(connectionString.find(u';', end), connectionString.size()) + 1;
        } else {
            end = std::min(connectionString.find(u';', start), connectionString.size());
            at = end + 1;
        }
        if (text::equalNoCase(key, name))
            return std::u16string(connectionString.substr(start, end - start));
    }
    return {};
}

ConnectionDouble::ConnectionDouble()
    : Double("Connection")
{
    setter(L"ConnectionString", [this](const Call& call) {
        if (open_)
            refuse(3705, u"Operation is not allowed when the object is open.");
        connectionString_ = call.text(0);
    });
    getter(L"State", [this](const Call& call) { call.give(Variant(open_ ? 1 : 0)); });
    method(L"Open", 0, 4, [this](const Call& call) { open(call.has(0) ? call.text(0) : connectionString_); });
    method(L"Close", 0, 0, [this](const Call&) {
        if (!open_)
            refuseClosed();
        close();
    });
    method(L"OpenSchema", 1, 3, [this](const Call& call) { openSchema(call); });
}

ConnectionDouble::~ConnectionDouble()
{
    close();
}

void ConnectionDouble::open(const std::u16string& connectionString)
{
    if (open_)
        refuse(3705, u"Operation is not allowed when the object is open.");
    const std::u16string provider = keyword(connectionString, u"Provider");
    checkProvider(provider);
    const std::u16string source = keyword(connectionString, u"Data Source");
    if (text::equalNoCase(provider, u"SQLOLEDB.1"))
        refuse(kFail, u"[DBNETLIB][ConnectionOpen (Connect()).]SQL Server does not exist or access denied.");
    database_ = std::make_unique<jet::Database>(source);
    place_ = text::lowerCase(source);
    ++world().open[place_];
    open_ = true;
}

void ConnectionDouble::close()
{
    if (!open_)
        return;
    while (!recordsets_.empty())
        (*recordsets_.begin())->close();
    open_ = false;
    database_.reset();
    if (--world().open[place_] == 0)
        world().open.erase(place_);
}

void ConnectionDouble::openSchema(const Call& call)
{
    if (!open_)
        refuseClosed();
    if (call.number(0) != kTablesSchema)
        refuse(3251, u"Object or provider is not capable of performing requested operation.");
    call.give(new RecordsetDouble(schemaRows(database_->tables()), Ref<ConnectionDouble>::shared(*this)));
}

CommandDouble::CommandDouble()
    : Double("Command")
{
    refSetter(L"ActiveConnection", [this](const Call& call) {
        connection_ = Ref<ConnectionDouble>::shared(call.object<ConnectionDouble>(0));
    });
    setter(L"CommandText", [this](const Call& call) { text_ = call.text(0); });
    setter(L"CommandType", [](const Call& call) {
        if (call.number(0) != 1)
            refuse(
                3001, u"Arguments are of the wrong type, are out of acceptable range, or are in conflict.");
    });
    method(L"Execute", 0, 3, [this](const Call& call) { execute(call); });
}

void CommandDouble::execute(const Call& call)
{
    if (!connection_ || !connection_->isOpen())
        refuse(3709,
            u"The connection cannot be used to perform this operation. It is either closed or invalid in "
            u"this context.");
    if (call.has(0) && call.arguments[0]->vt != (VT_VARIANT | VT_BYREF))
        refuse(DISP_E_TYPEMISMATCH, u"Type mismatch.");
    const std::int32_t options = call.has(2) ? call.number(2) : 1;
    if (call.has(1) || (options != 1 && options != 129))
        refuse(3001, u"Arguments are of the wrong type, are out of acceptable range, or are in conflict.");
    jet::Result result = connection_->database().run(text_);
    if (call.has(0)) {
        VARIANT& changed = *call.arguments[0]->pvarVal;
        VariantClear(&changed);
        changed.vt = VT_I4;
        changed.lVal = result.changedRows;
    }
    if (options == 129)
        result = {};
    call.give(new RecordsetDouble(std::move(result), Ref<ConnectionDouble>::shared(*connection_)));
}

RecordsetDouble::RecordsetDouble(jet::Result result, Ref<ConnectionDouble> connection)
    : Double("Recordset")
    , result_(std::move(result))
    , connection_(std::move(connection))
    , open_(result_.hasRows)
{
    if (open_)
        connection_->recordsets_.insert(this);
    getter(L"State", [this](const Call& call) { call.give(Variant(open_ ? 1 : 0)); });
    getter(L"EOF", [this](const Call& call) {
        requireOpen();
        call.give(Variant(row_ >= result_.rows.size()));
    });
    getter(L"Fields",
        [this](const Call& call) { call.give(new FieldsDouble(Ref<RecordsetDouble>::shared(*this))); });
    method(L"GetRows", 0, 3, [this](const Call& call) { getRows(call); });
    method(L"Close", 0, 0, [this](const Call&) {
        requireOpen();
        close();
    });
}

RecordsetDouble::~RecordsetDouble()
{
    close();
}

void RecordsetDouble::close()
{
    if (open_)
        connection_->recordsets_.erase(this);
    open_ = false;
}

void RecordsetDouble::requireOpen() const
{
    if (!open_)
        refuseClosed();
}

void RecordsetDouble::getRows(const Call& call)
{
    requireOpen();
    const std::size_t left = result_.rows.size() - row_;
    if (left == 0)
        refuse(3021,
            u"Either BOF or EOF is True, or the current record has been deleted. Requested operation "
            u"requires a current record.");
    const std::size_t wanted =
        call.has(0) && call.number(0) >= 0 ? static_cast<std::size_t>(call.number(0)) : left;
    const std::size_t count = std::min(left, wanted);
    const std::size_t fields = result_.columns.size();
    SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(fields), 0}, {static_cast<ULONG>(count), 0}};
    SAFEARRAY* const array = SafeArrayCreate(VT_VARIANT, 2, bounds);
    void* data = nullptr;
    SafeArrayAccessData(array, &data);
    auto* cell = static_cast<VARIANT*>(data);
    for (std::size_t r = 0; r < count; ++r, ++row_)
        for (std::size_t f = 0; f < fields; ++f)
            fillVariant(*cell++, result_.rows[row_][f], result_.types[f]);
    SafeArrayUnaccessData(array);
    if (call.result == nullptr) {
        SafeArrayDestroy(array);
        return;
    }
    call.result->vt = VT_ARRAY | VT_VARIANT;
    call.result->parray = array;
}

} // namespace vellums::tests::ado

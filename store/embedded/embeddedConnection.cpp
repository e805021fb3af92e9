#include "store/embedded/embeddedConnection.h"

#include <cassert>

namespace vellums {
namespace {

class EmbeddedRecordset : public Recordset {
public:
    explicit EmbeddedRecordset(jet::Result result)
        : result_(std::move(result))
    {
    }
    const std::vector<std::u16string>& columns() const override { return result_.columns; }
    bool next() override { return ++row_ <= result_.rows.size(); }
    const Value& value(std::size_t column) const override
    {
        assert(row_ != 0 && row_ <= result_.rows.size() && column < result_.columns.size());
        return result_.rows[row_ - 1][column];
    }

private:
    jet::Result result_;
    std::size_t row_ = 0; // the present one, counted from 1
};

// As a provider's schema has it.
std::u16string_view schemaType(jet::TableKind kind)
{
    switch (kind) {
    case jet::TableKind::Table:
        return u"TABLE";
    case jet::TableKind::System:
        return u"SYSTEM TABLE";
    case jet::TableKind::LinkedFile:
        return u"LINK";
    case jet::TableKind::LinkedOdbc:
        return u"PASS-THROUGH";
    case jet::TableKind::Query:
        return u"VIEW";
    }
    return {};
}

} // namespace

EmbeddedConnection::EmbeddedConnection(const std::u16string& path, const std::u16string& password)
    : database_(asProvider([&] { return std::make_unique<jet::Database>(path, password); }))
{
}

std::unique_ptr<Recordset> EmbeddedConnection::query(std::u16string_view sql)
{
    return std::make_unique<EmbeddedRecordset>(asProvider([&] { return database_->run(sql); }));
}

std::int32_t EmbeddedConnection::execute(std::u16string_view sql)
{
    return asProvider([&] { return database_->run(sql).changedRows; });
}

std::vector<SchemaTable> EmbeddedConnection::tables()
{
    std::vector<SchemaTable> tables;
    for (const jet::TableInfo& table : asProvider([&] { return database_->tables(); }))
        tables.push_back({table.name, std::u16string(schemaType(table.kind))});
    return tables;
}

void EmbeddedConnection::beginBatch()
{
    asProvider([&] { database_->beginBatch(); });
}

void EmbeddedConnection::endBatch()
{
    asProvider([&] { database_->endBatch(); });
}

} // namespace vellums

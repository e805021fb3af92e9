// Rows of an ADO Recordset, fetched many at a time.
#pragma once

#include "platform/win32/comObject.h"
#include "store/connection.h"

#include <optional>
#include <string>
#include <vector>

namespace vellums {

// The rows that one call of GetRows brought: an array whose first index is the field and runs fastest.
class RowBlock {
public:
    // Throws platform::ComError when it is no such array.
    explicit RowBlock(platform::Variant rows);
    RowBlock(const RowBlock&) = delete;
    RowBlock& operator=(const RowBlock&) = delete;
    ~RowBlock(); // unlocks the array, which is then destroyed

    std::size_t fields() const { return fields_; }
    std::size_t rows() const { return rows_; }
    const VARIANT& cell(std::size_t field, std::size_t row) const { return cells_[row * fields_ + field]; }

private:
    platform::Variant array_;
    std::size_t fields_ = 0;
    std::size_t rows_ = 0;
    const VARIANT* cells_ = nullptr;
};

// Closed by the destructor. Its connection must live as long.
class AdoRecordset : public Recordset {
public:
    // A closed one (of a statement without rows) has neither columns nor rows. Throws platform::ComError.
    explicit AdoRecordset(platform::ComObject recordset);
    AdoRecordset(const AdoRecordset&) = delete;
    AdoRecordset& operator=(const AdoRecordset&) = delete;
    ~AdoRecordset() override;

    const std::vector<std::u16string>& columns() const override { return columns_; }
    bool next() override;
    const Value& value(std::size_t column) const override { return values_[column]; }

private:
    platform::ComObject recordset_;
    std::vector<std::u16string> columns_;
    std::vector<int> types_; // as ADO numbers them
    std::int32_t rowsAtOnce_ = 0;
    std::optional<RowBlock> block_;
    std::size_t row_ = 0;       // in the block
    std::vector<Value> values_; // of the present row

    void readFields();
    bool fetch();
    bool nextRow();
};

} // namespace vellums

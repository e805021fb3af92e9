#include "store/ado/adoRecordset.h"

#include "store/ado/adoState.h"
#include "store/ado/adoValue.h"
#include "store/ado/throughCom.h"

namespace vellums {
namespace {

// A call for each value would make a quarter of a million for a full list. Rows with memos come in
// smaller blocks, so that a block of long ones fits into memory.
constexpr std::int32_t kRowsAtOnce = 2000;
constexpr std::int32_t kLongRowsAtOnce = 50;

// The number of elements in a dimension, whatever it is counted from.
std::size_t extent(SAFEARRAY* array, UINT dimension)
{
    LONG low = 0;
    LONG high = -1;
    if (FAILED(SafeArrayGetLBound(array, dimension, &low)) ||
        FAILED(SafeArrayGetUBound(array, dimension, &high)) || high < low)
        return 0;
    return static_cast<std::size_t>(high - low) + 1;
}

} // namespace

RowBlock::RowBlock(platform::Variant rows)
    : array_(std::move(rows))
{
    SAFEARRAY* const array = array_.type() == (VT_ARRAY | VT_VARIANT) ? array_.raw().parray : nullptr;
    void* data = nullptr;
    // Locked until the block goes: cell() then reads the values where they lie, without a call for each.
    if (array == nullptr || SafeArrayGetDim(array) != 2 || FAILED(SafeArrayAccessData(array, &data)))
        throw platform::ComError(DISP_E_TYPEMISMATCH, u"Type mismatch.");
    fields_ = extent(array, 1);
    rows_ = extent(array, 2);
    cells_ = static_cast<const VARIANT*>(data);
}

RowBlock::~RowBlock()
{
    if (cells_ != nullptr)
        SafeArrayUnaccessData(array_.raw().parray);
}

AdoRecordset::AdoRecordset(platform::ComObject recordset)
    : recordset_(std::move(recordset))
{
    if (!isOpenAdo(recordset_))
        return;
    try {
        readFields();
    } catch (...) {
        closeAdo(recordset_); // the destructor does not run
        throw;
    }
}

AdoRecordset::~AdoRecordset()
{
    closeAdo(recordset_);
}

void AdoRecordset::readFields()
{
    rowsAtOnce_ = kRowsAtOnce;
    const platform::ComObject fields = recordset_.getObject(u"Fields");
    const std::int32_t count = fields.get(u"Count").toNumber();
    for (std::int32_t i = 0; i < count; ++i) {
        const platform::ComObject field = fields.item(i);
        columns_.push_back(field.get(u"Name").toText());
        types_.push_back(field.get(u"Type").toNumber());
        if (isLongType(types_.back()))
            rowsAtOnce_ = kLongRowsAtOnce;
    }
    values_.resize(columns_.size());
}

bool AdoRecordset::next()
{
    return throughCom([&] { return nextRow(); });
}

bool AdoRecordset::nextRow()
{
    if (columns_.empty())
        return false;
    if (block_ && row_ + 1 < block_->rows())
        ++row_;
    else if (!fetch())
        return false;
    for (std::size_t i = 0; i < values_.size(); ++i)
        takeValue(values_[i], block_->cell(i, row_), types_[i]);
    return true;
}

// The next block. GetRows fails where no row is left, so the end is asked for first.
bool AdoRecordset::fetch()
{
    block_.reset();
    row_ = 0;
    if (recordset_.get(u"EOF").toBool())
        return false;
    block_.emplace(recordset_.call(u"GetRows", {rowsAtOnce_}));
    if (block_->fields() != columns_.size() || block_->rows() == 0)
        throw platform::ComError(
            DISP_E_BADINDEX, u"The provider gave rows of another shape than it announced.");
    return true;
}

} // namespace vellums

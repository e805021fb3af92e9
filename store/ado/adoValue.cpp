#include "store/ado/adoValue.h"

#include "platform/win32/comObject.h"

#include <cstring>
#include <memory>

#include <objbase.h>

namespace vellums {
namespace {

void takeText(jet::Value& out, std::u16string_view text)
{
    if (auto* old = std::get_if<std::u16string>(&out))
        old->assign(text);
    else
        out = std::u16string(text);
}

// A GUID comes as text in braces; only the type of its column tells it from a text that looks like one.
void takeTextOrGuid(jet::Value& out, BSTR text, int adType)
{
    GUID parsed{};
    if (adType != kAdGuid || text == nullptr || FAILED(CLSIDFromString(text, &parsed))) {
        takeText(out, platform::textOf(text));
        return;
    }
    jet::Guid guid;
    static_assert(sizeof parsed == sizeof guid.bytes);
    std::memcpy(guid.bytes.data(), &parsed, sizeof parsed);
    out = guid;
}

// The number of a VARIANT of up to 32 bits, with sign or without. Throws ComError for all other kinds.
std::int64_t wholeNumber(const VARIANT& value)
{
    switch (value.vt) {
    case VT_I4:
    case VT_INT:
        return value.lVal;
    case VT_I2:
        return value.iVal;
    case VT_I1:
        return static_cast<signed char>(value.cVal);
    case VT_UI1:
        return value.bVal;
    case VT_UI2:
        return value.uiVal;
    case VT_UI4:
    case VT_UINT:
        return value.ulVal;
    default:
        throw platform::ComError(DISP_E_TYPEMISMATCH, u"Type mismatch.");
    }
}

// A whole number outside 32 bits keeps all of its digits.
void takeWhole(jet::Value& out, std::int64_t number)
{
    if (number == static_cast<std::int32_t>(number))
        out = static_cast<std::int32_t>(number);
    else
        out = number;
}

jet::Decimal decimalOf(const DECIMAL& value)
{
    jet::Decimal decimal;
    decimal.negative = (value.sign & DECIMAL_NEG) != 0;
    decimal.scale = value.scale;
    // Words from the highest to the lowest; COM's have 96 bits, those of a file 128.
    decimal.magnitude = {0, static_cast<std::uint32_t>(value.Hi32), static_cast<std::uint32_t>(value.Mid32),
        static_cast<std::uint32_t>(value.Lo32)};
    return decimal;
}

struct Unlock {
    void operator()(SAFEARRAY* array) const { SafeArrayUnaccessData(array); }
};

// A locked array cannot be destroyed: it is unlocked also where its bytes find no room.
void takeBytes(jet::Value& out, SAFEARRAY* array)
{
    LONG low = 0;
    LONG high = -1;
    void* data = nullptr;
    if (array == nullptr || SafeArrayGetDim(array) != 1 || FAILED(SafeArrayGetLBound(array, 1, &low)) ||
        FAILED(SafeArrayGetUBound(array, 1, &high)) || FAILED(SafeArrayAccessData(array, &data)))
        throw platform::ComError(DISP_E_TYPEMISMATCH, u"Type mismatch.");
    const std::unique_ptr<SAFEARRAY, Unlock> locked(array);
    const auto* first = static_cast<const std::byte*>(data);
    out = jet::Bytes(first, first + (high - low + 1));
}

} // namespace

bool isLongType(int adType)
{
    constexpr int kLongAnsi = 201;
    constexpr int kLongText = 203;
    constexpr int kLongBinary = 205;
    return adType == kLongAnsi || adType == kLongText || adType == kLongBinary;
}

void takeValue(jet::Value& out, const VARIANT& value, int adType)
{
    switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
        out = jet::Null{};
        return;
    case VT_BSTR:
        return takeTextOrGuid(out, value.bstrVal, adType);
    case VT_I8:
        out = std::int64_t{value.llVal};
        return;
    case VT_BOOL:
        out = value.boolVal != VARIANT_FALSE;
        return;
    case VT_R4:
        out = value.fltVal;
        return;
    case VT_R8:
        out = value.dblVal;
        return;
    case VT_DATE:
        out = jet::Date{value.date};
        return;
    case VT_CY:
        out = jet::Currency{value.cyVal.int64};
        return;
    case VT_DECIMAL:
        out = decimalOf(value.decVal);
        return;
    case VT_ARRAY | VT_UI1:
        return takeBytes(out, value.parray);
    default:
        takeWhole(out, wholeNumber(value));
    }
}

} // namespace vellums

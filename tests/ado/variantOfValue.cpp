#include "tests/ado/variantOfValue.h"

#include <cstring>

#include <objbase.h>

namespace vellums::tests::ado {
namespace {

struct Filler {
    VARIANT& out;
    jet::ColumnType type;

    void operator()(jet::Null) const { out.vt = VT_NULL; }
    void operator()(bool value) const
    {
        out.vt = VT_BOOL;
        out.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    }
    void operator()(std::int32_t value) const
    {
        if (type == jet::ColumnType::Byte) {
            out.vt = VT_UI1;
            out.bVal = static_cast<BYTE>(value);
        } else if (type == jet::ColumnType::Integer) {
            out.vt = VT_I2;
            out.iVal = static_cast<SHORT>(value);
        } else {
            out.vt = VT_I4;
            out.lVal = value;
        }
    }
    void operator()(std::int64_t value) const
    {
        out.vt = VT_I8;
        out.llVal = value;
    }
    void operator()(float value) const
    {
        out.vt = VT_R4;
        out.fltVal = value;
    }
    void operator()(double value) const
    {
        out.vt = VT_R8;
        out.dblVal = value;
    }
    void operator()(jet::Date value) const
    {
        out.vt = VT_DATE;
        out.date = value.days;
    }
    void operator()(jet::Currency value) const
    {
        out.vt = VT_CY;
        out.cyVal.int64 = value.tenThousandths;
    }
    void operator()(const jet::Decimal& value) const
    {
        out.decVal.scale = value.scale;
        out.decVal.sign = value.negative ? DECIMAL_NEG : 0;
        out.decVal.Hi32 = value.magnitude[1];
        out.decVal.Mid32 = value.magnitude[2];
        out.decVal.Lo32 = value.magnitude[3];
        out.vt = VT_DECIMAL; // it lies inside the number
    }
    void operator()(const jet::Guid& value) const
    {
        GUID guid{};
        std::memcpy(&guid, value.bytes.data(), sizeof guid);
        wchar_t text[40];
        StringFromGUID2(guid, text, 40);
        out.vt = VT_BSTR;
        out.bstrVal = SysAllocString(text);
    }
    void operator()(const std::u16string& value) const
    {
        out.vt = VT_BSTR;
        if (!value.empty()) // else a null one, which is the empty text
            out.bstrVal = SysAllocStringLen(
                reinterpret_cast<const OLECHAR*>(value.data()), static_cast<UINT>(value.size()));
    }
    void operator()(const jet::Bytes& value) const
    {
        SAFEARRAY* const array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(value.size()));
        void* data = nullptr;
        SafeArrayAccessData(array, &data);
        if (!value.empty())
            std::memcpy(data, value.data(), value.size());
        SafeArrayUnaccessData(array);
        out.vt = VT_ARRAY | VT_UI1;
        out.parray = array;
    }
};

} // namespace

void fillVariant(VARIANT& out, const jet::Value& value, jet::ColumnType type)
{
    VariantInit(&out);
    std::visit(Filler{out, type}, value);
}

int adTypeOf(jet::ColumnType type)
{
    using Type = jet::ColumnType;
    switch (type) {
    case Type::Boolean:
        return 11;
    case Type::Byte:
        return 17;
    case Type::Integer:
        return 2;
    case Type::Currency:
        return 6;
    case Type::Single:
        return 4;
    case Type::Double:
        return 5;
    case Type::Date:
        return 7;
    case Type::Binary:
        return 204;
    case Type::Text:
        return 202;
    case Type::Ole:
        return 205;
    case Type::Memo:
        return 203;
    case Type::Guid:
        return 72;
    case Type::Decimal:
        return 131;
    default:
        return 3;
    }
}

} // namespace vellums::tests::ado

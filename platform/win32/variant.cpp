#include "platform/win32/variant.h"

#include "platform/win32/comObject.h"

#include <new>

namespace vellums::platform {
namespace {

VARIANT emptyVariant() noexcept
{
    VARIANT value;
    VariantInit(&value);
    return value;
}

} // namespace

Variant::Variant(std::int32_t value) noexcept
    : raw_(emptyVariant())
{
    raw_.vt = VT_I4;
    raw_.lVal = value;
}

Variant::Variant(std::u16string_view text)
    : raw_(emptyVariant())
{
    raw_.bstrVal =
        SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()), static_cast<UINT>(text.size()));
    if (raw_.bstrVal == nullptr)
        throw std::bad_alloc();
    raw_.vt = VT_BSTR;
}

Variant::Variant(const std::u16string& text)
    : Variant(std::u16string_view(text))
{
}

Variant::Variant(const char16_t* text)
    : Variant(std::u16string_view(text))
{
}

// A reference of its own: clearing the variant releases it.
Variant::Variant(const ComObject& object) noexcept
    : raw_(emptyVariant())
{
    raw_.vt = VT_DISPATCH;
    raw_.pdispVal = object.raw();
    if (raw_.pdispVal != nullptr)
        raw_.pdispVal->AddRef();
}

// A VARIANT may be moved by its bytes, as long as the old one is emptied without being cleared.
Variant::Variant(Variant&& other) noexcept
    : raw_(other.raw_)
{
    VariantInit(&other.raw_);
}

Variant& Variant::operator=(Variant&& other) noexcept
{
    if (this != &other) {
        VariantClear(&raw_);
        raw_ = other.raw_;
        VariantInit(&other.raw_);
    }
    return *this;
}

Variant Variant::missing() noexcept
{
    Variant value;
    value.raw_.vt = VT_ERROR;
    value.raw_.scode = DISP_E_PARAMNOTFOUND;
    return value;
}

Variant Variant::filledInto(Variant& target) noexcept
{
    Variant value;
    // By reference: clearing this variant leaves the target alone.
    value.raw_.vt = VT_VARIANT | VT_BYREF;
    value.raw_.pvarVal = &target.raw_;
    return value;
}

VARIANT* Variant::put()
{
    VariantClear(&raw_);
    return &raw_;
}

// Numbers and texts look the same in every locale.
void Variant::changeInto(Variant& target, VARTYPE type) const
{
    // NULL and nothing at all would turn into 0 or an empty text.
    const HRESULT result = raw_.vt == VT_NULL || raw_.vt == VT_EMPTY
        ? DISP_E_TYPEMISMATCH
        : VariantChangeTypeEx(&target.raw_, const_cast<VARIANT*>(&raw_), LOCALE_INVARIANT, 0, type);
    if (FAILED(result))
        throw ComError(result, u"Type mismatch.");
}

std::int32_t Variant::toNumber() const
{
    Variant number;
    changeInto(number, VT_I4);
    return number.raw_.lVal;
}

bool Variant::toBool() const
{
    Variant value;
    changeInto(value, VT_BOOL);
    return value.raw_.boolVal != VARIANT_FALSE;
}

std::u16string Variant::toText() const
{
    if (raw_.vt == VT_BSTR)
        return std::u16string(textOf(raw_.bstrVal));
    Variant text;
    changeInto(text, VT_BSTR);
    return std::u16string(textOf(text.raw_.bstrVal));
}

ComObject Variant::toObject() const
{
    IDispatch* object = nullptr;
    if ((raw_.vt == VT_DISPATCH || raw_.vt == VT_UNKNOWN) && raw_.punkVal != nullptr)
        raw_.punkVal->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&object));
    if (object == nullptr)
        throw ComError(DISP_E_TYPEMISMATCH, u"Object required.");
    return ComObject(object);
}

std::u16string_view textOf(BSTR text)
{
    if (text == nullptr)
        return {};
    return {reinterpret_cast<const char16_t*>(text), SysStringLen(text)};
}

} // namespace vellums::platform

// Owner of a VARIANT, the value that travels in late-bound COM calls.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

#include <windows.h>

#include <oleauto.h>

namespace vellums::platform {

class ComObject;

// Moves, never copies; what it holds is given back exactly once. The constructors are for arguments and
// make what a late-bound caller sends: numbers VT_I4, booleans -1 or 0, texts of any length and content.
class Variant {
public:
    Variant() noexcept { VariantInit(&raw_); }
    Variant(std::int32_t value) noexcept;
    template <std::same_as<bool> Bool> // nothing else turns into a boolean
    Variant(Bool value) noexcept;
    Variant(std::u16string_view text);
    Variant(const std::u16string& text);
    Variant(const char16_t* text);
    Variant(const ComObject& object) noexcept;
    Variant(Variant&& other) noexcept;
    Variant& operator=(Variant&& other) noexcept;
    ~Variant() { VariantClear(&raw_); }

    // An argument that is left out with others behind it.
    static Variant missing() noexcept;
    // An argument that the object fills in. The target must outlive the call.
    static Variant filledInto(Variant& target) noexcept;

    VARTYPE type() const { return raw_.vt; }
    const VARIANT& raw() const { return raw_; }
    VARIANT* put(); // empty, for a result

    // What was read, whatever kind of number or text it came as. Throw ComError (type mismatch), also for
    // NULL and for what is no object.
    std::int32_t toNumber() const;
    bool toBool() const;
    std::u16string toText() const;
    ComObject toObject() const;

private:
    VARIANT raw_;
    void changeInto(Variant& target, VARTYPE type) const;
};

template <std::same_as<bool> Bool>
Variant::Variant(Bool value) noexcept
{
    VariantInit(&raw_);
    raw_.vt = VT_BOOL;
    raw_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
}

// The text of a BSTR; a null one is the empty text.
std::u16string_view textOf(BSTR text);

} // namespace vellums::platform

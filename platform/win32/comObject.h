// Late-bound COM: objects that are created by name and driven through IDispatch. The one place where
// Invoke is called.
//
// An object belongs to the thread that made it. The thread holds a ComApartment (or has called
// OleInitialize) for as long as any object lives.
#pragma once

#include "platform/win32/variant.h"

#include <cstdint>
#include <exception>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <windows.h>

#include <oleauto.h>

namespace vellums::platform {

// Why an object refused, in its own words where it had any, else in the system's.
struct ComError : std::exception {
    ComError(HRESULT result, std::u16string text);
    const char* what() const noexcept override { return "ComError"; }

    HRESULT code;
    std::u16string description; // without a line end
    std::int32_t number;        // as Err.Number shows it
};

// Err.Number of an HRESULT: the low half of 800Axxxx, every other one as a signed number.
std::int32_t errNumber(HRESULT code);

// Single-threaded COM on this thread, until the end of the scope.
class ComApartment {
public:
    ComApartment();
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
    ~ComApartment();
    explicit operator bool() const { return SUCCEEDED(result_); }

private:
    HRESULT result_;
};

// Whether an object of that name can really be made in this process: it is registered, its DLL is there
// and has the bitness of the process. Loads the DLL; the object is released at once.
bool canCreate(std::u16string_view progId);

// Where an object runs.
enum class ComPlace { ThisProcess, ItsOwnProcess };

// A reference to an object. Moves, never copies, is released exactly once. Every member throws ComError.
class ComObject {
public:
    using Arguments = std::initializer_list<Variant>; // in the order of the documentation

    // 429 when there is no such class or its server cannot be loaded.
    static ComObject create(std::u16string_view progId, ComPlace place = ComPlace::ThisProcess);
    ComObject() = default;
    explicit ComObject(IDispatch* taken) noexcept
        : raw_(taken)
    {
    }
    ComObject(ComObject&& other) noexcept;
    ComObject& operator=(ComObject&& other) noexcept;
    ~ComObject();

    IDispatch* raw() const { return raw_; }
    explicit operator bool() const { return raw_ != nullptr; }

    Variant get(std::u16string_view name) const;
    ComObject getObject(std::u16string_view name) const { return get(name).toObject(); }
    // An element of a collection, by number or name.
    ComObject item(const Variant& index) const;
    Variant call(std::u16string_view name, Arguments arguments = {}) const;
    // Assigns a value; an object given so stands for its default property.
    void put(std::u16string_view name, const Variant& value) const;
    // Assigns the object itself.
    void putRef(std::u16string_view name, const ComObject& object) const;

private:
    IDispatch* raw_ = nullptr;
    mutable std::vector<std::pair<std::u16string, DISPID>> ids_; // those asked for already

    DISPID idOf(std::u16string_view name) const;
    void invoke(
        std::u16string_view name, WORD flags, const Variant* first, std::size_t count, VARIANT* result) const;
    void assign(std::u16string_view name, WORD flags, const Variant& value) const;
};

} // namespace vellums::platform

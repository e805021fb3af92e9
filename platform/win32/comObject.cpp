// A call by name takes three things from us: the number of the name, which an object tells (idOf asks each
// object once for each name); the arguments in an array, last first; and a record for an exception, whose
// texts are ours to free, whatever happens.
//
// A refusal comes in one of two forms. Either the object fills in the exception, and its sentence and number
// travel on; or the call gives a bare code, and the system is asked for a sentence. Err.Number is the low
// half of a code in the block 800A0000, which is meant for it, and the whole code otherwise (errNumber).
#include "platform/win32/comObject.h"

#include "platform/win32/systemPath.h"

#include <iterator>

#include <objbase.h>

namespace vellums::platform {
namespace {

constexpr std::int32_t kCannotCreate = 429;
constexpr DWORD kControlErrors = 0x800A0000; // their low half is a number of the object's own

std::u16string trimmedEnd(std::u16string text)
{
    while (!text.empty() && (text.back() == u'\r' || text.back() == u'\n' || text.back() == u' '))
        text.pop_back();
    return text;
}

std::u16string systemSentence(HRESULT code)
{
    wchar_t buffer[512];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        static_cast<DWORD>(code), 0, buffer, static_cast<DWORD>(std::size(buffer)), nullptr);
    const std::u16string text = trimmedEnd(fromWide({buffer, length}));
    return text.empty() ? u"Automation error." : text;
}

// The texts of an exception, freed whatever happens.
struct OwnedException : EXCEPINFO {
    OwnedException()
        : EXCEPINFO{}
    {
    }
    OwnedException(const OwnedException&) = delete;
    OwnedException& operator=(const OwnedException&) = delete;
    ~OwnedException()
    {
        SysFreeString(bstrSource);
        SysFreeString(bstrDescription);
        SysFreeString(bstrHelpFile);
    }
};

[[noreturn]] void fail(OwnedException& exception)
{
    // Some objects write down what went wrong only when they are asked.
    if (exception.pfnDeferredFillIn != nullptr)
        exception.pfnDeferredFillIn(&exception);
    const HRESULT code =
        // Either of the two is filled in, never both.
        exception.scode != 0 ? exception.scode : static_cast<HRESULT>(kControlErrors | exception.wCode);
    throw ComError(code, std::u16string(textOf(exception.bstrDescription)));
}

bool isMissingClass(HRESULT result)
{
    constexpr auto kInvalidSyntax = static_cast<HRESULT>(0x800401E4);
    return result == REGDB_E_CLASSNOTREG || result == CO_E_CLASSSTRING || result == kInvalidSyntax;
}

[[noreturn]] void failToCreate(HRESULT result, std::u16string_view progId)
{
    ComError error(result, {});
    if (isMissingClass(result)) {
        error.number = kCannotCreate;
        error.description = u"ActiveX component can't create object: " + std::u16string(progId);
    }
    throw error;
}

HRESULT createInstance(std::u16string_view progId, DWORD context, REFIID interfaceId, void** object)
{
    CLSID id{};
    const HRESULT known = CLSIDFromProgID(toWide(progId).c_str(), &id);
    return FAILED(known) ? known : CoCreateInstance(id, nullptr, context, interfaceId, object);
}

} // namespace

ComError::ComError(HRESULT result, std::u16string text)
    : code(result)
    , description(trimmedEnd(std::move(text)))
    , number(errNumber(result))
{
    if (description.empty())
        description = systemSentence(result);
}

std::int32_t errNumber(HRESULT code)
{
    const auto bits = static_cast<DWORD>(code);
    return (bits & 0xFFFF0000) == kControlErrors ? static_cast<std::int32_t>(bits & 0xFFFF) : code;
}

ComApartment::ComApartment()
    : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))
{
}

ComApartment::~ComApartment()
{
    if (SUCCEEDED(result_))
        CoUninitialize();
}

bool canCreate(std::u16string_view progId)
{
    IUnknown* object = nullptr;
    if (FAILED(createInstance(progId, CLSCTX_INPROC_SERVER, IID_IUnknown, reinterpret_cast<void**>(&object))))
        return false;
    object->Release();
    return true;
}

ComObject ComObject::create(std::u16string_view progId, ComPlace place)
{
    const DWORD context = place == ComPlace::ThisProcess ? CLSCTX_INPROC_SERVER : CLSCTX_LOCAL_SERVER;
    IDispatch* object = nullptr;
    const HRESULT result = createInstance(progId, context, IID_IDispatch, reinterpret_cast<void**>(&object));
    if (FAILED(result))
        failToCreate(result, progId);
    return ComObject(object);
}

ComObject::ComObject(ComObject&& other) noexcept
    : raw_(std::exchange(other.raw_, nullptr))
    , ids_(std::move(other.ids_))
{
}

ComObject& ComObject::operator=(ComObject&& other) noexcept
{
    if (this != &other) {
        // Released at the end, when this object is whole again: releasing may call back.
        ComObject old(std::move(*this));
        raw_ = std::exchange(other.raw_, nullptr);
        ids_ = std::move(other.ids_);
    }
    return *this;
}

ComObject::~ComObject()
{
    if (raw_ != nullptr)
        raw_->Release();
}

DISPID ComObject::idOf(std::u16string_view name) const
{
    // A handful of names for each object: a row to go through is quicker than a map.
    for (const auto& [known, id] : ids_)
        if (known == name)
            return id;
    std::wstring wide = toWide(name);
    LPOLESTR names = wide.data();
    DISPID id = DISPID_UNKNOWN;
    const HRESULT result = raw_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(result))
        throw ComError(result, {});
    ids_.emplace_back(name, id);
    return id;
}

// The values are lent to the object, last first; it copies what it keeps.
void ComObject::invoke(
    std::u16string_view name, WORD flags, const Variant* first, std::size_t count, VARIANT* result) const
{
    if (raw_ == nullptr)
        throw ComError(E_POINTER, u"Object variable not set.");
    std::vector<VARIANT> lent;
    lent.reserve(count);
    for (std::size_t i = count; i-- > 0;)
        lent.push_back(first[i].raw());
    // An assignment passes its value as a named argument; objects refuse it otherwise.
    DISPID assigned = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{lent.data(), nullptr, static_cast<UINT>(count), 0};
    if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
        parameters.rgdispidNamedArgs = &assigned;
        parameters.cNamedArgs = 1;
    }
    OwnedException exception;
    UINT wrongArgument = 0;
    const HRESULT code = raw_->Invoke(
        idOf(name), IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result, &exception, &wrongArgument);
    if (code == DISP_E_EXCEPTION)
        fail(exception);
    if (FAILED(code))
        throw ComError(code, {});
}

Variant ComObject::get(std::u16string_view name) const
{
    Variant result;
    invoke(name, DISPATCH_PROPERTYGET, nullptr, 0, result.put());
    return result;
}

ComObject ComObject::item(const Variant& index) const
{
    Variant result;
    invoke(u"Item", DISPATCH_METHOD | DISPATCH_PROPERTYGET, &index, 1, result.put());
    return result.toObject();
}

Variant ComObject::call(std::u16string_view name, Arguments arguments) const
{
    Variant result;
    invoke(name, DISPATCH_METHOD, arguments.begin(), arguments.size(), result.put());
    return result;
}

void ComObject::put(std::u16string_view name, const Variant& value) const
{
    assign(name, DISPATCH_PROPERTYPUT, value);
}

void ComObject::putRef(std::u16string_view name, const ComObject& object) const
{
    assign(name, DISPATCH_PROPERTYPUTREF, object);
}

void ComObject::assign(std::u16string_view name, WORD flags, const Variant& value) const
{
    invoke(name, flags, &value, 1, nullptr);
}

} // namespace vellums::platform

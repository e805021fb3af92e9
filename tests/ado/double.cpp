#include "tests/ado/double.h"

#include "jet/file/error.h"
#include "platform/win32/comObject.h"
#include "text/unicode.h"

#include <chrono>

namespace vellums::tests::ado {
namespace {

std::string shown(const VARIANT& value)
{
    switch (value.vt) {
    case VT_BSTR:
        return "'" + text::toUtf8(platform::textOf(value.bstrVal)) + "'";
    case VT_I4:
        return std::to_string(value.lVal);
    case VT_BOOL:
        return value.boolVal == VARIANT_TRUE ? "True"
            : value.boolVal == VARIANT_FALSE ? "False"
                                             : "bad boolean";
    case VT_DISPATCH:
        return "object";
    case VT_ERROR:
        return value.scode == DISP_E_PARAMNOTFOUND ? "missing" : "error";
    case VT_VARIANT | VT_BYREF:
        return "out";
    default:
        return "type " + std::to_string(value.vt);
    }
}

BSTR newText(std::u16string_view text)
{
    return SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()), static_cast<UINT>(text.size()));
}

// The text waits in the reserved place until the caller asks for it.
HRESULT STDMETHODCALLTYPE fillIn(EXCEPINFO* exception)
{
    exception->bstrDescription = static_cast<BSTR>(exception->pvReserved);
    exception->pvReserved = nullptr;
    return S_OK;
}

HRESULT tell(const Refusal& refusal, EXCEPINFO* exception)
{
    if (exception == nullptr)
        return DISP_E_EXCEPTION;
    *exception = {};
    exception->bstrSource = newText(u"double");
    if (refusal.code > 0 && refusal.code <= 0xFFFF) {
        exception->wCode = static_cast<WORD>(refusal.code);
        exception->bstrDescription = newText(refusal.text);
    } else {
        exception->scode = refusal.code;
        exception->pvReserved = newText(refusal.text);
        exception->pfnDeferredFillIn = fillIn;
    }
    return DISP_E_EXCEPTION;
}

// Adds the time of the outermost call to the world's account.
class Timed {
public:
    Timed()
        : begin_(world().timing ? std::chrono::steady_clock::now() : std::chrono::steady_clock::time_point())
    {
    }
    Timed(const Timed&) = delete;
    Timed& operator=(const Timed&) = delete;
    ~Timed()
    {
        if (world().timing)
            world().answeringMs +=
                std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin_).count();
    }

private:
    std::chrono::steady_clock::time_point begin_;
};

} // namespace

World& world()
{
    static World only;
    return only;
}

int World::connections() const
{
    int sum = 0;
    for (const auto& [file, count] : open)
        sum += count;
    return sum;
}

void refuse(HRESULT code, std::u16string text)
{
    throw Refusal{code, std::move(text)};
}

bool Call::has(std::size_t i) const
{
    return i < arguments.size() &&
        !(arguments[i]->vt == VT_ERROR && arguments[i]->scode == DISP_E_PARAMNOTFOUND);
}

std::u16string Call::text(std::size_t i) const
{
    if (!has(i) || arguments[i]->vt != VT_BSTR)
        refuse(DISP_E_TYPEMISMATCH, u"Type mismatch.");
    return std::u16string(platform::textOf(arguments[i]->bstrVal));
}

std::int32_t Call::number(std::size_t i) const
{
    if (!has(i) || arguments[i]->vt != VT_I4)
        refuse(DISP_E_TYPEMISMATCH, u"Type mismatch.");
    return arguments[i]->lVal;
}

void Call::give(platform::Variant value) const
{
    if (result != nullptr) {
        *result = value.raw();
        VariantInit(const_cast<VARIANT*>(&value.raw())); // it has moved
    }
}

void Call::give(IDispatch* counted) const
{
    if (result == nullptr) {
        counted->Release();
        return;
    }
    result->vt = VT_DISPATCH;
    result->pdispVal = counted;
}

Double::Double(std::string name)
    : name_(std::move(name))
{
    ++world().alive;
}

Double::~Double()
{
    --world().alive;
}

HRESULT Double::QueryInterface(REFIID id, void** object)
{
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDispatch)) {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
}

ULONG Double::AddRef()
{
    return ++references_;
}

ULONG Double::Release()
{
    const ULONG left = --references_;
    if (left == 0)
        delete this;
    return left;
}

HRESULT Double::GetTypeInfoCount(UINT* count)
{
    *count = 0;
    return S_OK;
}

HRESULT Double::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids)
{
    for (UINT i = 0; i < count; ++i)
        ids[i] = DISPID_UNKNOWN;
    for (std::size_t i = 0; i < members_.size() && count == 1; ++i)
        if (lstrcmpiW(members_[i].name.c_str(), names[0]) == 0)
            ids[0] = static_cast<DISPID>(i + 1);
    return ids[0] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT Double::Invoke(
    DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception, UINT*)
{
    const Timed timed;
    if (id < 1 || static_cast<std::size_t>(id) > members_.size())
        return DISP_E_MEMBERNOTFOUND;
    const Member& called = members_[static_cast<std::size_t>(id) - 1];
    const bool assigns = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    const UINT named = assigns ? 1 : 0;
    if (parameters->cNamedArgs != named ||
        (assigns && parameters->rgdispidNamedArgs[0] != DISPID_PROPERTYPUT))
        return assigns ? DISP_E_PARAMNOTOPTIONAL : DISP_E_NONAMEDARGS;
    Call call{{}, result};
    for (UINT i = parameters->cArgs; i-- > 0;) // they are stored last first
        call.arguments.push_back(&parameters->rgvarg[i]);
    if (world().recording)
        record(called, flags, call);
    const Way* const way = wayOf(called, flags);
    if (way == nullptr)
        return DISP_E_MEMBERNOTFOUND;
    if (call.arguments.size() < way->fewest || call.arguments.size() > way->most)
        return DISP_E_BADPARAMCOUNT;
    if (result != nullptr)
        VariantInit(result);
    return answer(*way, call, exception);
}

HRESULT Double::answer(const Way& way, const Call& call, EXCEPINFO* exception) const
{
    try {
        way.action(call);
        return S_OK;
    } catch (const Refusal& refusal) {
        return tell(refusal, exception);
    } catch (const jet::Error& error) {
        return tell({error.number, error.description}, exception);
    } catch (const std::exception&) {
        return E_UNEXPECTED;
    }
}

const Double::Way* Double::wayOf(const Member& member, WORD flags) const
{
    for (const Way& way : member.ways)
        if ((way.flag & flags) != 0 &&
            (way.flag != DISPATCH_PROPERTYGET || way.fewest > 0 || flags == DISPATCH_PROPERTYGET))
            return &way;
    return nullptr;
}

void Double::record(const Member& member, WORD flags, const Call& call) const
{
    std::string line =
        name_ + "." + std::string(member.name.begin(), member.name.end()) + "/" + std::to_string(flags) + "(";
    for (std::size_t i = 0; i < call.arguments.size(); ++i)
        line += (i == 0 ? "" : ", ") + shown(*call.arguments[i]);
    world().calls.push_back(line + ")");
}

Double::Member& Double::member(const wchar_t* name)
{
    for (Member& known : members_)
        if (known.name == name)
            return known;
    members_.push_back({name, {}});
    return members_.back();
}

void Double::method(const wchar_t* name, std::size_t fewest, std::size_t most, Action action)
{
    member(name).ways.push_back({DISPATCH_METHOD, fewest, most, std::move(action)});
}

void Double::getter(const wchar_t* name, Action action, std::size_t indexes)
{
    member(name).ways.push_back({DISPATCH_PROPERTYGET, indexes, indexes, std::move(action)});
}

void Double::setter(const wchar_t* name, Action action)
{
    member(name).ways.push_back({DISPATCH_PROPERTYPUT, 1, 1, std::move(action)});
}

void Double::refSetter(const wchar_t* name, Action action)
{
    member(name).ways.push_back({DISPATCH_PROPERTYPUTREF, 1, 1, std::move(action)});
}

} // namespace vellums::tests::ado

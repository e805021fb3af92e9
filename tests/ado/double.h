// COM objects of the tests' own, driven through IDispatch, as strict as those they stand for.
#pragma once

#include "platform/win32/variant.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <windows.h>

#include <oleauto.h>

namespace vellums::tests::ado {

// What all doubles of this process know in common.
struct World {
    int alive = 0;                      // objects that are not released yet
    std::map<std::u16string, int> open; // connections to each file or server, lower case
    bool recording = false;
    std::vector<std::string> calls; // "Class.Member/flags(arguments)", arguments in their order
    double answeringMs = 0;         // time spent inside the doubles' members, when timing
    bool timing = false;

    int connections() const;
};
World& world();

// Thrown inside a member: the object refuses. Numbers up to 65535 travel as wCode, as errors of the
// object's own; the text of others is only filled in when it is asked for.
struct Refusal {
    HRESULT code;
    std::u16string text;
};
[[noreturn]] void refuse(HRESULT code, std::u16string text);

// One call of a member, its arguments in their natural order.
struct Call {
    std::vector<const VARIANT*> arguments;
    VARIANT* result; // may be null

    bool has(std::size_t i) const; // given and not left out
    std::u16string text(std::size_t i) const;
    std::int32_t number(std::size_t i) const;
    // The object behind an argument of the doubles' own kind; refuses others.
    template <typename Object>
    Object& object(std::size_t i) const
    {
        auto* found = has(i) && arguments[i]->vt == VT_DISPATCH
            ? dynamic_cast<Object*>(arguments[i]->pdispVal)
            : nullptr;
        if (found == nullptr)
            refuse(3001,
                u"Arguments are of the wrong type, are out of acceptable range, or are in conflict "
                u"with one another.");
        return *found;
    }
    // The result; an object is given with one reference.
    void give(platform::Variant value) const;
    void give(IDispatch* counted) const;
};

// COM's interfaces have no virtual destructor; objects are deleted by their own Release alone.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// An object whose members are declared by its class. Begins with one reference.
class Double : public IDispatch {
public:
    using Action = std::function<void(const Call&)>;

    Double(const Double&) = delete;
    Double& operator=(const Double&) = delete;
    virtual ~Double();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
        VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) override;

protected:
    explicit Double(std::string name);

    void method(const wchar_t* member, std::size_t fewest, std::size_t most, Action action);
    void getter(const wchar_t* member, Action action, std::size_t indexes = 0);
    void setter(const wchar_t* member, Action action);    // by value
    void refSetter(const wchar_t* member, Action action); // an object by reference

private:
    struct Way {
        WORD flag;
        std::size_t fewest;
        std::size_t most;
        Action action;
    };
    struct Member {
        std::wstring name;
        std::vector<Way> ways;
    };
    std::string name_;
    ULONG references_ = 1;
    std::vector<Member> members_; // the DISPID is the place, counted from 1

    Member& member(const wchar_t* name);
    const Way* wayOf(const Member& member, WORD flags) const;
    void record(const Member& member, WORD flags, const Call& call) const;
    HRESULT answer(const Way& way, const Call& call, EXCEPINFO* exception) const;
};

#pragma GCC diagnostic pop

// A counted reference to a double.
template <typename Object>
class Ref {
public:
    Ref() = default;
    explicit Ref(Object* taken)
        : raw_(taken)
    {
    }
    static Ref shared(Object& object)
    {
        object.AddRef();
        return Ref(&object);
    }
    Ref(Ref&& other) noexcept
        : raw_(std::exchange(other.raw_, nullptr))
    {
    }
    Ref& operator=(Ref&& other) noexcept
    {
        std::swap(raw_, other.raw_);
        return *this;
    }
    ~Ref()
    {
        if (raw_ != nullptr)
            raw_->Release();
    }
    Object* operator->() const { return raw_; }
    Object& operator*() const { return *raw_; }
    explicit operator bool() const { return raw_ != nullptr; }
    Object* counted() const // one reference more, to be given away
    {
        raw_->AddRef();
        return raw_;
    }

private:
    Object* raw_ = nullptr;
};

} // namespace vellums::tests::ado

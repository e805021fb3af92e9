// What screen readers are told. The service that keeps names of controls is stood in for: it writes down
// what it was told, whether the system has one or not.
#include "tests/windows/programTest.h"
#include "tests/windows/windowThread.h"
#include "ui/ids.h"

#include <map>
#include <mutex>

#include <oleacc.h>

namespace vellums::tests {
namespace {

constexpr GUID kServiceClass = {0xb5f8350b, 0x0548, 0x48b1, {0xa6, 0xee, 0x88, 0xbd, 0x00, 0xb4, 0xa5, 0xe7}};
constexpr GUID kService = {0x6e26e776, 0x04f0, 0x495d, {0x80, 0xe4, 0x33, 0x30, 0x35, 0x2e, 0x31, 0x69}};
constexpr GUID kUnknown = {0, 0, 0, {0xc0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr GUID kFactory = {1, 0, 0, {0xc0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr GUID kName = {0x608d3df8, 0x8128, 0x4aa7, {0xa4, 0x28, 0xf5, 0x5e, 0x49, 0x26, 0x72, 0x91}};

// Names by control; one for the process.
struct Told {
    std::mutex mutex;
    std::map<HWND, std::wstring> names;
};
Told& told()
{
    static Told all;
    return all;
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // as the system's interfaces are
// Lives as long as the tests: nothing counts its users.
class NameService : public IAccPropServices {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override
    {
        *object = id == kUnknown || id == kService ? this : nullptr;
        return *object == nullptr ? E_NOINTERFACE : S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE SetHwndPropStr(
        HWND window, DWORD object, DWORD child, MSAAPROPID property, LPCWSTR text) override
    {
        if (object != static_cast<DWORD>(OBJID_CLIENT) || child != CHILDID_SELF || !(property == kName))
            return E_INVALIDARG;
        const std::lock_guard lock(told().mutex);
        told().names[window] = text;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE SetPropValue(const BYTE*, DWORD, MSAAPROPID, VARIANT) override { return no; }
    HRESULT STDMETHODCALLTYPE SetPropServer(
        const BYTE*, DWORD, const MSAAPROPID*, int, IAccPropServer*, AnnoScope) override
    {
        return no;
    }
    HRESULT STDMETHODCALLTYPE ClearProps(const BYTE*, DWORD, const MSAAPROPID*, int) override { return no; }
    HRESULT STDMETHODCALLTYPE SetHwndProp(HWND, DWORD, DWORD, MSAAPROPID, VARIANT) override { return no; }
    HRESULT STDMETHODCALLTYPE SetHwndPropServer(
        HWND, DWORD, DWORD, const MSAAPROPID*, int, IAccPropServer*, AnnoScope) override
    {
        return no;
    }
    HRESULT STDMETHODCALLTYPE ClearHwndProps(HWND, DWORD, DWORD, const MSAAPROPID*, int) override
    {
        return no;
    }
    HRESULT STDMETHODCALLTYPE ComposeHwndIdentityString(HWND, DWORD, DWORD, BYTE**, DWORD*) override
    {
        return no;
    }
    HRESULT STDMETHODCALLTYPE DecomposeHwndIdentityString(const BYTE*, DWORD, HWND*, DWORD*, DWORD*) override
    {
        return no;
    }
    HRESULT STDMETHODCALLTYPE SetHmenuProp(HMENU, DWORD, MSAAPROPID, VARIANT) override { return no; }
    HRESULT STDMETHODCALLTYPE SetHmenuPropStr(HMENU, DWORD, MSAAPROPID, LPCWSTR) override { return no; }
    HRESULT STDMETHODCALLTYPE SetHmenuPropServer(
        HMENU, DWORD, const MSAAPROPID*, int, IAccPropServer*, AnnoScope) override
    {
        return no;
    }
    HRESULT STDMETHODCALLTYPE ClearHmenuProps(HMENU, DWORD, const MSAAPROPID*, int) override { return no; }
    HRESULT STDMETHODCALLTYPE ComposeHmenuIdentityString(HMENU, DWORD, BYTE**, DWORD*) override { return no; }
    HRESULT STDMETHODCALLTYPE DecomposeHmenuIdentityString(const BYTE*, DWORD, HMENU*, DWORD*) override
    {
        return no;
    }

private:
    static constexpr HRESULT no = E_NOTIMPL;
};

class NameServiceFactory : public IClassFactory {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override
    {
        *object = id == kUnknown || id == kFactory ? this : nullptr;
        return *object == nullptr ? E_NOINTERFACE : S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override
    {
        return service_.QueryInterface(id, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    NameService service_;
};

#pragma GCC diagnostic pop

class NamesTest : public ProgramTest { };

// By the service, and for whoever goes by labels by the text right before the control; both say the same.
TEST_P(NamesTest, EveryControlHasAName)
{
    static NameServiceFactory factory;
    told().names.clear();
    DWORD cookie = 0;
    WindowThread program(folder, [&] {
        CoRegisterClassObject(kServiceClass, &factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie);
    });
    const struct {
        int id;
        const wchar_t* english;
        const wchar_t* chinese;
        bool labelled;
    } controls[] = {
        {ID_txtKey, L"Search", L"搜索", true}, {ID_txtInline, L"Find", L"查找", true},
        {ID_txtType, L"Title", L"标题", true}, {ID_chkSort, L"Oldest first", L"按时间升序", true},
        {ID_lstHeads, L"Headings", L"标题列表", true}, {ID_txtShowWrap, L"Text", L"正文", true},
        {ID_txtShowNoWrap, L"Text", L"正文", false}, // the other box stands between
        {ID_lstInLineSrch, L"Matches", L"匹配结果", true},
        {ID_fraSplitter, L"Splitter", L"分隔条", false}, // never has the focus
    };
    const auto nameOf = [&](int id) {
        const std::lock_guard lock(told().mutex);
        return told().names[program.control(id)];
    };
    EXPECT_TRUE(eventually([&] { return !nameOf(ID_fraSplitter).empty(); })); // the last one
    for (const auto& control : controls) {
        const std::wstring name = GetParam() ? control.chinese : control.english;
        EXPECT_EQ(nameOf(control.id), name) << control.id;
        if (!control.labelled)
            continue;
        const HWND before = GetWindow(program.control(control.id), GW_HWNDPREV);
        wchar_t kind[32] = {};
        wchar_t text[64] = {};
        GetClassNameW(before, kind, 32);
        GetWindowTextW(before, text, 64);
        EXPECT_STREQ(_wcslwr(kind), L"static") << control.id;
        EXPECT_EQ(std::wstring(text).substr(0, name.size()), name) << control.id;
    }
    program.run([&] { CoRevokeClassObject(cookie); });
}

INSTANTIATE_TEST_SUITE_P(InBothLanguages, NamesTest, languagesHere(), languageOf);

} // namespace
} // namespace vellums::tests

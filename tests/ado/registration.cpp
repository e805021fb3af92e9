#include "tests/ado/registration.h"

#include "platform/win32/systemPath.h"
#include "tests/ado/adoDoubles.h"
#include "tests/ado/adoxDoubles.h"

#include <objbase.h>
#include <stdexcept>

namespace vellums::tests::ado {
namespace {

using platform::toWide;

constexpr wchar_t kAceClassKey[] = L"SOFTWARE\\Classes\\CLSID\\{3BE786A0-0366-4F5C-9434-25CF162E475E}";

std::wstring nameKey(std::u16string_view progId)
{
    return L"SOFTWARE\\Classes\\" + toWide(progId);
}

// The default value of a key of HKEY_LOCAL_MACHINE.
void writeKey(const std::wstring& key, const std::wstring& text)
{
    const LONG result = RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), nullptr, REG_SZ, text.c_str(),
        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    if (result != ERROR_SUCCESS)
        throw std::runtime_error("the registry cannot be written");
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

class Factory : public IClassFactory {
public:
    explicit Factory(std::function<Double*()> make)
        : make_(std::move(make))
    {
    }
    virtual ~Factory() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override
    {
        const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IClassFactory);
        *object = known ? this : nullptr;
        if (known)
            AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override
    {
        Double* const made = make_();
        const HRESULT result = made->QueryInterface(id, object);
        made->Release();
        return result;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    std::function<Double*()> make_;
    ULONG references_ = 1;
};

#pragma GCC diagnostic pop

class ProviderDouble : public Double {
public:
    ProviderDouble()
        : Double("Provider")
    {
    }
};

} // namespace

Registration::Registration(std::u16string progId, std::u16string_view classId, std::function<Double*()> make)
    : progId_(std::move(progId))
{
    CLSID id{};
    if (FAILED(CLSIDFromProgID(toWide(progId_).c_str(), &id))) {
        writeKey(nameKey(progId_) + L"\\CLSID", toWide(classId));
        wroteName_ = true;
    }
    factory_ = new Factory(std::move(make));
    if (FAILED(CLSIDFromProgID(toWide(progId_).c_str(), &id)) ||
        FAILED(CoRegisterClassObject(id, factory_, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_)))
        throw std::runtime_error("a class of the tests cannot be registered");
}

Registration::~Registration()
{
    CoRevokeClassObject(cookie_);
    factory_->Release();
    if (wroteName_)
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, nameKey(progId_).c_str());
}

InstalledAccess::InstalledAccess()
{
    const struct {
        const char16_t* progId;
        const char16_t* classId;
        std::function<Double*()> make;
    } classes[] = {
        {u"ADODB.Connection", u"{00000514-0000-0010-8000-00AA006D2EA4}", [] { return new ConnectionDouble; }},
        {u"ADODB.Command", u"{00000507-0000-0010-8000-00AA006D2EA4}", [] { return new CommandDouble; }},
        {u"ADOX.Catalog", u"{00000602-0000-0010-8000-00AA006D2EA4}", newCatalog},
        {u"ADOX.Table", u"{00000609-0000-0010-8000-00AA006D2EA4}", newTable},
        {u"ADOX.Column", u"{0000061B-0000-0010-8000-00AA006D2EA4}", newColumn},
        {u"ADOX.Index", u"{00000615-0000-0010-8000-00AA006D2EA4}", newIndex},
        {u"DAO.DBEngine.36", u"{00000100-0000-0010-8000-00AA006D2EA4}", newJetEngine},
        {u"DAO.DBEngine.120", u"{CD7791B9-43FD-42C5-AE42-8DD2811F0419}", newAceEngine},
        {u"Microsoft.ACE.OLEDB.12.0", u"{3BE786A0-0366-4F5C-9434-25CF162E475E}",
            [] { return new ProviderDouble; }},
    };
    for (const auto& one : classes)
        classes_.emplace_back(one.progId, std::make_unique<Registration>(one.progId, one.classId, one.make));
    writeKey(kAceClassKey, L"Microsoft.ACE.OLEDB.12.0");
}

InstalledAccess::~InstalledAccess()
{
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, kAceClassKey);
}

void InstalledAccess::remove(std::u16string_view progId)
{
    std::erase_if(classes_, [&](const auto& one) { return one.first == progId; });
}

} // namespace vellums::tests::ado

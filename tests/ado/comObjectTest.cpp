#include "platform/win32/comObject.h"

#include "tests/ado/registration.h"

#include <gmock/gmock.h>

namespace vellums::tests::ado {
namespace {

using platform::ComError;
using platform::ComObject;
using platform::Variant;
using testing::ElementsAre;

// Remembers what it is told, and refuses in every way there is.
class Probe : public Double {
public:
    Probe()
        : Double("Probe")
    {
        method(L"Take", 0, 9, [](const Call& call) { call.give(Variant(u"taken")); });
        method(L"Fill", 1, 1, [](const Call& call) {
            call.arguments[0]->pvarVal->vt = VT_I4;
            call.arguments[0]->pvarVal->lVal = -7;
        });
        method(L"Refuse", 1, 2, [](const Call& call) {
            refuse(static_cast<HRESULT>(call.number(0)), call.has(1) ? call.text(1) : u"");
        });
        getter(L"Small", [](const Call& call) {
            call.result->vt = VT_I2;
            call.result->iVal = -3;
        });
        getter(L"Nothing", [](const Call& call) { call.result->vt = VT_NULL; });
        getter(L"Empty", [](const Call& call) { call.result->vt = VT_BSTR; });
        getter(
            L"Item", [](const Call& call) { call.give(new Probe); }, 1);
        setter(L"Name", [](const Call&) {});
        setter(L"Other", [](const Call&) {});
        refSetter(L"Other", [](const Call&) {});
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(
        REFIID id, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override
    {
        ++lookups;
        return Double::GetIDsOfNames(id, names, count, locale, ids);
    }
    int lookups = 0;
};

class ComObjects : public testing::Test {
protected:
    ComObjects() { world().recording = true; }
    ~ComObjects() override
    {
        probe = ComObject();
        EXPECT_EQ(world().alive, 0) << "objects that were never released";
        world().recording = false;
        world().calls.clear();
    }

    platform::ComApartment apartment;
    Probe* raw = new Probe;
    ComObject probe{raw};
};

TEST_F(ComObjects, AreCalledWithTheirArgumentsInOrder)
{
    EXPECT_EQ(probe.call(u"Take", {u"é", -2, true, Variant::missing(), probe}).toText(), u"taken");
    Variant filled;
    probe.call(u"Fill", {Variant::filledInto(filled)});
    EXPECT_EQ(filled.toNumber(), -7);
    probe.put(u"Name", u"n");
    probe.put(u"Other", probe);
    probe.putRef(u"Other", probe);
    probe.item(u"key");
    probe.get(u"Small");
    EXPECT_THAT(world().calls,
        ElementsAre("Probe.Take/1('é', -2, True, missing, object)", "Probe.Fill/1(out)", "Probe.Name/4('n')",
            "Probe.Other/4(object)", "Probe.Other/8(object)", "Probe.Item/3('key')", "Probe.Small/2()"));
}

TEST_F(ComObjects, RememberTheNumbersOfTheirMembers)
{
    for (int i = 0; i < 5; ++i) {
        probe.call(u"Take");
        probe.put(u"Name", u"n");
    }
    EXPECT_EQ(raw->lookups, 2);
    EXPECT_EQ(probe.call(u"TAKE").toText(), u"taken") << "letter case does not count";
}

TEST_F(ComObjects, GiveTextsWholeAndNumbersOfAnyWidth)
{
    const std::u16string odd(u"a\0b\r\n\xD800", 6);
    EXPECT_EQ(Variant(odd).toText(), odd);
    EXPECT_EQ(probe.get(u"Small").toNumber(), -3);
    EXPECT_EQ(probe.get(u"Small").toText(), u"-3");
    EXPECT_EQ(probe.get(u"Empty").toText(), u"") << "a null text is the empty one";
    EXPECT_EQ(Variant(true).raw().boolVal, VARIANT_TRUE);
    EXPECT_THROW(probe.get(u"Nothing").toNumber(), ComError) << "NULL is no number";
    EXPECT_THROW(probe.get(u"Small").toObject(), ComError);
    EXPECT_THROW(Variant(ComObject()).toObject(), ComError);
    EXPECT_THROW(ComObject().call(u"Take"), ComError);
}

struct ErrorCase {
    std::int32_t code;
    const char16_t* text;
    std::int32_t number;
    const char16_t* description;
};

const ErrorCase kErrors[] = {
    {3704, u"Closed.", 3704, u"Closed."},        // wCode alone
    {-2146824584, u"Closed.", 3704, u"Closed."}, // 800A0E78, filled in late
    {-2147467259, u"Unspecified error\r\n", -2147467259, u"Unspecified error"},
    {-2147217865, u"No table 'ä'.", -2147217865, u"No table 'ä'."},
    {-2147221164, u"Class not registered", -2147221164, u"Class not registered"}, // not from creating
};

TEST_F(ComObjects, PassOnWhatTheyRefuseWith)
{
    for (const ErrorCase& c : kErrors) {
        try {
            probe.call(u"Refuse", {c.code, c.text});
            FAIL() << c.code;
        } catch (const ComError& e) {
            EXPECT_EQ(e.number, c.number);
            EXPECT_EQ(e.description, c.description);
        }
    }
    EXPECT_EQ(probe.call(u"Take").toText(), u"taken") << "the next call works";
}

std::int32_t numberOf(const std::function<void()>& work)
{
    try {
        work();
        return 0;
    } catch (const ComError& e) {
        EXPECT_FALSE(e.description.empty());
        return e.number;
    }
}

TEST_F(ComObjects, HaveASentenceForEveryFailure)
{
    EXPECT_EQ(numberOf([&] { probe.call(u"Unknown"); }), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(numberOf([&] { probe.call(u"Fill"); }), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(numberOf([&] { probe.get(u"Take"); }), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(numberOf([&] { probe.putRef(u"Name", probe); }), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(numberOf([&] { probe.call(u"Refuse", {-2147467259}); }), -2147467259);
}

TEST_F(ComObjects, AreCreatedByName)
{
    EXPECT_EQ(numberOf([] { ComObject::create(u"Vellums.NoSuchClass"); }), 429);
    EXPECT_FALSE(platform::canCreate(u"Vellums.NoSuchClass"));
    const std::u16string_view id = u"{6F1D2A70-5C0B-4E5B-9D2A-2B0E6A3C9F01}";
    {
        const Registration registered(u"Vellums.Probe", id, [] { return new Probe; });
        EXPECT_TRUE(platform::canCreate(u"Vellums.Probe"));
        EXPECT_EQ(world().alive, 1) << "the trial object is released";
        EXPECT_EQ(ComObject::create(u"Vellums.Probe").call(u"Take").toText(), u"taken");
        EXPECT_EQ(
            numberOf([] { ComObject::create(u"Vellums.Probe", platform::ComPlace::ItsOwnProcess); }), 429)
            << "the name is known, the server is not there";
    }
    EXPECT_FALSE(platform::canCreate(u"Vellums.Probe"));
}

} // namespace
} // namespace vellums::tests::ado

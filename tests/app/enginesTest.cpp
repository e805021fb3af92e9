#include "app/engines.h"

#include "app/settings.h"
#include "platform/text.h"
#include "tests/support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace vellums {
namespace {

TEST(EngineChoice, KnowsTheProviderByItsRegisteredName)
{
    EXPECT_EQ(detectedProviderId(u"Microsoft.ACE.OLEDB.12.0"), u"104");
    for (const char16_t* other : {u"", u"Microsoft.ACE.OLEDB.16.0", u"microsoft.ace.oledb.12.0"})
        EXPECT_EQ(detectedProviderId(other), u"103");
}

TEST(EngineChoice, TakesTheDetectedProviderWhereItCanBeUsed)
{
    const struct {
        const char16_t* wish;
        const char16_t* detected;
        const char16_t* usable; // the id that can be created in this process
        bool embedded;
        const char16_t* id;
    } cases[] = {
        {u"auto", u"104", u"104", false, u"104"},
        {u"auto", u"103", u"103", false, u"103"},
        {u"auto", u"104", u"103", true, u"104"},
        {u"auto", u"103", u"104", true, u"104"},
        {u"", u"104", u"104", false, u"104"},
        {u"jet", u"103", u"", true, u"104"},
        {u"embedded", u"104", u"104", true, u"104"},
        {u"Embedded", u"103", u"103", true, u"104"},
        {u"ado", u"103", u"", false, u"103"},
        {u"ADO", u"104", u"", false, u"104"},
    };
    for (const auto& c : cases) {
        const EngineChoice choice =
            chooseEngine(c.wish, c.detected, [&](const std::u16string& id) { return id == c.usable; });
        EXPECT_EQ(choice.embedded, c.embedded) << platform::toUtf8(c.wish) << platform::toUtf8(c.detected);
        EXPECT_EQ(choice.providerId, c.id);
    }
}

} // namespace
} // namespace vellums

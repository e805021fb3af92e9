#include "app/start/engines.h"

#include "app/start/settings.h"
#include "tests/support/shownLines.h"
#include "tests/support/temporaryFolder.h"
#include "text/unicode.h"

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
        EXPECT_EQ(choice.embedded, c.embedded) << text::toUtf8(c.wish) << text::toUtf8(c.detected);
        EXPECT_EQ(choice.providerId, c.id);
    }
}

// A chosen provider is made and serves; where it is not wanted any more, the embedded engine does again.
TEST(Engines, ServeANotebook)
{
    const tests::TemporaryFolder folder;
    tests::ShownLines told;
    Notebook notebook(told);
    notebook.settingsFile = folder.file(u"Vellums.ini");
    const Provider* made = nullptr;
    Engines engines({[](const std::u16string&) { return true; },
        [&](const std::u16string&) {
            auto provider = std::make_unique<EmbeddedProvider>();
            made = provider.get();
            return provider;
        }});
    engines.serve(notebook);
    EXPECT_EQ(notebook.provider, made);
    ASSERT_TRUE(setPrefValue(notebook.settingsFile, kOptionsSection, u"engine", u"embedded"));
    engines.serve(notebook);
    ASSERT_TRUE(notebook.provider);
    EXPECT_NE(notebook.provider, made);
    EXPECT_NO_THROW(notebook.provider->createDatabase(folder.file(u"notes.mdb"), u"Notes"));
}

} // namespace
} // namespace vellums

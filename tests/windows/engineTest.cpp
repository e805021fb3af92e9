// The real program where the settings file asks for a provider that is not there.
#include "tests/windows/driver.h"
#include "ui/ids.h"

#include <gtest/gtest.h>

#include <objbase.h>

namespace vellums::tests {
namespace {

TEST(ForcedEngine, ShowsItsErrorsAndLeavesTheProgramUsable)
{
    CLSID id{};
    if (SUCCEEDED(CLSIDFromProgID(L"Microsoft.ACE.OLEDB.12.0", &id)))
        GTEST_SKIP() << "a provider is installed";
    const ProgramFolder folder;
    folder.write(L"Vellums.ini", "[Options]\r\nengine=ado\r\nuiChinese=0\r\n");
    {
        Program program(folder.executable());
        ASSERT_NE(program.window(), nullptr);
        EXPECT_TRUE(
            program.statusBegins(u"dbCreateNew: ActiveX component can't create object: ADOX.Catalog (429)"));
        EXPECT_EQ(program.count(ID_lstHeads), 0);
        ASSERT_TRUE(setClipboard(u"a text that must not be lost"));
        program.command(ID_mnu_top + 0);
        EXPECT_TRUE(program.statusBegins(u"addRecord - "));
        program.setText(ID_txtKey, u"word");
        program.press(ID_txtKey, VK_RETURN);
        EXPECT_TRUE(program.isRunning());
        program.kill();
    }
    folder.write(L"Vellums.ini", "[Options]\r\nengine=embedded\r\n");
    Program program(folder.executable());
    ASSERT_NE(program.window(), nullptr);
    program.command(ID_mnu_top + 0);
    EXPECT_TRUE(eventually([&] { return program.count(ID_lstHeads) == 1; }));
    EXPECT_EQ(program.close(), 0u);
}

} // namespace
} // namespace vellums::tests

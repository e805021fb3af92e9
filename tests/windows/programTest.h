// A test that runs the real program in a folder of its own, in English or in Chinese.
#pragma once

#include "tests/windows/driver.h"

#include <gtest/gtest.h>

namespace vellums::tests {

// The parameter: in Chinese.
class ProgramTest : public testing::TestWithParam<bool> {
protected:
    ProgramTest()
    {
        if (GetParam())
            folder.write(L"Vellums.ini", "[Options]\r\nuiChinese=1\r\n");
    }
    std::u16string say(const char16_t* english, const char16_t* chinese) const
    {
        return GetParam() ? chinese : english;
    }
    static bool hasFocus(const Program& program, int id)
    {
        return eventually([&] { return program.focused() == id; });
    }
    static bool opensMenu(const Program& program)
    {
        return eventually([&] { return program.menuIsOpen(); });
    }
    // Strikes a key that chooses an entry of the open menu.
    static bool choose(const Program& program, WORD key)
    {
        Program::strike(key);
        return eventually([&] { return !program.menuIsOpen(); });
    }

    ProgramFolder folder;
};

// Both languages of the interface; where the code page is the Chinese one, that one: English is tried
// elsewhere.
inline auto languagesHere()
{
    return testing::ValuesIn(GetACP() == 936 ? std::vector{true} : std::vector{false, true});
}

inline std::string languageOf(const testing::TestParamInfo<bool>& test)
{
    return test.param ? "Chinese" : "English";
}

} // namespace vellums::tests

#include "tests/support/windowNotebook.h"

#include "store/records/records.h"
#include "text/decimal.h"

#include <gtest/gtest.h>

namespace vellums::tests {

WindowNotebook::WindowNotebook(bool chinese)
{
    notes->chinese = chinese;
}

void WindowNotebook::addFruits()
{
    int year = 2001;
    for (const char16_t* const title : {u"apple", u"banana", u"cherry"}) {
        EXPECT_TRUE(addRecord(*notes, {u"body of " + std::u16string(title), title, u""}));
        notes.run(u"UPDATE [Notes] SET VLDATE='" + text::decimal(year++) + u"-1-1 10:00:00' WHERE VLHEAD='" +
            title + u"'");
    }
}

void WindowNotebook::offerFields()
{
    std::size_t field = 0;
    for (const char16_t* const column : {u"VLHEAD", u"VLTEXT", u"VLLINK"})
        window.mnu_AvailFields.set(field++, {u"", column, true, false});
}

std::u16string WindowNotebook::say(std::u16string_view english, std::u16string_view chinese) const
{
    return std::u16string(notes->chinese ? chinese : english);
}

std::u16string WindowNotebook::saveQuestion(std::u16string_view buttons) const
{
    return say(u"Save changes to the current snippet?", u"是否保存当前记录所作修改?") +
        std::u16string(buttons);
}

} // namespace vellums::tests

#include "tests/support/testNotebook.h"

#include "jet/database.h"
#include "store/connectionString.h"
#include "text/decimal.h"
#include "text/unicode.h"

#include <gtest/gtest.h>

namespace vellums::tests {
namespace {

struct ShortText {
    std::u16string operator()(jet::Null) const { return u"NULL"; }
    std::u16string operator()(std::int32_t value) const { return text::decimal(value); }
    std::u16string operator()(jet::Date value) const
    {
        const std::string digits = std::to_string(value.days);
        return std::u16string(digits.begin(), digits.end());
    }
    std::u16string operator()(const std::u16string& value) const { return value; }
    template <typename Other>
    std::u16string operator()(const Other&) const
    {
        return u"?";
    }
};

} // namespace

TestNotebook::TestNotebook(const std::u16string& fileName, const std::u16string& table)
    : file_(folder_.file(fileName))
    , notebook_(told_)
{
    client().createDatabase(file_, table);
    notebook_.provider = &client();
    notebook_.appDir = folder_.path();
    notebook_.exeName = u"Vellums";
    notebook_.settingsFile = folder_.file(u"Vellums.ini");
    notebook_.logFile = folder_.file(u"Vellums.log");
    notebook_.dbParent = folder_.path();
    notebook_.dbConn = connectionStringFor(notebook_, fileName);
    notebook_.dbTable = table;
}

TestNotebook::~TestNotebook()
{
    try {
        for (const std::u16string& fault : jet::Database(file_).check())
            ADD_FAILURE() << text::toUtf8(fault);
    } catch (const jet::Error& e) {
        ADD_FAILURE() << text::toUtf8(e.description);
    }
}

std::vector<std::u16string> TestNotebook::rows(const std::u16string& sql)
{
    std::vector<std::u16string> lines;
    const auto connection = notebook_.connect();
    const auto recordset = connection->query(sql);
    while (recordset->next()) {
        std::u16string line;
        for (std::size_t i = 0; i < recordset->columns().size(); ++i)
            line += (i == 0 ? u"" : u"|") + std::visit(ShortText(), recordset->value(i));
        lines.push_back(line);
    }
    return lines;
}

void TestNotebook::run(const std::u16string& sql)
{
    notebook_.connect()->execute(sql);
}

} // namespace vellums::tests

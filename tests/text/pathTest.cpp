#include "text/path.h"

#include <gtest/gtest.h>

namespace vellums::text {
namespace {

struct PathParts {
    std::u16string_view path;
    std::u16string_view folder;
    std::u16string_view name;
};

const PathParts kSplitPaths[] = {
    {u"C:\\docs\\a.txt", u"C:\\docs", u"a.txt"},
    {u"C:\\a.txt", u"C:\\", u"a.txt"},
    {u"/a/b", u"/a", u"b"},
    {u"/b", u"/", u"b"},
    {u"C:\\docs/a\\", u"C:\\docs/a", u""},
    {u"\\\\server\\share\\b", u"\\\\server\\share", u"b"},
    {u"b", u"", u"b"},
    {u"", u"", u""},
};

TEST(Path, IsFolderAndName)
{
    for (const PathParts& c : kSplitPaths) {
        EXPECT_EQ(folderOf(c.path), c.folder);
        EXPECT_EQ(nameOf(c.path), c.name);
        EXPECT_EQ(withoutSeparator(c.folder), c.folder) << "nothing is left to be taken off";
    }
}

} // namespace
} // namespace vellums::text

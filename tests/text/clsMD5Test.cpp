#include "text/clsMD5.h"

#include <gtest/gtest.h>

namespace vellums::text {
namespace {

struct DigestCase {
    std::u16string text;
    const char16_t* digest;
};

// 55, 56, 63, 64 and 119 characters stand at the edges of the padding.
const DigestCase kDigests[] = {
    {u"", u"d41d8cd98f00b204e9800998ecf8427e"},
    {u"abc", u"900150983cd24fb0d6963f7d28e17f72"},
    {std::u16string(55, u'a'), u"ef1772b6dff9a122358552954ad0df65"},
    {std::u16string(56, u'a'), u"3b0c8ac703f828b04c6c197006d17218"},
    {std::u16string(63, u'a'), u"b06521f39153d618550606be297466d5"},
    {std::u16string(64, u'a'), u"014842d480b571495a4a0363793f7367"},
    {std::u16string(119, u'a'), u"8a7bd0732ed6a28ce75f6dabc90e1613"},
    {std::u16string(1000000, u'a'), u"7707d6ae4e027c70eea2a935c2296f21"},
};

TEST(Md5, IsTheUsualDigestOfPlainText)
{
    for (const DigestCase& c : kDigests)
        EXPECT_EQ(clsMD5().MD5(c.text), c.digest) << c.text.size() << " characters";
}

TEST(Md5, CountsOnlyTheLowByteOfACharacter)
{
    EXPECT_EQ(clsMD5().MD5(u"\u4E2D"), clsMD5().MD5(u"-"));
    EXPECT_EQ(clsMD5().MD5(u"\U0001F600x"), clsMD5().MD5(std::u16string(u"=\0x", 3)));
    EXPECT_NE(clsMD5().MD5(u"\u4E2D"), clsMD5().MD5(u"\u4E2E"));
}

} // namespace
} // namespace vellums::text

#include "desktop/text/UriText.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

using namespace std::string_literals;

TEST(UriTextTest, Escapes_StandForTheirBytes)
{
    EXPECT_EQ(withoutEscapes("a%20b%C3%a9%2F"), "a b\u00e9/");
    EXPECT_EQ(withoutEscapes("%00"), "\0"s);
    EXPECT_EQ(withoutEscapes("%25%32%30"), "%20"); // once
    EXPECT_EQ(withoutEscapes("100% %4 %-1 %x1 %"), "100% %4 %-1 %x1 %");
}

TEST(UriTextTest, Scheme_ComesWithAHost)
{
    EXPECT_TRUE(hasScheme("http://example.org"));
    EXPECT_FALSE(hasScheme("C:/a"));
    EXPECT_FALSE(hasScheme("a:b"));
}

TEST(UriTextTest, Reference_IsSeenFromItsBase)
{
    EXPECT_EQ(resolvedReference("", "a"), "a");
    EXPECT_EQ(resolvedReference("b/c", "a"), "b/a");
    EXPECT_EQ(resolvedReference("b/", "../a"), "b/../a");
    EXPECT_EQ(resolvedReference("b", "a"), "a");
    EXPECT_EQ(resolvedReference("b/c", ""), "b/c");
    EXPECT_EQ(resolvedReference("b/", "/a"), "/a");
    EXPECT_EQ(resolvedReference("b/", "C:\\a"), "C:\\a");
    EXPECT_EQ(resolvedReference("b/", "http://h/a"), "http://h/a");
    EXPECT_EQ(resolvedReference("http://h", "a"), "http://h/a");
    EXPECT_EQ(resolvedReference("http://h", "/a"), "http://h/a");
    EXPECT_EQ(resolvedReference("http://h/b/c", "a"), "http://h/b/a");
    EXPECT_EQ(resolvedReference("http://h/b/c", "/a"), "http://h/a");
    EXPECT_EQ(resolvedReference("file:///b/c", "a"), "file:///b/a");
}

} // namespace
} // namespace desktop

#include <gtest/gtest.h>
#include <quillon/memory/HtmlText.h>

namespace quillon::memory {
namespace {

TEST(HtmlTextTest, MarkupCharactersBecomeEntities) {
  EXPECT_EQ(inHtml(R"(<a b="c" d='e'>&amp;)"), "&lt;a b=&quot;c&quot; d=&#39;e&#39;&gt;&amp;amp;");
}

TEST(HtmlTextTest, OtherTextPassesAndControlCharactersAreEscapedAsOnTerminals) {
  EXPECT_EQ(inHtml(""), "");
  EXPECT_EQ(inHtml("µ in [px²], a/b; 50 %"), "µ in [px²], a/b; 50 %");
  EXPECT_EQ(inHtml("a\n\x1b\xff"), "a\\n\\x1b\\xff");
}

}  // namespace
}  // namespace quillon::memory

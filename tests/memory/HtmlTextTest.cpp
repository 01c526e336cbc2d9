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

TEST(HtmlTextTest, APageStartsDownToItsBody) {
  EXPECT_EQ(pageStart("a < b\n", "  p { margin: 0; }\n"),
            R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>a &lt; b\n</title>
<style>
  :root { color-scheme: light dark; --ink: #1d232b; --paper: #fff; --faint: #56606b; }
  @media (prefers-color-scheme: dark) {
    :root { --ink: #e2e6ea; --paper: #15191e; --faint: #9aa5b1; }
  }
  body { margin: 0; padding: 1.5rem; color: var(--ink); background: var(--paper);
         font: 0.9375rem/1.45 system-ui, "DejaVu Sans", sans-serif; }
  p { margin: 0; }
</style>
</head>
<body>
)");
}

}  // namespace
}  // namespace quillon::memory

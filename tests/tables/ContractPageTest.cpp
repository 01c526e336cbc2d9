#include <gtest/gtest.h>
#include <quillon/tables/ContractPage.h>

namespace quillon::tables {
namespace {

TEST(ContractPageTest, DocumentHoldsTheTableAsItIsAndItsTextsEscaped) {
  EXPECT_EQ(documentOf({"A <b> & \"c\"", "/d<e>", "2 rows", "<table>\n</table>\n"}),
            R"html(<!DOCTYPE html>
<html lang="en">
  <head>
    <meta charset="utf-8">
    <meta name="viewport" content="width=device-width, initial-scale=1">
    <title>A &lt;b&gt; &amp; &quot;c&quot;</title>
    <style>
      :root { color-scheme: light; }
      body { margin: 0; padding: 1.5rem; color: #1d232b; background: #fff;
             font: 0.9375rem/1.4 system-ui, "DejaVu Sans", sans-serif; }
      figure { margin: 0; width: max-content; }
      figcaption { position: sticky; left: 1.5rem; width: calc(100vw - 4rem);
                   margin-bottom: 1rem; overflow-wrap: anywhere; }
      figcaption strong { display: block; font-size: 1.25rem; }
      figcaption span { color: #56606b; }
      table { border-spacing: 0; font-variant-numeric: tabular-nums; }
      th { padding: 0.3rem 0.9rem; text-align: right; white-space: pre; }
      thead th { position: sticky; top: 0; background: #dfe6ee; border-bottom: 2px solid #7d8b99; }
      tbody th { font-weight: normal; border-bottom: 1px solid #e3e7ec; }
      tbody tr:nth-child(odd) th { background: #f4f6f9; }
      tbody tr:not(:has(th)) { display: none; }
    </style>
  </head>
  <body>
    <figure>
      <figcaption><strong>A &lt;b&gt; &amp; &quot;c&quot;</strong> <span>Group /d&lt;e&gt; · 2 rows</span></figcaption>
<table>
</table>
    </figure>
  </body>
</html>
)html");
}

}  // namespace
}  // namespace quillon::tables

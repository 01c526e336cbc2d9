#include <quillon/tables/ContractPage.h>
#include <quillon/tables/Html.h>

#include <string_view>

namespace quillon::tables {
namespace {

constexpr std::string_view BEFORE_TITLE = R"(<!DOCTYPE html>
<html lang="en">
  <head>
    <meta charset="utf-8">
    <meta name="viewport" content="width=device-width, initial-scale=1">
    <title>)";

// All cells are head cells, so the sheet tells the body's from the head's. Parsers close the row
// around the body's rows as soon as the first of these begins, which leaves a row without cells.
constexpr std::string_view BEFORE_CAPTION = R"(</title>
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
      <figcaption><strong>)";

constexpr std::string_view AFTER_TABLE = R"(    </figure>
  </body>
</html>
)";

}  // namespace

std::string documentOf(const ContractPage& page) {
  const std::string title = inHtml(page.title);
  std::string text;
  text += BEFORE_TITLE;
  text += title;
  text += BEFORE_CAPTION;
  text += title + "</strong> <span>Group " + inHtml(page.group) + " · " + inHtml(page.rows) +
          "</span></figcaption>\n";
  text += page.table;
  text += AFTER_TABLE;
  return text;
}

}  // namespace quillon::tables

#include "Browser.h"

#include <stdexcept>

#include "tools/RunTool.h"

namespace quillon::tools::test {

namespace {

// Goes to the end of the page's body and reports in an element that is not displayed.
constexpr const char* PROBE = R"html(<pre id="seen" hidden></pre><script id="probe">
addEventListener("load", () => setTimeout(() => {
  const all = selector => [...document.querySelectorAll(selector)];
  const rows = (kind, selector) => all(selector)
    .filter(row => row.getClientRects().length > 0)
    .map(row => [kind, ...[...row.cells]
      .filter(cell => cell.offsetWidth > 0 && cell.offsetHeight > 0)
      .map(cell => cell.textContent)]);
  const own = ["seen", "probe"];
  const names = all("*").filter(element => !own.includes(element.id)).map(e => e.localName);
  document.getElementById("seen").textContent = [
    ["title", document.title],
    ...all("figcaption").map(caption => ["caption", caption.innerText]),
    ...rows("head", "thead tr"),
    ...rows("body", "tbody tr"),
    ["elements", ...[...new Set(names)].sort()],
  ].map(line => line.map(encodeURIComponent).join(" ")).join("\n");
}, 100));
</script>)html";

Outcome runChromium(const Scratch& scratch, const std::string& page,
                    const std::vector<std::string>& options) {
  std::vector<std::string> command = {"/usr/bin/timeout",
                                      "--kill-after=5",
                                      "45",
                                      CHROMIUM,
                                      "--headless",
                                      "--no-sandbox",
                                      "--disable-gpu",
                                      "--disable-dev-shm-usage",
                                      "--no-first-run",
                                      "--disable-extensions",
                                      "--hide-scrollbars",
                                      "--window-size=1600,900",
                                      "--user-data-dir=" + scratch.path("profile")};
  command.insert(command.end(), options.begin(), options.end());
  writeContent(scratch.path("page.html"), page);
  command.push_back("file://" + scratch.path("page.html"));
  const Outcome outcome = runProgram(command);
  if (outcome.status != 0) {
    throw std::runtime_error("Chromium: status " + std::to_string(outcome.status) + "\n" +
                             outcome.err);
  }
  return outcome;
}

std::string between(const std::string& text, const std::string& start, const std::string& end) {
  const std::size_t from = text.find(start);
  const std::size_t to = text.find(end, from);
  if (from == std::string::npos || to == std::string::npos) {
    throw std::runtime_error("no " + start + " in " + text);
  }
  return text.substr(from + start.size(), to - from - start.size());
}

std::string decoded(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%') {
      result += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else {
      result += text[i];
    }
  }
  return result;
}

Cells split(const std::string& text, char separator) {
  Cells parts(1);
  for (const char character : text) {
    if (character == separator) {
      parts.emplace_back();
    } else {
      parts.back() += character;
    }
  }
  return parts;
}

}  // namespace

SeenPage openPage(const std::string& markup) {
  const Scratch scratch;
  std::string probed = markup;
  const std::size_t end = probed.rfind("</body>");
  if (end == std::string::npos) {
    throw std::runtime_error("the page's body does not end");
  }
  probed.insert(end, PROBE);
  const Outcome outcome =
      runChromium(scratch, probed, {"--virtual-time-budget=5000", "--dump-dom"});
  SeenPage page;
  for (const std::string& line :
       split(between(outcome.out, "<pre id=\"seen\" hidden=\"\">", "</pre>"), '\n')) {
    Cells words = split(line, ' ');
    const std::string kind = words.front();
    words.erase(words.begin());
    for (std::string& word : words) {
      word = decoded(word);
    }
    if (kind == "title") {
      page.title = words.at(0);
    } else if (kind == "caption") {
      page.caption += words.at(0);
    } else if (kind == "elements") {
      page.elements = words;
    } else {
      (kind == "head" ? page.head : page.body).push_back(words);
    }
  }
  return page;
}

std::string photograph(const std::string& markup, const std::string& name) {
  const Scratch scratch;
  const std::string path = SCREENSHOTS "/" + name;
  runChromium(scratch, markup, {"--screenshot=" + path});
  return path;
}

}  // namespace quillon::tools::test

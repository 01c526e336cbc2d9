#pragma once

#include <gmock/gmock.h>

#include <regex>
#include <set>
#include <string>

namespace test {

/// Expects a page's style to be made of whole rules, whose colours are all named in it.
inline void expectSoundStyle(const std::string& page) {
  const std::size_t start = page.find("<style>") + std::string("<style>").size();
  std::string rest = page.substr(start, page.find("</style>") - start);
  std::set<std::string> named;
  for (const std::regex& wanted :
       {std::regex(R"(--[-\w]+(?=:))"), std::regex(R"(var\((--[-\w]+)\))")}) {
    for (std::sregex_iterator found(rest.begin(), rest.end(), wanted), end; found != end; ++found) {
      if (wanted.mark_count() == 0) {
        named.insert(found->str());
      } else {
        EXPECT_THAT(named, ::testing::Contains(found->str(1)));
      }
    }
  }
  // Without whole rules, those for dark pages and blanks nothing is left.
  const std::regex rule(R"([-\s\w:>,.*[\]]+\{(\s*[-\w]+: [^:;{}]+;)+\s*\})");
  const std::regex dark(R"(@media \(prefers-color-scheme: dark\) \{\s*\})");
  for (const std::regex& known : {rule, dark, std::regex("\\s+")}) {
    rest = std::regex_replace(rest, known, "");
  }
  EXPECT_THAT(rest, ::testing::IsEmpty());
}

}  // namespace test

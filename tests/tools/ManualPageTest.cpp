#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "RunTool.h"

namespace quillon::tools::test {
namespace {

/// What is described, such as "--group PATH", and in which words.
struct Entry {
  std::string head;
  std::string text;
};

bool operator==(const Entry& first, const Entry& second) {
  return first.head == second.head && first.text == second.text;
}

void PrintTo(const Entry& entry, std::ostream* stream) {
  *stream << entry.head << ": " << entry.text;
}

using Entries = std::vector<Entry>;

bool startsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

/// `text` and `line` with one blank between them.
std::string joined(const std::string& text, const std::string& line) {
  const std::size_t first = line.find_first_not_of(' ');
  if (first == std::string::npos) {
    return text;
  }
  return text.empty() ? line.substr(first) : text + " " + line.substr(first);
}

/// The indented entries of a help text: "  HEAD   TEXT", and more of the text at its column.
Entries entriesOfHelp(const std::string& help) {
  const std::size_t column = 26;
  Entries entries;
  std::istringstream lines(help);
  for (std::string line; std::getline(lines, line);) {
    if (startsWith(line, std::string(column, ' '))) {
      entries.back().text = joined(entries.back().text, line);
    } else if (startsWith(line, "  ")) {
      // The page says in a sentence which options exclude each other.
      const std::size_t end = std::min(line.find("  ", 2), line.find(" Excludes:"));
      const bool oneLine = line.find(" Excludes:") == std::string::npos && end < column;
      entries.push_back({line.substr(2, end - 2), oneLine ? joined("", line.substr(column)) : ""});
    }
  }
  return entries;
}

/// The arguments of a roff macro line such as `.BI \-\-group " PATH"`, set one after the other.
std::string argumentsOf(const std::string& line) {
  std::string result;
  bool quoted = false;
  for (const char c : line.substr(std::min(line.find(' '), line.size()))) {
    if (c == '"') {
      quoted = !quoted;
    } else if (c != ' ' || quoted) {
      result += c;
    }
  }
  return result;
}

std::string withoutEscapes(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\\'), text.end());
  return text;
}

/// The tagged paragraphs of a manual page by section.
std::map<std::string, Entries> entriesOfPage(const std::string& page) {
  std::map<std::string, Entries> sections;
  Entries* section = nullptr;
  bool isTagged = false;
  std::istringstream lines(page);
  for (std::string line; std::getline(lines, line);) {
    if (startsWith(line, ".SH ")) {
      section = &sections[line.substr(4)];
      isTagged = false;
    } else if (line == ".TP") {
      std::getline(lines, line);
      section->push_back({withoutEscapes(argumentsOf(line)), ""});
      isTagged = true;
    } else if (startsWith(line, ".")) {
      isTagged = false;
    } else if (isTagged) {
      section->back().text = joined(section->back().text, withoutEscapes(line));
    }
  }
  return sections;
}

class ManualPageTest : public ::testing::Test {
 protected:
  const Entries& section(const std::string& name) { return m_sections[name]; }

 private:
  std::map<std::string, Entries> m_sections =
      entriesOfPage(contentOf(QUILLON_SOURCE_DIR "/tools/quillon.1"));
};

TEST_F(ManualPageTest, GeneralOptionsAndVerbsAreThoseOfTheHelp) {
  Entries described = section("OPTIONS");
  const Entries& verbs = section("VERBS");
  described.insert(described.end(), verbs.begin(), verbs.end());
  EXPECT_EQ(described, entriesOfHelp(runTool({"--help"}).out));
}

TEST_F(ManualPageTest, OptionsOfEachVerbAreThoseOfItsHelp) {
  ASSERT_THAT(section("VERBS"), ::testing::Not(::testing::IsEmpty()));
  for (const Entry& verb : section("VERBS")) {
    std::string title = "OPTIONS OF ";
    std::transform(verb.head.begin(), verb.head.end(), std::back_inserter(title),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    Entries shown = entriesOfHelp(runTool({verb.head, "--help"}).out);
    // Said once, among the general options.
    shown.erase(std::remove(shown.begin(), shown.end(), section("OPTIONS").front()), shown.end());
    EXPECT_EQ(section(title), shown) << title;
  }
}

}  // namespace
}  // namespace quillon::tools::test

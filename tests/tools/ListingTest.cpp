#include <gtest/gtest.h>
#include <quillon/memory/TypedArray.h>

#include "Listing.h"

namespace quillon::tools {
namespace {

using memory::Axis;
using memory::Dictionary;
using object_model::AxisType;

TEST(ListingTest, EmptyGroupIsALine) { EXPECT_EQ(listingOf(Dictionary("/"), {}), "/  0 arrays\n"); }

TEST(ListingTest, TitleFollowsTheCount) {
  EXPECT_EQ(listingOf(Dictionary("/", "Two\nlines"), {}), "/  0 arrays  Two\\nlines\n");
}

TEST(ListingTest, ColumnsAreAlignedByCharacters) {
  Dictionary root("/");
  auto& length = root.add(memory::DoubleArray("length", {Axis("x", 2)}, {1, 2}));
  length.setUnit("µm");
  length.setDescription("end to end");
  auto& n = root.add(memory::UIntArray("n", {Axis("x", 2), Axis("row", 1)}, {1, 2}));
  n.setUnit("px2");
  n.setDescription("pixels");
  EXPECT_EQ(listingOf(root, {}),
            "/  2 arrays\n"
            "  length  Double  x=2        µm   end to end\n"
            "  n       UInt    x=2 row=1  px2  pixels\n");
}

TEST(ListingTest, EveryElementTypeHasItsName) {
  Dictionary root("/");
  root.add(memory::UIntArray("a", {}, {1}));
  root.add(memory::IntArray("b", {}, {1}));
  root.add(memory::DoubleArray("c", {}, {1}));
  root.add(memory::ComplexArray("d", {}, {1}));
  root.add(memory::StringArray("e", {}, {"1"}));
  root.add(memory::BooleanArray("f", {}, {true}));
  root.add(memory::DictionaryArray("g", {Axis("x", 0)}, {}));
  EXPECT_EQ(listingOf(root, {}),
            "/  7 arrays\n"
            "  a  UInt        single value\n"
            "  b  Int         single value\n"
            "  c  Double      single value\n"
            "  d  Complex     single value\n"
            "  e  String      single value\n"
            "  f  Boolean     single value\n"
            "  g  Dictionary  x=0\n");
}

TEST(ListingTest, KnownKindsOfAxesAreNamed) {
  Dictionary root("/");
  root.add(
      memory::IntArray("a",
                       {Axis("z", 1, AxisType::Slice), Axis("t", 1, AxisType::Time),
                        Axis(AxisType::Channel, 1), Axis("id", 1, AxisType::Label), Axis("x", 1)},
                       {1}));
  EXPECT_EQ(listingOf(root, {}),
            "/  1 array\n"
            "  a  Int  z=1 (slice) t=1 (time) channel=1 (channel) id=1 (label) x=1\n");
}

TEST(ListingTest, NothingFromAFileReachesTheTerminalRaw) {
  Dictionary root("/");
  auto& array = root.add(memory::IntArray("\x1b[1m", {Axis("\x07", 1)}, {1}));
  array.setUnit("\x1b]");
  array.setDescription("a\nb");
  EXPECT_EQ(listingOf(root, {{"/\x08", "type '\x0b'"}}),
            "/  1 array\n"
            "  \\x1b[1m  Int  \\x07=1  \\x1b]  a\\nb\n"
            "  \\x08  left out: type '\\x0b'\n");
}

TEST(ListingTest, GroupsFollowWithTheirPathsAndSkippedVariables) {
  Dictionary root("/");
  Dictionary& cells = root.add(Dictionary("cells"));
  cells.add(Dictionary("li", "Li's threshold"));
  cells.add(memory::IntArray("n", {}, {1}));
  EXPECT_EQ(listingOf(root, {{"/cells/li/outline", "opaque type 'o'"}}),
            "/  1 group\n"
            "\n"
            "/cells  1 array, 1 group\n"
            "  n  Int  single value\n"
            "\n"
            "/cells/li  0 arrays  Li's threshold\n"
            "  outline  left out: opaque type 'o'\n");
}

}  // namespace
}  // namespace quillon::tools

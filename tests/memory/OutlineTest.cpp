#include <gtest/gtest.h>
#include <quillon/memory/Outline.h>
#include <quillon/memory/TypedArray.h>

#include "support/Interfaces.h"

namespace quillon::memory {
namespace {

using object_model::AxisType;

TEST(OutlineTest, EmptyGroupIsALine) { EXPECT_EQ(describe(Dictionary("/")), "/  0 arrays\n"); }

TEST(OutlineTest, TitleFollowsTheCount) {
  EXPECT_EQ(describe(Dictionary("/", "Two\nlines")), "/  0 arrays  Two\\nlines\n");
}

TEST(OutlineTest, ColumnsAreAlignedByCharacters) {
  Dictionary root("/");
  auto& length = root.add(DoubleArray("length", {Axis("x", 2)}, {1, 2}));
  length.setUnit("µm");
  length.setDescription("end to end");
  auto& n = root.add(UIntArray("n", {Axis("x", 2), Axis("row", 1)}, {1, 2}));
  n.setUnit("px2");
  n.setDescription("pixels");
  EXPECT_EQ(describe(root),
            "/  2 arrays\n"
            "  length  Double  x=2        µm   end to end\n"
            "  n       UInt    x=2 row=1  px2  pixels\n");
}

TEST(OutlineTest, AColumnThatIsEmptyEverywhereTakesNoPlace) {
  Dictionary root("/");
  root.add(IntArray("a", {}, {1})).setDescription("first");
  root.add(IntArray("b", {}, {1})).setDescription("second");
  EXPECT_EQ(describe(root),
            "/  2 arrays\n"
            "  a  Int  single value  first\n"
            "  b  Int  single value  second\n");
}

TEST(OutlineTest, EveryElementTypeHasItsName) {
  Dictionary root("/");
  root.add(UIntArray("a", {}, {1}));
  root.add(IntArray("b", {}, {1}));
  root.add(DoubleArray("c", {}, {1}));
  root.add(ComplexArray("d", {}, {1}));
  root.add(StringArray("e", {}, {"1"}));
  root.add(BooleanArray("f", {}, {true}));
  root.add(DictionaryArray("g", {Axis("x", 0)}, {}));
  EXPECT_EQ(describe(root),
            "/  7 arrays\n"
            "  a  UInt        single value\n"
            "  b  Int         single value\n"
            "  c  Double      single value\n"
            "  d  Complex     single value\n"
            "  e  String      single value\n"
            "  f  Boolean     single value\n"
            "  g  Dictionary  x=0\n");
}

TEST(OutlineTest, KnownKindsOfAxesAreNamed) {
  Dictionary root("/");
  root.add(IntArray("a",
                    {Axis("z", 1, AxisType::Slice), Axis("t", 1, AxisType::Time),
                     Axis(AxisType::Channel, 1), Axis("id", 1, AxisType::Label), Axis("x", 1)},
                    {1}));
  EXPECT_EQ(describe(root),
            "/  1 array\n"
            "  a  Int  z=1 (slice) t=1 (time) channel=1 (channel) id=1 (label) x=1\n");
}

TEST(OutlineTest, NothingReachesTheTerminalRaw) {
  Dictionary root("/");
  auto& array = root.add(IntArray("\x1b[1m", {Axis("\x07", 1)}, {1}));
  array.setUnit("\x1b]");
  array.setDescription("a\nb");
  EXPECT_EQ(describe(root,
                     [](const auto& /*group*/) {
                       return std::vector<std::string>{"\x08  left out: type '\x0b'"};
                     }),
            "/  1 array\n"
            "  \\x1b[1m  Int  \\x07=1  \\x1b]  a\\nb\n"
            "  \\x08  left out: type '\\x0b'\n");
  Dictionary outer("/");
  outer.add(Dictionary("\x1b[2m"));
  EXPECT_EQ(describe(outer), "/  1 group\n\n/\\x1b[2m  0 arrays\n");
}

TEST(OutlineTest, GroupsFollowWithTheirPathsAndRemarks) {
  Dictionary root("/");
  Dictionary& cells = root.add(Dictionary("cells"));
  cells.add(Dictionary("li", "Li's threshold"));
  cells.add(IntArray("n", {}, {1}));
  const auto remarks = [](const object_model::Dictionary& group) {
    return group.getName() == "li" ? std::vector<std::string>{"outline  left out: opaque type 'o'"}
                                   : std::vector<std::string>();
  };
  EXPECT_EQ(describe(root, remarks),
            "/  1 group\n"
            "\n"
            "/cells  1 array, 1 group\n"
            "  n  Int  single value\n"
            "\n"
            "/cells/li  0 arrays  Li's threshold\n"
            "  outline  left out: opaque type 'o'\n");
}

/// Data that is neither an array nor a dictionary.
class NeitherKind : public test::PlainArray {
 public:
  bool isArray() const override { return false; }
  const object_model::Array* asArray() const override { return nullptr; }
  object_model::Array* asArray() override { return nullptr; }
};

TEST(OutlineTest, WhatIsNeitherArrayNorGroupIsLeftOut) {
  test::PlainDictionary root;
  NeitherKind neither;
  IntArray array("n", {}, {1});
  root.add(neither);
  root.add(array);
  EXPECT_EQ(describe(root),
            "/  1 array\n"
            "  n  Int  single value\n");
}

TEST(OutlineTest, AnArrayIsALine) {
  DoubleArray array("length", {Axis("x", 2)}, {1, 2});
  array.setUnit("mm");
  EXPECT_EQ(describe(array), "length  Double  x=2  mm\n");
  const object_model::Data& data = array;
  EXPECT_EQ(describe(data), "length  Double  x=2  mm\n");
  EXPECT_EQ(describe(IntArray("n", {}, {1})), "n  Int  single value\n");
}

TEST(OutlineTest, AnyObjectIsDescribedAsWhatItIs) {
  const Dictionary group("d", "title");
  const object_model::Data& data = group;
  EXPECT_EQ(describe(data), "/  0 arrays  title\n");
}

}  // namespace
}  // namespace quillon::memory

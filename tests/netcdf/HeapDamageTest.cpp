#include <ostream>

#include "HeapDamage.h"
#include "TestFiles.h"

namespace quillon::netcdf {
namespace {

std::string number(unsigned long value, unsigned long bytes) {
  std::string text;
  for (unsigned long k = 0; k < bytes; ++k) {
    text += static_cast<char>(value >> (8 * k) & 0xFFU);
  }
  return text;
}

std::string object(unsigned long index, unsigned long size, unsigned long roomTaken) {
  return number(index, 2) + number(1, 2) + number(0, 4) + number(size, 8) +
         std::string(roomTaken, 'x');
}

std::string freeSpace(unsigned long size, unsigned long roomTaken) {
  return object(0, size, roomTaken);
}

std::string heap(const std::string& objects, unsigned long excess = 0) {
  return "GCOL" + number(1, 4) + number(16 + objects.size() + excess, 8) + objects;
}

std::string fileWith(const std::string& heap, char version = 2, char sizeBytes = 8) {
  std::string file = "\x89HDF\r\n\x1a\n";
  file += version;
  file.resize(64, '\0');
  file[version < 2 ? 14 : 10] = sizeBytes;
  return file + "..." + heap;
}

struct HeapCase {
  const char* rule;
  std::string file;
  bool isDamaged;
};

void PrintTo(const HeapCase& c, std::ostream* os) { *os << c.rule; }

class HeapDamageTest : public testing::TestWithParam<HeapCase> {};

TEST_P(HeapDamageTest, IsFound) {
  const Scratch scratch;
  writeBytes(scratch.path("file"), GetParam().file);
  EXPECT_EQ(findHeapDamage(scratch.path("file"), GetParam().file.size()),
            GetParam().isDamaged ? "it is damaged: the heap at byte 67 is not sound" : "");
}

INSTANTIATE_TEST_SUITE_P(
    Rules, HeapDamageTest,
    testing::ValuesIn(std::vector<HeapCase>{
        {"NoHeap", fileWith(""), false},
        {"EmptyHeap", fileWith(heap("")), false},
        {"ObjectsAndFreeSpace", fileWith(heap(object(1, 5, 8) + freeSpace(48, 32))), false},
        {"RestTooSmallForAnObject", fileWith(heap(object(1, 8, 8) + "12345678")), false},
        {"ObjectOfNoBytes", fileWith(heap(object(1, 0, 0))), false},
        {"FreeSpaceOfNoBytesWouldTurnForEver", fileWith(heap(freeSpace(0, 32))), true},
        {"ObjectBeyondTheHeap", fileWith(heap(object(1, 9, 8))), true},
        {"ObjectSizeThatWraps", fileWith(heap(object(1, ~0UL, 8))), true},
        {"ObjectSizeThatWrapsWhenPadded", fileWith(heap(object(1, ~0UL - 7, 8))), true},
        {"FreeSpaceBeyondTheHeap", fileWith(heap(freeSpace(49, 32))), true},
        {"SecondObjectBeyondTheHeap", fileWith(heap(object(1, 8, 8) + object(2, 9, 8))), true},
        {"HeapBeyondTheFile", fileWith(heap(object(1, 8, 8), 1)), true},
        {"HeapSmallerThanItsHeader", fileWith("GCOL" + number(1, 4) + number(15, 8)), true},
        {"HeaderCutOff", fileWith("GCOL" + number(1, 4)), true},
        {"SecondHeapIsCheckedToo", fileWith("GCOL" + number(1, 4) + number(99, 8) + heap("")),
         true},
        {"OldSuperblock", fileWith(heap(freeSpace(0, 32)), 0), true},
        {"OtherVersionIsTheLibrarysToRefuse", fileWith("GCOL" + number(2, 4) + number(0, 8)),
         false},
        {"NarrowSizesAreNotRead", fileWith(heap(freeSpace(0, 32)), 2, 4), false},
        {"OtherFileFormat", "CDF" + heap(freeSpace(0, 32)), false},
        {"SignatureAlone", "\x89HDF\r\n\x1a\n", false},
    }),
    [](const auto& c) { return c.param.rule; });

TEST(HeapDamage, MissingFileIsLeftToTheLibrary) {
  EXPECT_EQ(findHeapDamage("/nonexistent", 10), "");
}

}  // namespace
}  // namespace quillon::netcdf

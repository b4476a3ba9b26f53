#include "tarn/base/wire.h"

#include <gtest/gtest.h>

#include "base/nearest.h"
#include "tarn/base/labels.h"

namespace tarn {
namespace {

struct Sample {
  Text<3> Name;
  Bool Flag;
  I4 Whole;
  R8 Real;
  Array<I2, 2, Bounds{0, 2}> Table;
};
static_assert(sizeof(Sample) == 3 + 2 + 4 + 8 + 12);
static_assert(alignof(Sample) == 1);

TEST(Wire, FieldsAreLittleEndianAndPacked) {
  Sample sample;
  sample.Name = "ab";
  sample.Flag = true;
  sample.Whole = 0x01020304;
  sample.Real = 1.0;
  sample.Table(2, 0) = 7;
  sample.Table(1, 2) = 8;
  const std::string bytes(reinterpret_cast<const char*>(&sample), sizeof sample);
  EXPECT_EQ(bytes, std::string("ab \xFF\xFF\x04\x03\x02\x01\0\0\0\0\0\0\xF0\x3F\0\0\7\0\0\0\0\0\x8\0\0\0", 29));
}

TEST(Wire, BooleansAreTrueForAnythingButZeroAndKeepTheirBits) {
  Bool odd;
  odd.bits = int16_t{7};
  EXPECT_TRUE(odd);
  EXPECT_EQ(odd.bits, 7);
  odd = false;
  EXPECT_EQ(odd.bits, 0);
}

TEST(Wire, SubscriptsAreChecked) {
  Array<R4, 3> layers;
  for (const int bad : {0, 4, -1}) {
    try {
      layers(bad);
      ADD_FAILURE() << "subscript " << bad;
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), 9);
    }
  }
}

TEST(Wire, TextIsPaddedCutAndOneByteACharacter) {
  const struct {
    const char* given;
    const char* bytes;
    const char* trimmed;
  } cases[]{{"ab", "ab   ", "ab"}, {"abcdefg", "abcde", "abcde"}, {"", "     ", ""},
            {"  a", "  a  ", "a"}, {"é€", "\xE9\x80   ", "é€"},   {"\xC2\x81", "\x81    ", "\xC2\x81"}};
  for (const auto& c : cases) {
    Text<5> text;
    text = c.given;
    EXPECT_EQ(text.bytes(), c.bytes) << c.given;
    EXPECT_EQ(text.trimmed(), c.trimmed) << c.given;
  }
}

TEST(Wire, EveryByteSurvivesTheWayThroughUtf8) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  EXPECT_EQ(page_from_utf8(utf8_from_page(all)), all);
}

TEST(Wire, TextsOutsideTheCodePageAreRefusedAndTheOldOneStays) {
  for (const char* bad : {"日", "a\xFF", "\xC3", "\xE2\x82", "\xC0\xAF", "\xED\xA0\x80", "\xF0\x9F\x98\x80"}) {
    Text<8> text;
    text = "before";
    EXPECT_THROW(text = bad, Error) << bad;
    EXPECT_EQ(text.trimmed(), "before") << bad;
  }
  try {
    page_from_utf8("x日");
  } catch (const Error& error) {
    EXPECT_NE(error.description().find("'日' (U+65E5)"), std::string::npos) << error.what();
  }
}

TEST(Labels, TheFirstOfTwoThatShareACodeWins) {
  const Label table[]{{1, "A", "first"}, {1, "B", "second"}, {2, "C", ""}};
  EXPECT_EQ(text_of(table, 1), "first");
  EXPECT_EQ(text_of(table, 2), "");
  EXPECT_EQ(text_of(table, 3), "");
}

TEST(Nearest, IsTheWordWithTheFewestEdits) {
  const std::string_view words[]{"Height", "Width", "FrameType"};
  EXPECT_EQ(nearest("heigth", words), "Height");
  EXPECT_EQ(nearest("frame", words), "FrameType");
  EXPECT_EQ(did_you_mean("x", {}), "there is none.");
  const std::string_view bricks[]{"blocks", "M01 4 in Brick", "12 in brick", "brink"};
  EXPECT_EQ(did_you_mean("brick", bricks), "did you mean 12 in brick or M01 4 in Brick?") << "it holds the word";
}

}  // namespace
}  // namespace tarn

#include "platform/binary_file.h"

#include "support/temp_project.h"

namespace tarn::test {
namespace {

class BinaryFileTest : public testing::Test {
 protected:
  static std::span<const std::byte> bytes(std::string_view text) { return std::as_bytes(std::span(text)); }
  std::string read(int16_t number, int32_t position, size_t size) {
    std::string text(size, '?');
    all.read(number, position, std::as_writable_bytes(std::span(text)));
    return text + "@" + std::to_string(all.position(number));
  }

  TempFolder folder;
  const std::string path = folder / "a.dat";
  BinaryFiles& all = BinaryFiles::of_thread();
};

TEST_F(BinaryFileTest, WhatIsWrittenReplacesTheFileAtItsClose) {
  write_bytes(path, "0123456789");
  const int16_t number = all.open(path, OpenMode::Create);
  all.write(number, 3, bytes("xy"));
  EXPECT_EQ(all.position(number), 5);
  all.write(number, 13, bytes("z"));
  EXPECT_EQ(error_number([&] { all.write(number, 512'000'001, bytes("x")); }), 6) << "it lies in memory until then";
  EXPECT_EQ(read(number, 1, 5), "01xy4@6") << "and is seen before";
  EXPECT_EQ(bytes_of(path), "0123456789");
  all.close(number);
  EXPECT_EQ(bytes_of(path), std::string("01xy456789\0\0z", 13));

  const int16_t dropped = all.open(path, OpenMode::Create);
  all.write(dropped, 1, bytes("no"));
  all.drop(dropped);
  EXPECT_EQ(bytes_of(path).substr(0, 2), "01");

  for (int step = 0; step < 8; ++step) {
    const int16_t failing = all.open(path, OpenMode::Create);
    all.write(failing, 1, bytes("other"));
    FaultyFiles faulty(step);
    if (error_number([&] { all.close(failing); }) == 0) {
      EXPECT_GT(step, 2) << "the fault was never reached";
      break;
    }
    EXPECT_EQ(bytes_of(path).substr(0, 4), "01xy") << step;
    EXPECT_EQ(error_number([&] { all.close(failing); }), 52) << "the number is free again";
  }
  EXPECT_EQ(bytes_of(path).substr(0, 5), "other");
}

TEST_F(BinaryFileTest, Errors) {
  write_bytes(path, "0123456789");
  const int16_t reads = all.open(path, OpenMode::Read), again = all.open(path, OpenMode::Read);
  EXPECT_EQ(reads, 1);
  EXPECT_EQ(again, 2);
  EXPECT_EQ(read(again, 8, 3), "789@11");
  const struct {
    int number;
    std::function<void()> action;
  } cases[]{{53, [&] { all.open(folder / "none", OpenMode::Read); }},
            {55, [&] { all.open(folder / "./a.dat", OpenMode::Create); }},
            {52, [&] { all.open("", OpenMode::Create); }},
            {52, [&] { all.close(3); }},
            {52, [&] { all.drop(0); }},
            {52, [&] { read(-1, 1, 1); }},
            {52, [&] { all.position(511); }},
            {62, [&] { read(1, 8, 4); }},
            {62, [&] { read(1, INT32_MAX - 9, 4); }},
            {6, [&] { read(1, INT32_MAX, 4); }},
            {63, [&] { read(1, 0, 4); }},
            {63, [&] { read(1, -5, 4); }},
            {70, [&] { all.write(1, 1, bytes("x")); }}};
  for (const auto& c : cases) EXPECT_EQ(error_number(c.action), c.number) << &c - cases;
  EXPECT_EQ(all.position(1), 1) << "failures move nothing";
  all.close(1);
  EXPECT_EQ(all.open(path, OpenMode::Read), 1) << "the lowest free one";
  for (int i = 3; i <= BinaryFiles::kMostFiles; ++i) EXPECT_EQ(all.open(path, OpenMode::Read), i);
  EXPECT_EQ(error_number([&] { all.open(path, OpenMode::Read); }), 67);
  for (int i = 1; i <= BinaryFiles::kMostFiles; ++i) all.close(static_cast<int16_t>(i));
}

}  // namespace
}  // namespace tarn::test

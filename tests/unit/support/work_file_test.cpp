#include "support/work_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/failure.h"

namespace tessaly {
namespace {

namespace fs = std::filesystem;

class WorkFileTest : public testing::Test {
 protected:
  WorkFileTest() : folder_(MakeTemporaryName(TemporaryFolder(), "folder", "")) {
    fs::remove(folder_);
    fs::create_directory(folder_);
  }
  ~WorkFileTest() override { fs::remove_all(folder_); }

  const std::string folder_;
};

TEST_F(WorkFileTest, PositionedAccessLeavesNothingBehind) {
  WorkFile file(folder_);
  EXPECT_TRUE(fs::is_empty(folder_));
  file.Write(4, "efgh", 4);
  file.Write(0, "abcd", 4);
  char text[16] = {};
  EXPECT_EQ(file.Read(2, text, 4), 4u);
  EXPECT_EQ(std::string(text, 4), "cdef");
  EXPECT_EQ(file.Read(6, text, 16), 2u) << "what there is before the end";
  EXPECT_EQ(file.Read(8, text, 16), 0u);
  const std::int64_t far = std::int64_t{5} << 30;
  file.Write(far, "xyz", 3);
  WorkFile moved = std::move(file);
  EXPECT_EQ(moved.Read(far + 1, text, 16), 2u);
  EXPECT_EQ(std::string(text, 2), "yz");
}

TEST_F(WorkFileTest, MissingFolder) {
  const std::string missing = folder_ + "/none";
  try {
    WorkFile file(missing);
    FAIL();
  } catch (const Halt& halt) {
    EXPECT_EQ(halt.Code, FailureCode::WorkFileProblem);
    EXPECT_EQ(halt.Argument.find(missing), 0u);
    EXPECT_NE(halt.Argument.find(": No such file"), std::string::npos);
  }
  const std::string name = MakeTemporaryName(missing, "t", ".txt");
  EXPECT_EQ(name.find(TemporaryFolder()), 0u) << "the system's folder instead";
  EXPECT_TRUE(fs::remove(name));
}

TEST_F(WorkFileTest, TemporaryNames) {
  const fs::path first = MakeTemporaryName(folder_, "rep", ".txt");
  const fs::path second = MakeTemporaryName(folder_, "rep", ".txt");
  EXPECT_NE(first, second);
  EXPECT_EQ(first.parent_path(), folder_);
  EXPECT_EQ(first.extension(), ".txt");
  EXPECT_EQ(first.filename().string().substr(0, 3), "rep");
  EXPECT_EQ(fs::file_size(second), 0u);
}

}  // namespace
}  // namespace tessaly

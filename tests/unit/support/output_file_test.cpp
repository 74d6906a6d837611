#include "support/output_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "support/failure.h"
#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

namespace fs = std::filesystem;

std::string Contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

int ErrorOf(OutputFile& file) {
  try {
    file.Close();
  } catch (const Halt& halt) {
    return -static_cast<int>(halt.Code);
  }
  return 0;
}

TEST(OutputFile, AllIsThereOrCloseSaysWhyNot) {
  const TestFolder folder;
  const std::string path = folder.Write("file", "what was there before");
  std::string expected;
  OutputFile first(path);
  for (int n = 0; n < 30000; ++n) {
    first.Write("line ");
    expected += "line ";
  }
  OutputFile moved = std::move(first);
  moved.Write("end");
  EXPECT_EQ(ErrorOf(moved), 0);
  EXPECT_EQ(ErrorOf(moved), 0) << "a second time";
  EXPECT_EQ(ErrorOf(first), 0) << "nothing is open";
  EXPECT_EQ(Contents(path), expected + "end");

  OutputFile full("/dev/full");
  full.Write("x");
  EXPECT_EQ(ErrorOf(full), ENOSPC) << "what is still in memory";
  OutputFile early("/dev/full");
  early.Write(std::string(1 << 20, 'x'));
  early.Write("y");
  EXPECT_EQ(ErrorOf(early), ENOSPC);
  { OutputFile(path).Write("left"); }
  EXPECT_EQ(Contents(path), "left") << "a run that is stopped keeps what it wrote";
}

TEST(OutputFile, OpensWithItsFirstBlockIfToldSo) {
  const TestFolder folder;
  const std::string path = folder.Write("file", "kept");
  { const OutputFile unused(path, OutputFile::Opening::WithFirstBlock); }
  EXPECT_EQ(Contents(path), "kept");
  OutputFile empty(path, OutputFile::Opening::WithFirstBlock);
  EXPECT_EQ(ErrorOf(empty), 0);
  EXPECT_EQ(Contents(path), "") << "an empty file was asked for";
  OutputFile late(folder.Path() + "none/file", OutputFile::Opening::WithFirstBlock);
  late.Write(std::string(1 << 20, 'x'));
  EXPECT_EQ(ErrorOf(late), ENOENT);
}

TEST(OutputFile, GivesUpWaitingForPipesAlone) {
  const TestFolder folder;
  bool stopped = false;
  const GivesUp givesUp = [&] { return stopped; };
  const std::string pipe = folder.Path() + "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), S_IRWXU), 0);
  const FileDescriptor reader(open(pipe.c_str(), O_RDWR | O_CLOEXEC));
  OutputFile toPipe(pipe, OutputFile::Opening::Now, givesUp);
  OutputFile toDisk(folder.Path() + "file", OutputFile::Opening::Now, givesUp);
  toPipe.Write("lost");
  toDisk.Write("kept");
  stopped = true;
  EXPECT_EQ(ErrorOf(toPipe), EINTR);
  EXPECT_EQ(ErrorOf(toDisk), 0);
  EXPECT_EQ(Contents(folder.Path() + "file"), "kept");
  EXPECT_THROW(OutputFile(pipe, OutputFile::Opening::Now, givesUp), Halt);
  // Left without `Close`, it does not wait either: this pipe is full.
  stopped = false;
  const std::string much(1 << 20, 'x');
  fcntl(reader.Get(), F_SETFL, O_RDWR | O_NONBLOCK);
  EXPECT_NE(WriteAll(reader.Get(), much), 0);
  OutputFile(pipe).Write("lost");
}

TEST(OutputFile, TryingToWriteChangesNothing) {
  const TestFolder folder;
  const std::string path = folder.Write("file", "kept");
  CheckWritable(path);
  EXPECT_EQ(Contents(path), "kept");
  CheckWritable(folder.Path() + "new");
  EXPECT_FALSE(fs::exists(folder.Path() + "new"));
  fs::create_symlink("later", folder.Path() + "link");
  CheckWritable(folder.Path() + "link");
  EXPECT_TRUE(fs::is_symlink(folder.Path() + "link")) << "the user's link, though it leads nowhere yet";
  EXPECT_FALSE(fs::exists(folder.Path() + "later"));
  EXPECT_THROW(CheckWritable(folder.Path()), Halt);
}

}  // namespace
}  // namespace tessaly

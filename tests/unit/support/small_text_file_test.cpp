#include "support/small_text_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <thread>

#include "support/failure.h"
#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

using Lines = std::vector<std::string>;

int CodeOf(const std::function<void()>& act) {
  try {
    act();
  } catch (const Halt& halt) {
    return static_cast<int>(halt.Code);
  }
  return 0;
}

void Replace(const std::string& path, const Lines& lines) {
  SmallFileUpdate(path).Replace(lines);
}

std::size_t FilesIn(const std::string& folder) {
  using Entries = std::filesystem::directory_iterator;
  return static_cast<std::size_t>(std::distance(Entries(folder), Entries()));
}

TEST(SmallTextFile, ReadsWholeFilesOfTextOnly) {
  const TestFolder folder;
  const int invalid = static_cast<int>(FailureCode::InvalidFileFormat);
  EXPECT_EQ(ReadSmallFile(folder.Path() + "none"), std::nullopt);
  EXPECT_EQ(ReadSmallFile(folder.Write("file", "") + "/below"), std::nullopt);
  EXPECT_EQ(ReadSmallFile("/dev/null"), Lines());
  EXPECT_EQ(ReadSmallFile(folder.Write("text",
                                       "\xEF\xBB\xBF"
                                       "a\tb\r\n\r\n\xC3\xA9")),
            (Lines{"a\tb", "", "\xC3\xA9"}));
  std::filesystem::create_symlink("loop", folder.Path() + "loop");
  const std::pair<std::string, int> refused[] = {
      {folder.Path(), -EISDIR},
      {folder.Path() + "loop", -ELOOP},
      {folder.Write("zero", std::string("Box\0show = N\n", 13)), invalid},
      {folder.Write("picture", "good = line\n\x89PNG\x1A\n"), invalid},
      {folder.Write("unicode",
                    "\xFF\xFE"
                    "A"),
       invalid},
      {folder.Write("line", std::string(kLongestSmallFile + 1, 'x')), invalid},
      {"/dev/urandom", invalid},
  };
  for (const auto& file : refused) EXPECT_EQ(CodeOf([&] { ReadSmallFile(file.first); }), file.second) << file.first;
  EXPECT_EQ(ReadSmallFile(folder.Write("line", std::string(kLongestSmallFile, 'x')))->size(), 1u);
}

TEST(SmallTextFile, NewContentsTakeTheirPlaceAtOnce) {
  const TestFolder folder;
  const std::string path = folder.Path() + "a/b/file";
  Replace(path, {"one", ""});
  EXPECT_EQ(ReadSmallFile(path), (Lines{"one", ""}));
  struct stat status = {};
  ASSERT_EQ(stat((folder.Path() + "a").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0700u);

  // A link stays a link, and permissions stay.
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  const std::string link = folder.Path() + "link";
  std::filesystem::create_symlink("a/b/file", link);
  Replace(link, {"two"});
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(ReadSmallFile(path), Lines{"two"});
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0640u);
  EXPECT_EQ(FilesIn(folder.Path() + "a/b"), 1u);

  EXPECT_EQ(CodeOf([&] { Replace(folder.Path() + "a", {}); }), -EISDIR);
  EXPECT_EQ(CodeOf([&] { Replace("/dev/null", {}); }), -ENOTSUP);
  EXPECT_EQ(CodeOf([&] { Replace(path + "/below", {}); }), -ENOTDIR);
  for (const std::string& line : {std::string("a\nb"), std::string("a\0b", 3), std::string(kLongestSmallFile, 'x')})
    EXPECT_EQ(CodeOf([&] { Replace(path, {line}); }), static_cast<int>(FailureCode::InvalidFileFormat));
  EXPECT_EQ(ReadSmallFile(path), Lines{"two"});
}

TEST(SmallTextFile, AFullDiskLeavesTheOldFile) {
  const TestFolder folder;
  const std::string path = folder.Write("file", "old\n");
  rlimit old = {};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit tight = old;
  tight.rlim_cur = 100;
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tight), 0);
  const int code = CodeOf([&] { Replace(path, Lines(100, "a line of some length")); });
  setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(code, -EFBIG);
  EXPECT_EQ(ReadSmallFile(path), Lines{"old"});
  EXPECT_EQ(FilesIn(folder.Path()), 1u);
}

TEST(SmallTextFile, ConcurrentChangesAreAllKeptAndNobodyWaitsForEver) {
  const TestFolder folder;
  const std::string path = folder.Path() + "new/file";
  std::vector<std::thread> writers;
  for (int writer = 0; writer < 4; ++writer)
    writers.emplace_back([&] {
      for (int round = 0; round < 25; ++round) {
        const SmallFileUpdate update(path);
        Lines lines = ReadSmallFile(path).value_or(Lines());
        lines.emplace_back("line");
        update.Replace(lines);
      }
    });
  for (std::thread& writer : writers) writer.join();
  EXPECT_EQ(ReadSmallFile(path), Lines(100, "line"));

  const SmallFileUpdate hanging(path);
  Replace(path, {"went on"});
  EXPECT_EQ(ReadSmallFile(path), Lines{"went on"});
}

}  // namespace
}  // namespace tessaly

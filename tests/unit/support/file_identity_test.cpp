#include "support/file_identity.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

TEST(SameFile, SeesThroughLinksAndFolders) {
  const TestFolder folder;
  const std::string here = folder.Path();
  const std::string file = folder.Write("file", "x");
  folder.Write("other", "x");
  std::filesystem::create_directory(here + "sub");
  std::filesystem::create_symlink("file", here + "link");
  std::filesystem::create_hard_link(file, here + "hard");
  std::filesystem::create_symlink("new", here + "dangling");
  std::filesystem::create_symlink("../dangling", here + "sub/chain");
  std::filesystem::create_symlink("round", here + "round");
  for (const char* name : {"file", "link", "hard", "sub/../file"}) EXPECT_TRUE(SameFile(here + name, file)) << name;
  for (const char* name : {"other", "new", "dangling", "sub", "round"})
    EXPECT_FALSE(SameFile(here + name, file)) << name;
  for (const char* name : {"dangling", "sub/chain", "sub/../new"})
    EXPECT_TRUE(SameFile(here + name, here + "new")) << name;
  EXPECT_TRUE(SameFile(here + "round", here + "round"));
  EXPECT_FALSE(SameFile("", ""));
  EXPECT_FALSE(SameFile("/dev/null", "/dev/null")) << "nothing is lost there";
}

}  // namespace
}  // namespace tessaly

#include "run/recent_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <thread>

#include "run/registry_store.h"
#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

using Paths = std::vector<std::string>;

class RecentFilesTest : public testing::Test {
 protected:
  std::string File(int number) const { return folder_.Write("f" + std::to_string(number), ""); }
  std::string Slot(int slot) const { return GetRegistryString(store_, kRecentFilesKey, std::to_string(slot)); }

  const TestFolder folder_;
  const std::string store_ = folder_.Path() + "config/tessaly/recent.ini";
};

TEST_F(RecentFilesTest, TheNewestComesFirstAndTheOldestGoes) {
  EXPECT_EQ(RefreshRecentFiles(store_), Paths());
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() + "config")) << "looking leaves nothing behind";
  Paths expected;
  for (int number = 0; number < 21; ++number) expected.insert(expected.begin(), File(number));
  for (int number = 0; number < 21; ++number) AddRecentFile(store_, File(number));
  EXPECT_EQ(RefreshRecentFiles(store_), expected);
  EXPECT_EQ(Slot(20), File(0));

  std::rotate(expected.begin(), expected.begin() + 15, expected.begin() + 16);
  EXPECT_EQ(AddRecentFile(store_, File(5)), expected);

  expected.insert(expected.begin(), File(21));
  expected.pop_back();
  EXPECT_EQ(AddRecentFile(store_, File(21)), expected);
}

TEST_F(RecentFilesTest, PathsAreFullAndTakenAsTheyAre) {
  std::filesystem::create_directories(folder_.Path() + "a/b");
  std::filesystem::create_directory_symlink("a/b", folder_.Path() + "link");
  const std::string same = folder_.Write("same", ""), large = folder_.Write("SAME", "");
  const std::string inA = folder_.Write("a/x", ""), beside = folder_.Write("x", "");
  const std::string odd = folder_.Write("a =b] ; ", "");
  const std::string relative = std::filesystem::relative(same).string();
  for (const std::string& path : {relative, folder_.Path() + "a/../same", odd, large}) AddRecentFile(store_, path);
  EXPECT_EQ(RefreshRecentFiles(store_), (Paths{large, odd, same}));
  // Behind the link, ".." is the folder "a".
  EXPECT_EQ(AddRecentFile(store_, folder_.Path() + "link/../x").front(), folder_.Path() + "link/../x");
  // No line of the store can hold it.
  EXPECT_EQ(AddRecentFile(store_, folder_.Write("two\nlines", "")).size(), 4u);
  EXPECT_EQ(AddRecentFile(store_, "").size(), 4u);
}

TEST_F(RecentFilesTest, WhatIsGoneIsDroppedAndItsSlotFilledAgain) {
  std::filesystem::create_directories(folder_.Path() + "full");
  std::filesystem::create_directories(folder_.Path() + "empty/below");
  folder_.Write("full/file", "");
  const std::string full = folder_.Path() + "full/";
  AddRecentFile(store_, File(1));
  AddRecentFile(store_, File(2));
  EXPECT_EQ(AddRecentFile(store_, full), (Paths{full, File(2), File(1)}));
  EXPECT_EQ(AddRecentFile(store_, folder_.Path() + "empty/"), (Paths{full, File(2), File(1)}));
  EXPECT_EQ(AddRecentFile(store_, folder_.Path() + "full"), (Paths{full, File(2), File(1)})) << "a folder as a file";
  std::filesystem::remove(folder_.Path() + "f2");
  EXPECT_EQ(RefreshRecentFiles(store_), (Paths{full, File(1)}));
  const Paths slots = {Slot(0), Slot(1), Slot(2), Slot(3)};
  EXPECT_EQ(std::count(slots.begin(), slots.end(), ""), 2);
  EXPECT_EQ(AddRecentFile(store_, File(3)), (Paths{File(3), full, File(1)}));

  SetRegistryString(store_, kRecentFilesKey, "9", full);
  EXPECT_EQ(RefreshRecentFiles(store_), (Paths{File(3), full, File(1)}));
  EXPECT_EQ(Slot(9), "") << "the second of two alike";
}

TEST_F(RecentFilesTest, OtherValuesStayAndABrokenStoreIsNoFailure) {
  EXPECT_EQ(GetRegistryString(store_, kWelcomeKey, "ShowWelcome"), "");
  EXPECT_TRUE(SetRegistryString(store_, kWelcomeKey, "ShowWelcome", "No"));
  AddRecentFile(store_, File(1));
  EXPECT_EQ(GetRegistryString(store_, kWelcomeKey, "ShowWelcome"), "No");
  EXPECT_TRUE(DeleteRegistryValue(store_, kWelcomeKey, "ShowWelcome"));
  EXPECT_EQ(GetRegistryString(store_, kWelcomeKey, "ShowWelcome"), "");
  EXPECT_EQ(RefreshRecentFiles(store_), Paths{File(1)});
  EXPECT_FALSE(SetRegistryString(store_, kWelcomeKey, "ShowWelcome", "two\nlines"));

  for (const std::string& text :
       {std::string("\0\1\2", 3), std::string(2 << 20, 'x'), std::string("[\n]\n=\nx\n0=/\n")}) {
    folder_.Write("config/tessaly/recent.ini", text);
    EXPECT_EQ(RefreshRecentFiles(store_), Paths());
    EXPECT_EQ(AddRecentFile(store_, File(2)), Paths{File(2)});
    EXPECT_EQ(RefreshRecentFiles(store_), Paths{File(2)});
  }
  for (const std::string& store : {std::string(), folder_.Path(), File(1) + "/below/recent.ini"}) {
    EXPECT_EQ(AddRecentFile(store, File(1)), Paths()) << store;
    EXPECT_FALSE(SetRegistryString(store, kWelcomeKey, "ShowWelcome", "No")) << store;
  }
}

TEST_F(RecentFilesTest, ProcessesAtTheSameTime) {
  std::vector<std::thread> users;
  for (int user = 0; user < 3; ++user)
    users.emplace_back([this, user] {
      for (int number = 0; number < 7; ++number) AddRecentFile(store_, File(10 * user + number));
    });
  for (std::thread& user : users) user.join();
  EXPECT_EQ(RefreshRecentFiles(store_).size(), 21u);
}

}  // namespace
}  // namespace tessaly

#include "spec/settings_location.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tessaly {
namespace {

using Files = std::vector<std::string>;

TEST(SettingsLocation, FollowsTheEnvironment) {
  const std::string own = "/h/.config/tessaly/tessaly.ini";
  const std::string system = "/etc/xdg/tessaly/tessaly.ini";
  const std::string recent = "/h/.config/tessaly/recent.ini";
  const std::string here = std::filesystem::current_path().string();
  struct Row {
    SettingsEnvironment Environment;
    Files Read;
    std::string Written;
    std::string Recent;
  };
  const Row rows[] = {
      {{"/h", "", "", "", ""}, {system, own}, own, recent},
      {{"/h", "/c", "/s1:/s2", "", ""},
       {"/s2/tessaly/tessaly.ini", "/s1/tessaly/tessaly.ini", "/c/tessaly/tessaly.ini"},
       "/c/tessaly/tessaly.ini",
       "/c/tessaly/recent.ini"},
      {{"/h", "relative", ":relative:", "", ""}, {own}, own, recent},
      {{"", "", "", "", ""}, {system}, "", ""},
      {{"relative", "", "", "", ""}, {system}, "", ""},
      {{"/h", "/c", "/s", "/n/my.ini", ""}, {"/n/my.ini"}, "/n/my.ini", "/c/tessaly/recent.ini"},
      {{"", "", "", "my.ini", ""}, {here + "/my.ini"}, here + "/my.ini", ""},
  };
  int number = 0;
  for (const Row& row : rows) {
    SCOPED_TRACE(number++);
    const SettingsLocation location = LocateSettings(row.Environment);
    EXPECT_EQ(location.SettingsFiles, row.Read);
    EXPECT_EQ(location.UserFile, row.Written);
    EXPECT_EQ(location.RecentFiles, row.Recent);
    EXPECT_EQ(location.NamedByUser, !row.Environment.SettingsFile.empty());
  }
}

}  // namespace
}  // namespace tessaly

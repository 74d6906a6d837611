// Any bytes as a settings file. What was read is written and must be read again as it was.
#include "fuzz/harness.h"
#include "spec/settings_file.h"

using namespace tessaly;

namespace {

struct Remembered {
  Settings Specified;
  InitialSettings Own;
};

Remembered ReadFrom(const SettingsLocation& location) {
  Console silence;
  Remembered remembered;
  remembered.Own = ReadSettings(location, remembered.Specified, silence);
  return remembered;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::OwnFolder folder;
  folder.Write("settings.ini", fuzz::ConfinedText(data, size));
  SettingsLocation location;
  location.SettingsFiles = {"settings.ini"};
  location.UserFile = "settings.ini";
  const Remembered first = ReadFrom(location);
  WriteAllSettings(location, first.Own, first.Specified);
  const std::string written = folder.Read("settings.ini");
  const Remembered second = ReadFrom(location);
  fuzz::Require(second.Own.Closeonexit == first.Own.Closeonexit);
  fuzz::Require(second.Own.GraphEmpirical == first.Own.GraphEmpirical);
  fuzz::Require(second.Own.Outputask == first.Own.Outputask);
  fuzz::Require(second.Own.Xtraask == first.Own.Xtraask);
  WriteAllSettings(location, second.Own, second.Specified);
  fuzz::Require(folder.Read("settings.ini") == written);
  AppendSetting(location, "Closeonexit = Y");
  fuzz::Require(ReadFrom(location).Own.Closeonexit == 'Y');
  return 0;
}

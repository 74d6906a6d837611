#include "shell/cli/system_clock.h"

#include <charconv>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string_view>

namespace tessaly {

namespace {

std::optional<std::time_t> FixedTime() {
  const char* epoch = std::getenv("SOURCE_DATE_EPOCH");
  if (epoch == nullptr) return {};
  const std::string_view text(epoch);
  long long seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  if (error != std::errc() || end != text.data() + text.size()) return {};
  return static_cast<std::time_t>(seconds);
}

}  // namespace

std::string SystemClock::RunDate() {
  std::tm fields = {};
  if (const auto fixed = FixedTime()) {
    gmtime_r(&*fixed, &fields);
  } else {
    const std::time_t now = std::time(nullptr);
    localtime_r(&now, &fields);
  }
  char text[32];
  const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &fields);
  return {text, length};
}

double SystemClock::Seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace tessaly

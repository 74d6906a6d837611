// Everything that may be asked for after the run: one table that the session, the help and the prompt walk.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "requests/request_options.h"
#include "requests/session_state.h"

namespace tessaly {

/// What the value of an option is, for those who offer values.
enum class ValueKind { Text, Words, Facets, Scales, File };

struct OptionInfo {
  std::string_view Name;
  /// The words of a choice with "|" between them, or what the value is.
  std::string_view Values;
  /// What it does, and what holds without it.
  std::string_view Text;
  ValueKind Kind = ValueKind::Text;
};

struct Verb {
  std::string_view Name;
  /// Begins the messages about what is missing in a request.
  std::string_view Title;
  std::string_view Summary;
  std::vector<OptionInfo> Options;
  /// Throws `Refusal`, `Halt` and `Stopped`.
  void (*Carry)(SessionState&, const RequestOptions&);
};

std::span<const Verb> Verbs();
/// Null for a name that no verb has.
const Verb* FindVerb(std::string_view name);
/// The names of all verbs, and of the options of one.
std::vector<std::string_view> VerbNames();
std::vector<std::string_view> OptionNames(const Verb& verb);

}  // namespace tessaly

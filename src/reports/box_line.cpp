#include "reports/box_line.h"

#include <algorithm>

#include "support/bytes.h"

namespace tessaly {

namespace {

constexpr char Byte(int value) {
  return static_cast<char>(value);
}

constexpr std::array<BoxCharacter, 14> kBoxCharacters{{
    {box::kHorizontal, '-', Byte(196), "9472"},
    {box::kVertical, '|', Byte(179), "9474"},
    {box::kLeftTee, '|', Byte(195), "9500"},
    {box::kCross, '+', Byte(197), "9532"},
    {box::kRightTee, '|', Byte(180), "9508"},
    {box::kTopLeft, '+', Byte(218), "9484"},
    {box::kTopTee, '-', Byte(194), "9516"},
    {box::kTopRight, '+', Byte(191), "9488"},
    {box::kBottomLeft, '+', Byte(192), "9492"},
    {box::kBottomTee, '-', Byte(193), "9524"},
    {box::kBottomRight, '+', Byte(217), "9496"},
    {box::kDoubleCross, '*', Byte(216), "9578"},
    {box::kDoubleRightTee, '*', Byte(181), "9569"},
    {box::kDoubleLeftTee, '*', Byte(198), "9566"},
}};

/// Codes of an "x" by what it joins: nothing, right, left, both.
struct Joints {
  char Alone;
  char Right;
  char Left;
  char Both;
};

constexpr Joints JointsOf(RuleKind kind) {
  switch (kind) {
    case RuleKind::Top:
      return {box::kHorizontal, box::kTopLeft, box::kTopRight, box::kTopTee};
    case RuleKind::Middle:
      return {box::kVertical, box::kLeftTee, box::kRightTee, box::kCross};
    case RuleKind::Bottom:
      return {box::kHorizontal, box::kBottomLeft, box::kBottomRight, box::kBottomTee};
  }
  return {};
}

bool Joins(char neighbour) {
  return neighbour == '-' || neighbour == 'x';
}

template <class Convert>
std::string Converted(std::string_view line, Convert convert) {
  std::string result(line);
  for (char& c : result) {
    if (const BoxCharacter* character = FindBoxCharacter(c)) c = convert(*character);
  }
  return result;
}

}  // namespace

const BoxCharacter* FindBoxCharacter(char code) {
  if (code < box::kHorizontal || code > box::kBottomRight) return nullptr;
  const auto found =
      std::find_if(kBoxCharacters.begin(), kBoxCharacters.end(), [&](const auto& c) { return c.Code == code; });
  return found == kBoxCharacters.end() ? nullptr : &*found;
}

std::string WithVerticals(std::string_view text) {
  return Replaced(text, '|', box::kVertical);
}

std::string BoxLine(std::string_view ruleTemplate, RuleKind kind, bool tickMarks) {
  const Joints joints = JointsOf(kind);
  std::string line(ruleTemplate);
  for (std::size_t at = 0; at < ruleTemplate.size(); ++at) {
    if (ruleTemplate[at] == '-') line[at] = box::kHorizontal;
    if (ruleTemplate[at] != 'x') continue;
    const bool left = at > 0 && Joins(ruleTemplate[at - 1]);
    const bool right = at + 1 < ruleTemplate.size() && Joins(ruleTemplate[at + 1]);
    if (left && right) {
      line[at] = tickMarks ? box::kCross : joints.Both;
    } else {
      line[at] = left ? joints.Left : right ? joints.Right : joints.Alone;
    }
  }
  return line;
}

std::string ToTextBox(std::string_view line) {
  return Converted(line, [](const BoxCharacter& c) { return c.Text; });
}

std::string ToDrawingBox(std::string_view line) {
  return Converted(line, [](const BoxCharacter& c) { return c.Drawing; });
}

std::string BlankBox(std::string_view line) {
  return Converted(line, [](const BoxCharacter&) { return ' '; });
}

std::string ToWebpage(std::string_view line) {
  std::string result;
  bool hardBlank = true;
  for (const char c : TrimRight(line)) {
    if (c == ' ') {
      result += hardBlank ? "&nbsp;" : " ";
      hardBlank = !hardBlank;
      continue;
    }
    hardBlank = false;
    if (const BoxCharacter* character = FindBoxCharacter(c)) {
      result.append("&#").append(character->Entity).append(";");
    } else {
      result += c;
    }
  }
  return result + "<br>";
}

}  // namespace tessaly

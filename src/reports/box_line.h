// Box lines: inside the program each box character is a control code, so that one table serves every form of the
// report.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace tessaly {

/// Neutral codes of box characters.
namespace box {
constexpr char kHorizontal = 14;
constexpr char kVertical = 15;
constexpr char kLeftTee = 16;
constexpr char kDoubleCross = 17;
constexpr char kDoubleRightTee = 18;
constexpr char kDoubleLeftTee = 19;
constexpr char kCross = 20;
constexpr char kRightTee = 21;
constexpr char kTopLeft = 22;
constexpr char kTopTee = 23;
constexpr char kTopRight = 24;
constexpr char kBottomLeft = 25;
constexpr char kBottomTee = 28;
constexpr char kBottomRight = 29;
}  // namespace box

/// One box character in each form of the report.
struct BoxCharacter {
  char Code;
  char Text;
  /// Byte of code page 437.
  char Drawing;
  /// Number of the webpage entity.
  std::string_view Entity;
};

/// The box character of `code`, or nothing.
const BoxCharacter* FindBoxCharacter(char code);

/// A text of neutral vertical lines: every "|" of `text` becomes the code.
std::string WithVerticals(std::string_view text);

enum class RuleKind { Top, Middle, Bottom };

/// A rule from a template of "-" (a line stretch) and "x" (a column boundary); other characters pass through. An "x"
/// joins what is beside it. With `tickMarks` an inner "x" is a cross in every kind of rule.
std::string BoxLine(std::string_view ruleTemplate, RuleKind kind, bool tickMarks = false);

/// The line with its box codes as text characters, as drawing bytes, as blanks.
std::string ToTextBox(std::string_view line);
std::string ToDrawingBox(std::string_view line);
std::string BlankBox(std::string_view line);

/// One line of a webpage: box codes become entities, runs of blanks alternate plain blanks and `&nbsp;`, `<br>` behind
/// it.
std::string ToWebpage(std::string_view line);

}  // namespace tessaly

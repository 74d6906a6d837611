// A page of vector graphics as text (SVG 1.1). Lengths are millimetres, y runs down from the upper edge.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tessaly {

struct Color {
  std::uint8_t Red = 0;
  std::uint8_t Green = 0;
  std::uint8_t Blue = 0;

  friend bool operator==(const Color&, const Color&) = default;
};
constexpr Color kBlack{0, 0, 0};
constexpr Color kWhite{255, 255, 255};

struct SvgPoint {
  double X = 0;
  double Y = 0;
};

struct SvgBox {
  double Left = 0;
  double Top = 0;
  double Right = 0;
  double Bottom = 0;

  double Width() const { return Right - Left; }
  double Height() const { return Bottom - Top; }
  bool Holds(SvgPoint point) const {
    return point.X >= Left && point.X <= Right && point.Y >= Top && point.Y <= Bottom;
  }
  bool Overlaps(const SvgBox& other) const {
    return Left < other.Right && other.Left < Right && Top < other.Bottom && other.Top < Bottom;
  }
};

/// Lines thinner than this are lost in print.
constexpr double kThinLine = 0.25;
/// From the edge of a page to what is drawn.
constexpr double kEdge = 1.5;
constexpr double kTickLength = 1.1;

struct Stroke {
  Color Ink = kBlack;
  double Width = kThinLine;
  /// Lengths of dashes and gaps in turn, with blanks between them; empty for a line without gaps.
  std::string_view Dash = {};
};

enum class TextAnchor { Start, Middle, End };

/// The smallest letters of a page, 6.8 points.
constexpr double kSmallText = 2.4;
constexpr double kTitleSize = 2.9;
/// From one line of a text to the next, in sizes.
constexpr double kLineFeed = 1.25;
/// Bold letters are wider than the plain ones that are measured.
constexpr double kBoldRoom = 0.9;
/// Letters reach about so far (in sizes) above the line that they stand on: half of it centres them.
constexpr double kLetterHeight = 0.7;

struct TextStyle {
  double Size = kSmallText;
  TextAnchor Anchor = TextAnchor::Start;
  Color Ink = kBlack;
  bool Bold = false;
  /// Runs upwards.
  bool Upright = false;
};

/// A page that grows as it is drawn on. Any text becomes well-formed XML: bytes that are no UTF-8 are replaced. A shape
/// with a coordinate that is no number, or infinite, is left out.
class SvgPage {
 public:
  explicit SvgPage(double width) : width_(width) {}

  double Width() const { return width_; }

  void Line(SvgPoint from, SvgPoint to, const Stroke& stroke);
  void Polyline(std::span<const SvgPoint> points, const Stroke& stroke);
  void Polygon(std::span<const SvgPoint> points, Color fill, const std::optional<Stroke>& outline = {});
  void Circle(SvgPoint center, double radius, Color fill, const std::optional<Stroke>& outline = {});
  void Rect(const SvgBox& box, Color fill, const std::optional<Stroke>& outline = {});
  /// `at` is on the line that the letters stand on.
  void Text(SvgPoint at, std::string_view text, const TextStyle& style);
  /// What follows up to `EndGroup` belongs together; `name` becomes its class.
  void BeginGroup(std::string_view name);
  void EndGroup();

  /// The whole file; `title` is what readers of the page call it.
  std::string Finish(double height, std::string_view title) const;

 private:
  void Shape(std::string_view element, std::string_view attributes, std::string_view paint);

  double width_;
  std::string body_;
  int openGroups_ = 0;
};

}  // namespace tessaly

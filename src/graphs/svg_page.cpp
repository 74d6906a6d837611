#include "graphs/svg_page.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "graphs/display_text.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

bool AllFinite(std::initializer_list<double> values) {
  return std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
}

bool AllFinite(std::span<const SvgPoint> points) {
  return std::all_of(points.begin(), points.end(), [](SvgPoint point) { return AllFinite({point.X, point.Y}); });
}

/// At most two decimals: finer than any printer.
std::string Length(double value) {
  constexpr double kFarthest = 1e6;
  const std::int64_t hundredths = std::llround(std::clamp(value, -kFarthest, kFarthest) * 100);
  const std::int64_t size = std::abs(hundredths);
  std::string text = (hundredths < 0 ? "-" : "") + BareText(size / 100);
  if (size % 100 != 0) text += "." + BareText(size % 100 / 10);
  if (size % 10 != 0) text += BareText(size % 10);
  return text;
}

std::string Attribute(std::string_view name, std::string_view value) {
  return std::string(" ").append(name).append("=\"").append(value).append("\"");
}
std::string Attribute(std::string_view name, double value) {
  return Attribute(name, std::string_view(Length(value)));
}

std::string Hex(Color color) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text = "#";
  for (const unsigned part : {color.Red, color.Green, color.Blue}) {
    text += kDigits[part / 16];
    text += kDigits[part % 16];
  }
  return text;
}

std::string Painted(const Stroke& stroke) {
  std::string text = Attribute("stroke", std::string_view(Hex(stroke.Ink))) + Attribute("stroke-width", stroke.Width);
  if (!stroke.Dash.empty()) text += Attribute("stroke-dasharray", stroke.Dash);
  return text;
}

std::string Painted(Color fill, const std::optional<Stroke>& outline) {
  return Attribute("fill", std::string_view(Hex(fill))) + (outline ? Painted(*outline) : std::string());
}

std::string Points(std::span<const SvgPoint> points) {
  std::string text;
  for (const SvgPoint point : points) {
    if (!text.empty()) text += ' ';
    text += Length(point.X) + "," + Length(point.Y);
  }
  return Attribute("points", std::string_view(text));
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : DisplayText(text)) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '\'':
        escaped += "&apos;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

}  // namespace

void SvgPage::Shape(std::string_view element, std::string_view attributes, std::string_view paint) {
  body_.append("<").append(element).append(attributes).append(paint).append("/>\n");
}

void SvgPage::Line(SvgPoint from, SvgPoint to, const Stroke& stroke) {
  if (!AllFinite({from.X, from.Y, to.X, to.Y})) return;
  Shape("line", Attribute("x1", from.X) + Attribute("y1", from.Y) + Attribute("x2", to.X) + Attribute("y2", to.Y),
        Painted(stroke));
}

void SvgPage::Polyline(std::span<const SvgPoint> points, const Stroke& stroke) {
  if (!AllFinite(points)) return;
  Shape("polyline", Points(points) + Attribute("fill", "none"), Painted(stroke));
}

void SvgPage::Polygon(std::span<const SvgPoint> points, Color fill, const std::optional<Stroke>& outline) {
  if (!AllFinite(points)) return;
  Shape("polygon", Points(points), Painted(fill, outline));
}

void SvgPage::Circle(SvgPoint center, double radius, Color fill, const std::optional<Stroke>& outline) {
  if (!AllFinite({center.X, center.Y, radius})) return;
  Shape("circle", Attribute("cx", center.X) + Attribute("cy", center.Y) + Attribute("r", radius),
        Painted(fill, outline));
}

void SvgPage::Rect(const SvgBox& box, Color fill, const std::optional<Stroke>& outline) {
  if (!AllFinite({box.Left, box.Top, box.Right, box.Bottom})) return;
  Shape("rect",
        Attribute("x", box.Left) + Attribute("y", box.Top) + Attribute("width", std::max(box.Width(), 0.0)) +
            Attribute("height", std::max(box.Height(), 0.0)),
        Painted(fill, outline));
}

void SvgPage::Text(SvgPoint at, std::string_view text, const TextStyle& style) {
  if (!AllFinite({at.X, at.Y, style.Size})) return;
  body_ += "<text" + Attribute("x", at.X) + Attribute("y", at.Y) + Attribute("font-size", style.Size);
  if (style.Anchor != TextAnchor::Start)
    body_ += Attribute("text-anchor", style.Anchor == TextAnchor::Middle ? "middle" : "end");
  if (style.Bold) body_ += Attribute("font-weight", "bold");
  if (style.Ink != kBlack) body_ += Attribute("fill", std::string_view(Hex(style.Ink)));
  if (style.Upright)
    body_ += Attribute("transform", std::string_view("rotate(-90 " + Length(at.X) + " " + Length(at.Y) + ")"));
  body_ += ">" + Escaped(text) + "</text>\n";
}

void SvgPage::BeginGroup(std::string_view name) {
  body_ += "<g" + Attribute("class", std::string_view(Escaped(name))) + ">\n";
  ++openGroups_;
}

void SvgPage::EndGroup() {
  if (openGroups_ == 0) return;
  body_ += "</g>\n";
  --openGroups_;
}

std::string SvgPage::Finish(double height, std::string_view title) const {
  std::string file = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\"";
  file += Attribute("version", "1.1") + Attribute("width", std::string_view(Length(width_) + "mm")) +
          Attribute("height", std::string_view(Length(height) + "mm")) +
          Attribute("viewBox", std::string_view("0 0 " + Length(width_) + " " + Length(height))) +
          Attribute("font-family", kPictureFonts) + ">\n";
  file += "<title>" + Escaped(title) + "</title>\n";
  file += "<rect" + Attribute("width", width_) + Attribute("height", height) + Painted(kWhite, {}) + "/>\n" + body_;
  for (int group = 0; group < openGroups_; ++group) file += "</g>\n";
  return file + "</svg>\n";
}

}  // namespace tessaly

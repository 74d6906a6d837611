// Pictures are read back from their files: what is drawn where, and whether any reader of XML can read it at all.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "fixture/design.h"
#include "graphs/curve_picture.h"
#include "graphs/display_text.h"
#include "graphs/picture_axis.h"
#include "graphs/picture_clip.h"
#include "graphs/row_spread.h"
#include "graphs/wright_map.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinite = std::numeric_limits<float>::infinity();

struct XmlElement {
  std::string Name;
  std::map<std::string, std::string> Attributes;
  std::string Text;
  /// The class of the group that it stands in.
  std::string Group;

  double Number(const std::string& attribute) const {
    const auto found = Attributes.find(attribute);
    return found == Attributes.end() ? 0 : LeadingNumber(found->second);
  }
  std::vector<SvgPoint> Points() const {
    std::vector<SvgPoint> points;
    for (const std::string_view pair : SplitAt(Attributes.at("points"), ' '))
      points.push_back({LeadingNumber(pair), LeadingNumber(pair.substr(pair.find(',') + 1))});
    return points;
  }
  /// Of a text; somewhat smaller than the letters' own.
  SvgBox Box() const {
    const double size = Number("font-size");
    const double width = TextWidth(Text, size) * (Attributes.contains("font-weight") ? 1.05 : 1);
    const auto anchor = Attributes.find("text-anchor");
    const double before = anchor == Attributes.end() ? 0 : anchor->second == "end" ? width : width / 2;
    const double x = Number("x");
    const double y = Number("y");
    if (Attributes.contains("transform")) return {x - 0.7 * size, y - width / 2, x, y + width / 2};
    return {x - before, y - 0.7 * size, x - before + width, y};
  }
};

std::string Unescaped(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    const std::size_t end = text.front() == '&' ? text.find(';') : 0;
    const std::string_view piece = text.substr(0, end + 1);
    static const std::map<std::string_view, char> entities = {
        {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
    EXPECT_TRUE(piece.size() == 1 || entities.contains(piece)) << piece;
    plain += piece.size() == 1 ? piece.front() : entities.at(piece);
    text.remove_prefix(piece.size());
  }
  return plain;
}

/// The elements of a file, which must be well-formed.
std::vector<XmlElement> Parse(const std::string& file) {
  std::string line = file;
  std::erase(line, '\n');
  EXPECT_EQ(DisplayText(line), line);
  std::vector<XmlElement> elements;
  std::vector<XmlElement> open;
  std::size_t at = file.find("?>") + 2;
  while (at < file.size()) {
    const std::size_t start = file.find('<', at);
    const std::string text = file.substr(at, std::min(start, file.size()) - at);
    if (!open.empty() && text != "\n") open.back().Text += Unescaped(text);
    if (start == std::string::npos) break;
    std::size_t end = start + 1;
    const auto word = [&](std::string_view stops) {
      const std::size_t from = end;
      end = file.find_first_of(stops, end);
      return file.substr(from, end - from);
    };
    if (file[end] == '/') {
      ++end;
      const std::string name = word(">");
      EXPECT_TRUE(!open.empty() && open.back().Name == name) << name;
      if (open.empty()) return elements;
      elements.push_back(open.back());
      open.pop_back();
    } else {
      XmlElement element{word(" />"), {}, {}, open.empty() ? "" : open.back().Attributes["class"]};
      while (file[end] == ' ') {
        ++end;
        const std::string name = word("=");
        end += 2;
        EXPECT_TRUE(element.Attributes.emplace(name, Unescaped(word("\"<"))).second) << name;
        EXPECT_EQ(file[end++], '"');
      }
      const bool empty = file[end] == '/';
      if (empty) ++end;
      (empty ? elements : open).push_back(element);
    }
    EXPECT_EQ(file[end], '>') << file.substr(start, 80);
    at = end + 1;
  }
  EXPECT_TRUE(open.empty());
  return elements;
}

std::vector<XmlElement> Named(const std::vector<XmlElement>& all, const std::string& name, const std::string& group) {
  std::vector<XmlElement> found;
  std::copy_if(all.begin(), all.end(), std::back_inserter(found),
               [&](const XmlElement& element) { return element.Name == name && element.Group == group; });
  return found;
}

/// No text leaves the page or touches another one.
void ExpectReadable(const std::vector<XmlElement>& elements) {
  const XmlElement& page = elements.back();
  std::vector<XmlElement> texts;
  for (const XmlElement& element : elements) {
    if (element.Name == "text") texts.push_back(element);
  }
  for (std::size_t at = 0; at < texts.size(); ++at) {
    const SvgBox box = texts[at].Box();
    EXPECT_GE(texts[at].Number("font-size"), 6.5 * 25.4 / 72);
    EXPECT_TRUE(box.Left >= 0 && box.Top >= 0 && box.Right <= page.Number("width") &&
                box.Bottom <= page.Number("height"))
        << texts[at].Text;
    for (std::size_t other = 0; other < at; ++other)
      EXPECT_FALSE(box.Overlaps(texts[other].Box())) << texts[at].Text << " / " << texts[other].Text;
  }
}

std::string RandomBytes(std::mt19937& random, std::size_t most) {
  const std::vector<std::string> pieces = {"<", "&", "\"", "'", "]]>", " ", ", ", "a", "W", "\xC3\xA4", "\xE6\x97\xA5"};
  std::string text;
  for (std::size_t left = random() % (most + 1); left > 0; --left)
    text += random() % 3 == 0 ? std::string(1, static_cast<char>(random() % 256)) : pieces[random() % pieces.size()];
  return text;
}

TEST(SvgPage, AnyTextAndAnyNumberGivesAWellFormedFile) {
  std::mt19937 random(1);
  for (int round = 0; round < 300; ++round) {
    SvgPage page(80);
    const std::string text = RandomBytes(random, 30);
    page.BeginGroup(text);
    page.Text({1, 2}, text, {});
    for (const double hostile : {double{kNan}, double{kInfinite}, -1e300}) {
      page.Line({hostile, 1}, {2, 3}, {});
      page.Circle({1, hostile}, 1, kBlack);
      page.Polyline(std::vector<SvgPoint>{{1, 1}, {hostile, 2}}, {});
    }
    const std::string file = page.Finish(50, text);
    const std::vector<XmlElement> elements = Parse(file);
    EXPECT_EQ(elements.back().Name, "svg");
    EXPECT_EQ(file.find("nan"), std::string::npos);
    EXPECT_EQ(file.find("inf"), std::string::npos);
  }
  EXPECT_EQ(DisplayText("a\x01\xC3\xA4\xC0\x80\xED\xA0\x80\xF4\x90z\x7F\xC2\x85"),
            "a\xC3\xA4" + Joined(std::vector<std::string>(7, "\xEF\xBF\xBD"), "") + "z");
}

TEST(DisplayText, FitsAndIsNotLost) {
  std::mt19937 random(2);
  for (int round = 0; round < 500; ++round) {
    const std::string text = DisplayText(RandomBytes(random, 60));
    const double width = 10 + static_cast<double>(random() % 30);
    std::string whole;
    for (const std::string& line : Wrapped(text, 2.4, width, 1000)) {
      EXPECT_LE(TextWidth(line, 2.4), width);
      whole += line;
    }
    const auto solid = [](std::string from) {
      std::erase(from, ' ');
      return from;
    };
    EXPECT_EQ(solid(whole), solid(text));
    for (const std::string& shorter : {Shortened(text, 2.4, width), ShortenedInside(text, 2.4, width)}) {
      EXPECT_LE(TextWidth(shorter, 2.4), width);
      EXPECT_EQ(DisplayText(shorter), shorter);
    }
  }
  EXPECT_EQ(ShortenedInside("Examination centre 17", 2.4, 15).substr(0, 4), "Exam");
  EXPECT_TRUE(ShortenedInside("Examination centre 17", 2.4, 15).ends_with("17"));
}

TEST(PictureAxis, LabelsTellTheValues) {
  const auto labels = [](PictureAxis axis, double room) {
    ThinLabels(axis, 50, room);
    std::string text;
    for (const AxisTick& tick : axis.Ticks) text += tick.Label + ";";
    return text;
  };
  EXPECT_EQ(labels(DivideAxis(0, 1, 4), 0), "0;0.25;0.50;0.75;1;");
  EXPECT_EQ(labels(DivideAxis(-6, 6, 12), 10),
            "\xE2\x88\x92"
            "6;;;\xE2\x88\x92"
            "3;;;0;;;3;;;6;");
  EXPECT_EQ(labels(RoundAxis(-0.3, 1.1, 8), 0),
            "\xE2\x88\x92"
            "0.2;0;0.2;0.4;0.6;0.8;1;");
  EXPECT_EQ(labels(DivideAxis(2, 2, 0), 0), "2;3;");
  for (const double hostile : {double{kNan}, double{kInfinite}, -1e300, 1e-300, 1e9, 3.0}) {
    for (const PictureAxis& axis : {DivideAxis(hostile, 1, hostile), DivideAxis(hostile, hostile, 1e9),
                                    RoundAxis(hostile, hostile, hostile), RoundAxis(1e9, 1e9 + 1e-6, 9)}) {
      EXPECT_LT(axis.Low, axis.High);
      EXPECT_LE(axis.Ticks.size(), 51U);
    }
  }
}

TEST(PictureClip, KeepsExactlyWhatIsInside) {
  const SvgBox box{0, 0, 10, 6};
  std::mt19937 random(3);
  std::uniform_real_distribution<double> around(-6, 16);
  for (int round = 0; round < 200; ++round) {
    std::vector<SvgPoint> line(5);
    for (SvgPoint& point : line) point = {around(random), around(random)};
    double inside = 0;
    double kept = 0;
    for (std::size_t at = 1; at < line.size(); ++at) {
      const SvgPoint step{(line[at].X - line[at - 1].X) / 20000, (line[at].Y - line[at - 1].Y) / 20000};
      for (int i = 0; i < 20000; ++i) {
        if (box.Holds({line[at - 1].X + (i + 0.5) * step.X, line[at - 1].Y + (i + 0.5) * step.Y}))
          inside += std::hypot(step.X, step.Y);
      }
    }
    for (const std::vector<SvgPoint>& piece : ClippedLine(line, box)) {
      for (std::size_t at = 0; at < piece.size(); ++at) {
        EXPECT_TRUE(box.Holds(piece[at]));
        if (at > 0) kept += std::hypot(piece[at].X - piece[at - 1].X, piece[at].Y - piece[at - 1].Y);
      }
    }
    EXPECT_NEAR(kept, inside, 0.02);
  }
  // A square turned by 45 degrees about a corner of the box: a quarter of it is inside.
  const std::vector<SvgPoint> area = ClippedArea({{-2, 0}, {0, -2}, {2, 0}, {0, 2}}, box);
  double twice = 0;
  for (std::size_t at = 0; at < area.size(); ++at) {
    const SvgPoint next = area[(at + 1) % area.size()];
    twice += area[at].X * next.Y - next.X * area[at].Y;
  }
  EXPECT_NEAR(std::fabs(twice), 4, 1e-9);
}

TEST(RowSpread, IsTheNearestPlacingWithoutOverlap) {
  std::mt19937 random(4);
  std::uniform_real_distribution<double> place(0, 40);
  std::normal_distribution<double> nudge(0, 0.3);
  const auto cost = [](const std::vector<double>& rows, const std::vector<double>& wanted) {
    double sum = 0;
    for (std::size_t at = 0; at < rows.size(); ++at) sum += std::pow(rows[at] - wanted[at], 2);
    return sum;
  };
  const auto allowed = [](const std::vector<double>& rows) {
    for (std::size_t at = 1; at < rows.size(); ++at) {
      if (rows[at] - rows[at - 1] < 3 - 1e-9) return false;
    }
    return rows.front() >= 0 && rows.back() <= 40;
  };
  for (int round = 0; round < 50; ++round) {
    std::vector<double> wanted(2 + random() % 12);
    for (double& row : wanted) row = place(random);
    std::sort(wanted.begin(), wanted.end());
    const std::vector<double> rows = SpreadRows(wanted, 3, 0, 40);
    EXPECT_TRUE(allowed(rows));
    for (int attempt = 0; attempt < 200; ++attempt) {
      std::vector<double> other = rows;
      const double shift = nudge(random);
      const std::size_t from = random() % rows.size();
      for (std::size_t at = from; at <= from + random() % (rows.size() - from); ++at) other[at] += shift;
      EXPECT_TRUE(!allowed(other) || cost(other, wanted) >= cost(rows, wanted) - 1e-9);
    }
  }
}

CurvePlot SamplePlot(GraphKind kind) {
  CurvePlot plot;
  plot.Kind = kind;
  plot.Title = "Model = <?,?,\xC3\x84rger>";
  plot.X.Divisions = 10;
  plot.X.ShownMin = -5;
  plot.X.ShownMax = 5;
  plot.Y.Divisions = 4;
  plot.Y.ShownMax = 1;
  return plot;
}

Series Curve(SeriesRole role, const std::string& name, const std::vector<std::optional<CurvePoint>>& points) {
  Series series;
  series.Role = role;
  series.Name = name;
  series.Points = points;
  return series;
}

TEST(CurvePicture, DrawsTheCurvesThatTheAxesShow) {
  CurvePlot plot = SamplePlot(GraphKind::ExpectedScore);
  plot.Curves = {Curve(SeriesRole::Model, "model", {CurvePoint{-9, -1}, CurvePoint{9, 2}}),
                 Curve(SeriesRole::Empirical, "observed",
                       {CurvePoint{-3, 0.2F},
                        CurvePoint{-2, 0.3F},
                        {},
                        CurvePoint{0, 0.5F},
                        CurvePoint{1, 0.6F},
                        CurvePoint{2, kNan},
                        CurvePoint{3, 0.7F},
                        CurvePoint{4, 0.8F},
                        CurvePoint{5, 3}}),
                 Curve(SeriesRole::UpperBound, "upper", {CurvePoint{-3, 0.4F}, CurvePoint{4, 1.4F}}),
                 Curve(SeriesRole::LowerBound, "lower", {CurvePoint{-3, 0.1F}, CurvePoint{4, 0.7F}})};
  const auto drawn = [&](JoinMode join, const std::string& name, const std::string& group) {
    return Named(Parse(CurvePicture(plot, join, "logits")), name, group);
  };
  // One line for each of the other series, and three pieces between the gaps.
  EXPECT_EQ(drawn(JoinMode::Both, "polyline", "curve").size(), 6U);
  EXPECT_EQ(drawn(JoinMode::Points, "polyline", "curve").size(), 3U);
  // A point above the axis has no place.
  EXPECT_EQ(drawn(JoinMode::Both, "circle", "markers").size(), 6U);
  EXPECT_EQ(drawn(JoinMode::Lines, "circle", "markers").size(), 0U);
  EXPECT_EQ(drawn(JoinMode::None, "text", "legend").size(), 3U);
  const XmlElement frame = drawn(JoinMode::Both, "rect", "").at(1);
  const SvgBox box{frame.Number("x") - 0.01, frame.Number("y") - 0.01, frame.Number("x") + frame.Number("width") + 0.01,
                   frame.Number("y") + frame.Number("height") + 0.01};
  for (const auto& [name, group] : {std::pair("polyline", "curve"), {"polygon", "band"}}) {
    for (const XmlElement& line : drawn(JoinMode::Both, name, group)) {
      for (const SvgPoint point : line.Points()) EXPECT_TRUE(box.Holds(point)) << point.X << " " << point.Y;
    }
  }
  // The model line enters where y is 0, at x = -3: a fifth of the width.
  EXPECT_NEAR(drawn(JoinMode::Both, "polyline", "curve").front().Points().front().X,
              frame.Number("x") + frame.Number("width") / 5, 0.02);
  const std::vector<XmlElement> markers = drawn(JoinMode::Points, "circle", "markers");
  EXPECT_EQ(markers.front().Attributes.at("fill"), "#ff0000");
  EXPECT_NEAR(markers.front().Number("cy"), frame.Number("y") + 0.8 * frame.Number("height"), 0.02);
  plot.Curves[1].Smoothed = true;
  EXPECT_EQ(drawn(JoinMode::None, "polyline", "curve").size(), 6U);
  EXPECT_TRUE(drawn(JoinMode::Both, "circle", "markers").empty());
}

TEST(CurvePicture, StaysReadableWhateverItHolds) {
  std::mt19937 random(5);
  const std::vector<float> values = {kNan, kInfinite, -kInfinite, 3e38F, -3e38F, 0, 1, -4, 1e-30F};
  const auto any = [&] { return values[random() % values.size()]; };
  for (int round = 0; round < 60; ++round) {
    CurvePlot plot = SamplePlot(static_cast<GraphKind>(1 + round % 6));
    plot.Title = RandomBytes(random, 200);
    plot.X.Divisions = random() % 2 == 0 ? 1e9F : any();
    if (round % 3 == 0) plot.X.ShownMin = any();
    if (round % 4 == 0) plot.Y.ShownMax = any();
    plot.Y.Divisions = static_cast<std::int32_t>(random());
    const int curves = round % 10 == 0 ? 600 : round % 14;
    for (int k = 0; k < curves; ++k) {
      Series series = Curve(static_cast<SeriesRole>(random() % 5), RandomBytes(random, 90) + ": 7", {});
      if (random() % 2 == 0) series.Category = static_cast<std::int32_t>(random());
      for (int i = 0; i < 40; ++i) {
        series.Points.emplace_back(CurvePoint{static_cast<float>(i) / 4 - 5, static_cast<float>(random() % 100) / 99});
        if (random() % 9 == 0) series.Points.back() = CurvePoint{any(), any()};
        if (random() % 9 == 0) series.Points.emplace_back();
      }
      plot.Curves.push_back(std::move(series));
    }
    const std::string file = CurvePicture(plot, JoinMode::Both, round % 2 == 0 ? "" : "user units (1 logit = 10)");
    EXPECT_EQ(file.find("nan"), std::string::npos);
    EXPECT_EQ(curves == 0, file.find("Nothing to draw") != std::string::npos);
    ExpectReadable(Parse(file));
  }
}

/// A map read back.
struct ReadMap {
  explicit ReadMap(const std::string& file) : Elements(Parse(file)) {
    ExpectReadable(Elements);
    EXPECT_LE(Elements.back().Number("width"), 160);
    EXPECT_LE(Elements.back().Number("height"), 220);
    std::vector<std::pair<double, double>> ticks;
    for (const XmlElement& text : Named(Elements, "text", "axis")) {
      std::string number = text.Text;
      if (number.starts_with("\xE2\x88\x92")) number.replace(0, 3, "-");
      ticks.emplace_back(text.Number("y") - kLetterHeight * kSmallText / 2, LeadingNumber(number));
    }
    EXPECT_GE(ticks.size(), 2U);
    PerMillimetre = (ticks.back().second - ticks.front().second) / (ticks.back().first - ticks.front().first);
    Zero = ticks.front().second - ticks.front().first * PerMillimetre;
  }

  double MeasureAt(double y) const { return Zero + y * PerMillimetre; }
  /// The height from which a line leads to a label.
  double HeightOf(const std::string& label) const {
    const auto found =
        std::find_if(Elements.begin(), Elements.end(), [&](const XmlElement& e) { return e.Text == label; });
    EXPECT_TRUE(found != Elements.end()) << label;
    // Below the text stand its paper and the line.
    return found == Elements.end() ? 0 : (found - 2)->Points().front().Y;
  }

  std::vector<XmlElement> Elements;
  double PerMillimetre = 0;
  double Zero = 0;
};

std::string MapOf(const FinishedAnalysis& run, const std::string& vertical, const std::string& yardstick) {
  ResponseKernel kernel(run.A.Scales, run.A.Settings.HardwareExponent);
  return WrightMap(vertical, yardstick, run.A, kernel);
}

TEST(WrightMap, LabelsStandAtTheirMeasuresAndCategoriesBetweenHalfScores) {
  FinishedAnalysis run = SimulatedDesign({24, 7}, 3, 11).Run();
  ASSERT_TRUE(run.Finished());
  for (const auto& [uscale, umean] : {std::pair(1.0F, 0.0F), {10.0F, 50.0F}, {-10.0F, 50.0F}, {0.01F, 0.0F}}) {
    run.A.Settings.Uscale = uscale;
    run.A.Settings.Umean = umean;
    const ReadMap map(MapOf(run, "1*,2A,S", ""));
    // Labels nearer to each other than 0.15 mm have one height.
    const double tolerance = 0.15 * std::fabs(map.PerMillimetre);
    int labels = 0;
    for (int item = 1; item <= 7; ++item) {
      const std::string& label = run.A.Elements.ElementLabel[run.At(2, item)];
      // Neighbours at the same height share a row.
      const auto own = [&](const XmlElement& e) { return e.Name == "text" && e.Text == label; };
      if (std::none_of(map.Elements.begin(), map.Elements.end(), own)) continue;
      ++labels;
      EXPECT_NEAR(map.MeasureAt(map.HeightOf(label)), double{umean} + double{uscale} * run.Measure(2, item), tolerance);
    }
    EXPECT_GE(labels, 3);
    ResponseKernel kernel(run.A.Scales, 80);
    double boundaries = 0;
    double end = 0;
    for (const XmlElement& rect : map.Elements) {
      // The pieces of the bar are the only boxes with a black outline; the first begins at the end of the axis.
      if (rect.Name != "rect" || !rect.Attributes.contains("stroke") || rect.Attributes.at("stroke") != "#000000")
        continue;
      const double start = std::exchange(end, rect.Number("y") + rect.Number("height"));
      if (boundaries++ == 0) continue;
      EXPECT_NEAR(rect.Number("y"), start, 0.011);
      const double logit = (map.MeasureAt(rect.Number("y")) - double{umean}) / double{uscale};
      const float score = kernel.CategoryProbabilities(run.A.Scales.ScaleOrder[0], ModelType::RatingScale, 3,
                                                       static_cast<float>(logit));
      EXPECT_NEAR(std::fabs(double{score} - std::floor(double{score})), 0.5, 0.03);
    }
    EXPECT_GE(boundaries, 2);
    // Every person is in one bar, at the person's height.
    double length = 0;
    double longest = 0;
    for (const XmlElement& bar : Named(map.Elements, "rect", "")) {
      if (bar.Attributes.at("fill") != "#78a0be") continue;
      constexpr double kGap = 0.13;
      double persons = 0;
      for (int person = 1; person <= 24; ++person) {
        const double y = (double{umean} + double{uscale} * run.Measure(1, person) - map.Zero) / map.PerMillimetre;
        if (y > bar.Number("y") - kGap && y < bar.Number("y") + bar.Number("height") + kGap) ++persons;
      }
      EXPECT_GE(persons, 1);
      length += bar.Number("width");
      longest = std::max(longest, bar.Number("width") / persons);
    }
    EXPECT_NEAR(length, 24 * longest, 0.2);
  }
}

TEST(WrightMap, ExtremeElementsStandAtTheEnds) {
  FinishedAnalysis run = SimulatedDesign({24, 7}, 3, 11).Run();
  ASSERT_TRUE(run.Finished());
  run.A.Elements.ElementStatus[run.At(1, 5)] = ElementStatus::Maximum;
  run.A.Elements.ElementLabel[run.At(1, 5)] = "best";
  for (const auto& [uscale, yardstick] : {std::pair(1.0F, "0,0,-5,5"), {-10.0F, "0,0,-50,50"}}) {
    run.A.Settings.Uscale = uscale;
    const ReadMap map(MapOf(run, "1A", yardstick));
    EXPECT_NEAR(map.MeasureAt(map.HeightOf("best")) / double{uscale}, 5, 0.05);
  }
}

TEST(WrightMap, ShowsManyFewAndHostileElementsWithoutOverlap) {
  FinishedAnalysis run = SimulatedDesign({40, 5, 4}, 2, 12).Run();
  ASSERT_TRUE(run.Finished());
  ElementTable& elements = run.A.Elements;
  std::mt19937 random(6);
  for (const char* vertical :
       {"Y", "(1A,2N,S)(3A)", "1C,1*,2A,SL", "0,#", "1A,1A,1A,1A,1A,1A,2N,3N,2C,3*,1A,1A,1A,1A,S"}) {
    for (const char* yardstick : {"", "0,0,0,0,M", "(0,0,-1,1)", "0,0,5,5.00001", "0,0,-1E9,1E30,M"})
      ReadMap(MapOf(run, vertical, yardstick));
  }
  for (const ElementIndex element : elements.ElementNumber.all()) {
    elements.ElementMeasure[element] = element.value % 3 == 0 ? 2.0F : element.value % 5 == 0 ? kNan : 0.5F;
    elements.ElementLabel[element] = RandomBytes(random, 40);
    if (element.value % 4 == 0) elements.ElementStatus[element] = ElementStatus::Maximum;
  }
  run.A.Settings.Title = RandomBytes(random, 300);
  run.A.Facets[{2}].FacetLabel = RandomBytes(random, 100);
  for (const char* vertical : {"Y", "1A,2A,3A,S", "1N,3C"}) ReadMap(MapOf(run, vertical, ""));
  for (const ElementIndex element : elements.ElementNumber.all())
    elements.ElementStatus[element] = ElementStatus::Unobserved;
  EXPECT_NE(MapOf(run, "1A,S", "").find("Nothing to draw"), std::string::npos);
  EXPECT_EQ(MapOf(run, " n", ""), "");
}

TEST(WrightMap, AHundredThousandElementsAreCounted) {
  FinishedAnalysis run = SimulatedDesign({20, 5}, 2, 13, 0).Run();
  ASSERT_TRUE(run.Finished());
  constexpr int kMany = 100000;
  run.A.Elements.Create(kMany);
  run.A.Facets = DefaultFacets(1);
  Facet& facet = run.A.Facets[{1}];
  facet.FacetLabel = "Persons";
  facet.FacetElementCount = kMany;
  facet.FacetFirstElement = {1};
  facet.FacetLastElement = {kMany};
  std::mt19937 random(7);
  std::normal_distribution<float> measure(0, 1.5F);
  for (const ElementIndex element : run.A.Elements.ElementNumber.all()) {
    run.A.Elements.ElementNumber[element] = element.value;
    run.A.Elements.ElementMeasure[element] = measure(random);
    run.A.Elements.ElementLabel[element] = "Person " + BareText(element.value);
  }
  const std::string file = MapOf(run, "1C,1*,1A,#", "");
  EXPECT_LT(file.size(), 100000U);
  const ReadMap map(file);
  double counted = 0;
  double gathered = 0;
  for (const XmlElement& text : map.Elements) {
    if (text.Name != "text" || text.Attributes.contains("text-anchor")) continue;
    if (IsNumeric(text.Text)) counted += LeadingNumber(text.Text);
    if (!text.Text.starts_with("Person ")) continue;
    const std::size_t plus = text.Text.rfind(" +");
    gathered += static_cast<double>(std::count(text.Text.begin(), text.Text.end(), ',')) + 1;
    if (plus != std::string::npos) gathered += LeadingNumber(std::string_view(text.Text).substr(plus + 2));
  }
  EXPECT_EQ(counted, kMany);
  EXPECT_EQ(gathered, kMany);
}

}  // namespace
}  // namespace tessaly

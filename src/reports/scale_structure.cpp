#include "reports/scale_structure.h"

#include <algorithm>
#include <utility>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Columns of a bar behind the high end of the axis.
constexpr std::size_t kBarEnd = 1;
constexpr char kFree = '-';

std::size_t LineLength(const MeasureAxis& axis) {
  return kChartMargin + static_cast<std::size_t>(axis.Columns()) + 1 + kBarEnd;
}

std::size_t TickPlace(const MeasureAxis& axis, std::int32_t tick) {
  return kChartMargin + static_cast<std::size_t>(tick * axis.ColumnsPerTick);
}

std::string TickMarks(const MeasureAxis& axis) {
  std::string line(LineLength(axis), ' ');
  for (std::int32_t tick = 0; tick <= axis.Ticks; ++tick) line[TickPlace(axis, tick)] = '+';
  return line;
}

/// One category in a bar: where its zone begins (not for the first one), and its centre.
struct Zone {
  std::string Text;
  float Start;
  float Centre;
  /// Lowest or highest category: its zone has no end.
  bool Outer;
};

/// A bar being drawn.
class Bar {
 public:
  Bar(std::string_view word, const MeasureAxis& axis)
      : axis_(axis),
        line_(std::string(word) + ":<" + std::string(static_cast<std::size_t>(axis.Columns()) + 1, kFree) + ">") {}

  /// The line of these zones, from the low end of the axis on: their numbers at either side of each boundary and at the
  /// ends of the bar, "^" at their centres, all as far as there is room.
  std::string Draw(const std::vector<Zone>& zones) {
    for (std::size_t at = 1; at < zones.size(); ++at) {
      const std::int64_t boundary = PlaceOf(zones[at].Start);
      PutIfFree(zones[at - 1].Text, boundary - Length(zones[at - 1].Text));
      Put(zones[at].Text, boundary);
    }
    for (const Zone& zone : zones) {
      if (zone.Outer) {
        PutIfFree("(^)", PlaceOf(zone.Centre) - 1);
      } else {
        PutIfFree("^", PlaceOf(zone.Centre));
      }
    }
    PutIfFree(zones.back().Text, End() - Length(zones.back().Text));
    PutIfFree(zones.front().Text, kStart);
    return line_;
  }

 private:
  static constexpr auto kStart = static_cast<std::int64_t>(kChartMargin);

  static std::int64_t Length(std::string_view text) { return static_cast<std::int64_t>(text.size()); }
  std::int64_t End() const { return Length(line_) - static_cast<std::int64_t>(kBarEnd); }
  std::int64_t PlaceOf(float measure) const { return kStart + axis_.Column(measure); }

  bool Holds(std::string_view text, std::int64_t at) const { return at >= kStart && at + Length(text) <= End(); }

  void Put(std::string_view text, std::int64_t at) {
    if (Holds(text, at)) line_.replace(static_cast<std::size_t>(at), text.size(), text);
  }
  void PutIfFree(std::string_view text, std::int64_t at) {
    if (!Holds(text, at)) return;
    const std::string_view cells = std::string_view(line_).substr(static_cast<std::size_t>(at), text.size());
    if (cells.find_first_not_of(kFree) == std::string_view::npos) Put(text, at);
  }

  const MeasureAxis& axis_;
  std::string line_;
};

/// The three pictures of one scale.
class Structure {
 public:
  Structure(const ReportedScale& scale, const std::vector<CategoryMeasure>& places) : scale_(scale), places_(places) {}

  std::vector<Zone> Modes() const {
    return Zones([](const CategoryMeasure& place,
                    bool outer) { return std::pair(place.Modal, outer ? place.ThurstoneMiddle : place.AtCategory); },
                 true);
  }
  std::vector<Zone> Medians() const {
    return Zones([](const CategoryMeasure& place, bool) { return std::pair(place.Thurstone, place.ThurstoneMiddle); });
  }
  std::vector<Zone> Means() const {
    return Zones([](const CategoryMeasure& place, bool) { return std::pair(place.AtHalf, place.AtCategory); });
  }

 private:
  /// The categories, or the modal ones alone, in the order in which they stand on the axis. `startAndCentre` tells the
  /// places of one.
  template <class StartAndCentre>
  std::vector<Zone> Zones(StartAndCentre startAndCentre, bool modalOnly = false) const {
    std::vector<Zone> zones;
    for (std::size_t k = 0; k < places_.size(); ++k) {
      if (modalOnly && !places_[k].IsModal) continue;
      const bool outer = k == 0 || k + 1 == places_.size();
      const auto [start, centre] = startAndCentre(places_[k], outer);
      zones.push_back({BareText(scale_.RawCategory[k]), start, centre, outer});
    }
    if (places_.front().AtCategory > places_.back().AtCategory) TurnRound(zones);
    return zones;
  }

  /// User units that run against the categories: what was the upper end of a zone is where it begins.
  static void TurnRound(std::vector<Zone>& zones) {
    std::reverse(zones.begin(), zones.end());
    for (std::size_t at = zones.size() - 1; at > 0; --at) zones[at].Start = zones[at - 1].Start;
  }

  const ReportedScale& scale_;
  const std::vector<CategoryMeasure>& places_;
};

std::string Heading(const RatingScaleDefinition* definition) {
  std::string heading = "Scale structure";
  if (definition == nullptr || definition->Name.empty()) return heading;
  heading += " for \"" + UpperAscii(definition->Name) + "\"";
  if (!definition->Subtitle.empty()) heading += " (" + UpperAscii(definition->Subtitle) + ")";
  return heading;
}

}  // namespace

std::string TickNumbers(const MeasureAxis& axis, std::string_view label) {
  std::string line = CutOrPad(label, static_cast<int>(LineLength(axis)));
  std::size_t free = 0;
  for (std::int32_t tick = 0; tick <= axis.Ticks; ++tick) {
    const std::string whole = BareText(axis.TickValue(tick));
    const std::size_t point = TickPlace(axis, tick);
    if (point < free + whole.size()) continue;
    const std::string number = whole + ".0";
    line.replace(point - whole.size(), number.size(), number);
    // A blank stands between two numbers.
    free = point - whole.size() + number.size() + 1;
  }
  return line;
}

std::vector<std::string> ScaleStructure(const ReportedScale& scale, const std::vector<CategoryMeasure>& places,
                                        const MeasureAxis& axis) {
  const Structure structure(scale, places);
  const std::string numbers = TickNumbers(axis, "Measr:");
  const std::string marks = TickMarks(axis);
  return {"",    Heading(scale.Definition),
          "",    numbers,
          marks, Bar("  Mode", axis).Draw(structure.Modes()),
          "",    Bar("Median", axis).Draw(structure.Medians()),
          "",    Bar("  Mean", axis).Draw(structure.Means()),
          marks, numbers};
}

}  // namespace tessaly

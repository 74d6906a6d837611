#include "graphs/curve_lines.h"

#include <string>

#include "support/number_text.h"

namespace tessaly {

namespace {

std::string Quoted(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + "\"";
}

}  // namespace

void WriteCurveHeading(TextOutput& file) {
  file.WriteLine("scale,series,x,y");
}

void WriteCurveLines(const CurvePlot& plot, TextOutput& file) {
  for (const Series& series : plot.Curves) {
    const std::string head = BareText(plot.Scale) + "," + Quoted(series.Name) + ",";
    for (const auto& point : series.Points)
      file.WriteLine(head + (point ? PlainNumber(point->X) + "," + PlainNumber(point->Y) : std::string(",")));
  }
}

}  // namespace tessaly

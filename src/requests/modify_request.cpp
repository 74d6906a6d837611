#include "requests/modify_request.h"

#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::int32_t kMostDecimals = 9;
constexpr std::int32_t kMostLines = 1'000'000'000;

/// The facets that the runs of digits of `text` name; other numbers are left out.
std::vector<FacetNumber> FacetsIn(std::string_view text, const FacetTable& facets) {
  std::vector<FacetNumber> found;
  while (!text.empty()) {
    std::size_t digits = 0;
    while (digits < text.size() && IsDigit(text[digits])) ++digits;
    const IntegerReading number = ParseInt(text.substr(0, digits), facets.size());
    if (digits > 0 && number.Good() && number.Value >= 1) found.push_back({number.Value});
    text.remove_prefix(std::max<std::size_t>(digits, 1));
  }
  return found;
}

void Orient(std::string_view list, bool positive, FacetTable& facets) {
  for (const FacetNumber facet : FacetsIn(list, facets)) facets[facet].ShownPositive = positive;
}

/// Signs that do not say how the measures came about are better not taken for it.
void TellOrientation(const FacetTable& facets, Console& console) {
  for (const Facet& facet : facets) {
    if (facet.ShowsPositive() == facet.FacetPositive) continue;
    console.ShowMessage("Facet " + facet.FacetLabel + " is shown as " +
                        (facet.ShowsPositive() ? "positively" : "negatively") +
                        "-oriented; its measures are as they were estimated");
  }
}

void ReadReportSettings(const RequestOptions& options, Settings& settings) {
  if (const auto title = options.Text("title")) settings.Title = settings.GivenTitle = *title;
  if (const auto lines = options.Whole("juxtapose", -kMostLines, kMostLines))
    settings.JuxtaposeLines = std::abs(*lines);
  if (const auto umean = options.Number("umean")) settings.Umean = *umean;
  if (const auto uscale = options.Number("uscale"); uscale && *uscale > 0) settings.Uscale = *uscale;
  if (const auto decimals = options.Whole("udecim", -kMostDecimals, kMostDecimals))
    settings.Udecimals = std::abs(*decimals);
  if (const auto form = options.Choice("ascii", {"yes", "no", "webpage"})) settings.AsciiOption = "YNW"[*form];
  settings.BoxShow = options.YesNo("box", settings.BoxShow);
  settings.LeftHand = options.YesNo("lefthand", settings.LeftHand);
  settings.TotalScore = options.YesNo("totalscore", settings.TotalScore);
  if (const auto errors = options.Choice("se", {"real", "model"})) settings.RealSE = *errors == 0;
}

}  // namespace

void RequestModify(SessionState& session, const RequestOptions& options) {
  Settings modified = session.A.Settings;
  ReadReportSettings(options, modified);
  if (session.Empirical) session.Empirical->RescaleEmpirical(session.A.Settings.Uscale, modified.Uscale);
  session.Errors.Show(modified.RealSE, session.A.Elements);
  Orient(options.Text("positive").value_or(""), true, session.A.Facets);
  Orient(options.Text("negative").value_or(""), false, session.A.Facets);
  TellOrientation(session.A.Facets, session.Host.console);
  session.A.Settings = std::move(modified);
}

}  // namespace tessaly

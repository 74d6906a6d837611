#include "requests/table_requests.h"

#include <algorithm>
#include <string>
#include <vector>

#include "estimate/unexpected_list.h"
#include "reports/arrangement.h"
#include "reports/facet_barcharts.h"
#include "reports/table4_unexpected.h"
#include "reports/table5_data_fit.h"
#include "reports/table6_rulers.h"
#include "reports/table7_measurements.h"
#include "reports/table8_categories.h"
#include "requests/arrange_option.h"
#include "requests/request_output.h"
#include "requests/ruler_options.h"
#include "support/bytes.h"
#include "support/failure.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::int32_t kMostListed = 10'000'000;

void ReadUnobserved(const RequestOptions& options, Settings& settings) {
  settings.OmitUnobserved = !options.YesNo("unobserved", !settings.OmitUnobserved);
}

/// The items of `Arrange=` that apply to `facet`, for it alone.
std::vector<std::string> CodesOf(FacetNumber facet, const std::string& arrange) {
  std::vector<std::string> codes;
  for (const Arrangement& item : Arrangements(arrange)) {
    if (item.AppliesTo(facet) && !item.Letters.empty()) codes.push_back(item.Letters);
  }
  return codes;
}

std::string Table7Arrangement(const RequestOptions& options, const SessionState& session) {
  const std::string& arrange = session.A.Settings.ArrangeSpec;
  const std::vector<FacetNumber> facets = options.FacetsOrAll("facets");
  if (facets.empty()) throw Refusal{"Table 7: Please check Facet"};
  if (!GivesOrder(options) && arrange.empty()) throw Refusal{"Table 7: Please select Measure/Number/... order"};
  if (!GivesOrder(options) && !options.Given("facets")) return arrange;
  std::vector<std::string> given;
  if (GivesOrder(options)) given = OrderCodes("Table 7", options);
  std::vector<std::string> items;
  for (const FacetNumber facet : facets) {
    for (const std::string& code : given.empty() ? CodesOf(facet, arrange) : given)
      items.push_back(BareText(facet.value) + code);
  }
  if (items.empty()) throw Refusal{"Table 7: Please select Measure/Number/... order"};
  return Joined(items, ",");
}

std::string Table8Selection(const RequestOptions& options, const SessionState& session) {
  const std::string& now = session.A.Settings.T8NBC;
  const std::size_t plus = std::min(now.find('+'), now.size());
  const std::string lettersNow = now.substr(0, plus);
  std::string letters;
  const auto part = [&](std::string_view name, char letter) {
    if (options.YesNo(name, lettersNow.find(letter) != std::string::npos)) letters += letter;
  };
  part("numbers", 'N');
  part("barcharts", 'B');
  part("curves", 'C');
  std::string selection = now.substr(plus);
  if (const auto scales = options.Scales("scales")) {
    if (scales->empty()) throw Refusal{"Table 8: Please choose structure"};
    std::vector<std::string> numbers;
    for (const std::int32_t scale : *scales) numbers.push_back(BareText(scale));
    selection = "+" + Joined(numbers, ",");
  }
  if (letters.empty()) throw Refusal{"Table 8: Please select numbers/barcharts/curves"};
  return letters + selection;
}

}  // namespace

void RequestTable4(SessionState& session, const RequestOptions& options) {
  Settings& settings = session.A.Settings;
  if (const auto least = options.Number("unexpected")) settings.UnexpectedMin = *least;
  if (const auto sort = options.Text("usort")) settings.USort = *sort;
  if (const auto most = options.Whole("t4maximum", 0, kMostListed)) settings.T4Max = *most;
  const RequestOutput output(options, session);
  if (settings.T4Max == 0) throw Refusal{"Table 4 not output. T4maximum = 0"};
  if (!WantsUnexpectedTables(settings))
    throw Refusal{"Table 4: usort=" + QuotedLine(settings.USort) + " asks for no table. Please give an order"};
  output.Tables("T4", "Table 4 (" + settings.USort + ")",
                [&](ReportWriter& report, RunControl& control, Console& console) {
                  const UnexpectedList& own = session.Run.Unexpected;
                  if (own.Least() == settings.UnexpectedMin && own.Most() == settings.T4Max)
                    return UnexpectedTables(own, session.A, report, control, console);
                  UnexpectedTables(CollectUnexpected(settings.UnexpectedMin, settings.T4Max, session.A,
                                                     session.Run.Store, session.Run.Kernel, control, console),
                                   session.A, report, control, console);
                });
}

void RequestTable5(SessionState& session, const RequestOptions& options) {
  RequestOutput(options, session).Tables("T5", "Table 5", [&](ReportWriter& report, RunControl&, Console& console) {
    MeasurableDataSummary(session.Run.Fit, session.A.Settings, report, console);
  });
}

void RequestTable6(SessionState& session, const RequestOptions& options) {
  Settings& settings = session.A.Settings;
  ReadRulerOptions(options, settings);
  ReadUnobserved(options, settings);
  if (const auto charts = options.Choice("barchart", {"no", "yes", "all"}))
    settings.BarchartsOption = static_cast<int>(*charts);
  if (const auto subsets = options.YesNo("subsetreport"))
    settings.SubsetDetection = *subsets ? SubsetReport::Report : SubsetReport::Detect;
  const RequestOutput output(options, session);
  output.Tables("T6", "Table 6 (" + settings.VerticalSpec + ")",
                [&](ReportWriter& report, RunControl&, Console& console) {
                  ResponseKernel& kernel = session.Run.Kernel;
                  VerticalRulers(settings.VerticalSpec, settings.YardstickSpec, session.A, kernel, report, console);
                  SubsetRulers(settings.VerticalSpec, settings.YardstickSpec, session.A, kernel, report, console);
                  FacetSummaries(session.A, report, console);
                });
}

void RequestTable7(SessionState& session, const RequestOptions& options) {
  ReadUnobserved(options, session.A.Settings);
  const std::string arrange = Table7Arrangement(options, session);
  RequestOutput(options, session)
      .Tables("T7", "Table 7 (" + arrange + ")", [&](ReportWriter& report, RunControl& control, Console& console) {
        MeasurementReport(arrange, session.A, report, control, console);
      });
}

void RequestTable8(SessionState& session, const RequestOptions& options) {
  const std::string selection = Table8Selection(options, session);
  RequestOutput(options, session)
      .Tables("T8", "Table 8 (" + selection + ")", [&](ReportWriter& report, RunControl&, Console& console) {
        CategoryReport(selection, session.A, session.Run.Kernel, report, console);
      });
}

}  // namespace tessaly

#include "reports/table14_bias_pairs.h"

#include <cstring>
#include <optional>

#include "reports/arrangement.h"
#include "reports/bias_heading.h"
#include "reports/bias_order.h"
#include "reports/bias_pair_rows.h"
#include "reports/table_frame.h"
#include "support/bytes.h"
#include "support/number_text.h"
#include "support/record_sort.h"
#include "support/sort_keys.h"
#include "support/work_file.h"

namespace tessaly {

namespace {

constexpr std::int64_t kPairsBetweenPolls = 1000;
constexpr std::int64_t kProgressMarks = 50;
/// Above this count of pairs the user is told that there are at least so many.
constexpr std::int64_t kManyPairs = 1000;

/// The facet in whose element pairs differ, and the others.
std::string PairsText(const BiasTerms& terms, const FacetTable& facets, std::size_t position, std::int64_t count) {
  const auto facet = [&](std::size_t at) {
    const FacetNumber number = terms.Positions()[at].BiasFacet;
    return GeneralText(number.value) + ". " + facets[number].FacetLabel;
  };
  std::string others;
  for (std::size_t at = 0; at < terms.Positions().size(); ++at)
    if (at != position) others += (others.empty() ? "" : ", ") + facet(at);
  return (count > kManyPairs ? " There are at least" : " There are") + GeneralText(count) + " pairwise terms for" +
         facet(position) + " (with" + others + ")";
}

/// Makes the keys by which pairs are put in order.
class PairKeys {
 public:
  PairKeys(const BiasTerms& terms, const Analysis& analysis, std::size_t position, std::string_view letters)
      : terms_(terms), elements_(analysis.Elements), position_(position), letters_(letters) {
    if (letters.find_first_of("Aa") != std::string_view::npos)
      labels_.emplace(terms, analysis.Facets, analysis.Elements);
  }

  /// Bytes of each key.
  std::size_t Size() const {
    std::string key;
    AppendTo(key, terms_.Terms.first(), terms_.Terms.first(), {});
    return key.size();
  }

  void AppendTo(std::string& key, TermIndex first, TermIndex second, const BiasContrast& contrast) const {
    for (const char letter : letters_) {
      const bool ascending = UpperAscii(letter) == letter;
      const float sign = ascending ? 1.0F : -1.0F;
      switch (UpperAscii(letter)) {
        case 'N':
          AppendElements(key, first, second, ascending, [&](std::size_t, ElementIndex element) {
            return static_cast<std::uint32_t>(elements_.ElementNumber[element]);
          });
          break;
        case 'A':
          AppendElements(key, first, second, ascending,
                         [&](std::size_t position, ElementIndex element) { return labels_->Of(position, element); });
          break;
        case 'M':
          AppendKey(key, sign * contrast.Difference);
          break;
        case 'F':
          AppendKey(key, sign * contrast.T);
          break;
        default:
          break;
      }
    }
  }

 private:
  /// What `place` gives of the shared elements, then of the two others.
  template <class Place>
  void AppendElements(std::string& key, TermIndex first, TermIndex second, bool ascending, Place place) const {
    const auto append = [&](TermIndex term, std::size_t position) {
      const std::uint32_t value = place(position, terms_.Element(term, position));
      AppendKey(key, ascending ? value : ~value);
    };
    for (std::size_t position = 0; position < terms_.Positions().size(); ++position)
      if (position != position_) append(second, position);
    append(first, position_);
    append(second, position_);
  }

  const BiasTerms& terms_;
  const ElementTable& elements_;
  /// Only if letter A asks for them.
  std::optional<LabelRanks> labels_;
  std::size_t position_;
  std::string_view letters_;
};

/// The tables of the pairs that differ in one facet.
class PairTables {
 public:
  PairTables(const std::string& name, const BiasTerms& terms, const Analysis& analysis, std::size_t position,
             const BiasPairGroups& groups, ReportWriter& report, RunControl& control, Console& console)
      : name_(name),
        terms_(terms),
        analysis_(analysis),
        position_(position),
        groups_(groups),
        report_(report),
        control_(control),
        console_(console),
        rows_(terms, analysis, position) {}

  /// Whether the user let it come to its end.
  bool Write(const Arrangement& arrangement) {
    TableFrame frame(report_, analysis_.Settings, console_);
    const PairKeys keys(terms_, analysis_, position_, arrangement.Letters);
    RecordSorter sorter(TemporaryFolderOr(analysis_.Settings.WorkFolder), keys.Size() + sizeof(Pair), keys.Size());
    if (!Collect(keys, sorter)) return false;
    if (sorter.Count() == 0) {
      report_.WriteTableLine("Table 14. Nothing to report");
      return true;
    }
    console_.ShowProgress("Sorting...", false);
    sorter.Sort([&] { control_.Poll(); });
    console_.ShowProgress("Sorted", true);
    StartTable(arrangement, frame);
    return WriteRows(frame, keys.Size(), sorter);
  }

  std::int32_t SubTables() const { return subTables_; }

 private:
  struct Pair {
    TermIndex First;
    TermIndex Second;
  };

  bool Collect(const PairKeys& keys, RecordSorter& sorter) {
    std::int64_t met = 0;
    std::int64_t marks = 0;
    std::string record;
    const std::int64_t count = groups_.PairCount();
    console_.ShowProgress(">", false);
    for (std::size_t group = 0; group < groups_.GroupCount(); ++group)
      for (const TermIndex* first = groups_.begin(group); first != groups_.end(group); ++first)
        for (const TermIndex* second = first + 1; second != groups_.end(group); ++second) {
          if (++met % kPairsBetweenPolls == 0) {
            control_.Poll();
            if (control_.FastForward) return false;
            for (; marks < met * kProgressMarks / count; ++marks) console_.ShowProgress("=", false);
          }
          const BiasContrast contrast = rows_.Contrasts().Of(*first, *second);
          if (!analysis_.Settings.BiasSelected(contrast.Difference, contrast.T)) continue;
          record.clear();
          keys.AppendTo(record, *first, *second, contrast);
          const Pair pair{*first, *second};
          record.append(reinterpret_cast<const char*>(&pair), sizeof pair);
          sorter.Add(record.data());
        }
    console_.ShowProgress("", true);
    return true;
  }

  void StartTable(const Arrangement& arrangement, TableFrame& frame) {
    frame.StartTable("Table 14." + name_ + "." + BareText(++subTables_) + "." +
                     BareText(terms_.Positions()[position_].BiasFacet.value) +
                     "  Bias/Interaction Pairwise Report (arranged by " + arrangement.Text + ")");
    WriteBiasHeading(terms_, report_);
  }

  bool WriteRows(TableFrame& frame, std::size_t keyBytes, RecordSorter& sorter) {
    report_.WriteTableLine(BoxLine(rows_.RuleTemplate(), RuleKind::Top));
    report_.WriteTableLine("");
    for (const std::string& line : rows_.HeadLines()) report_.WriteTableLine(line);
    report_.WriteTableLine(BoxLine(rows_.RuleTemplate(), RuleKind::Middle));
    while (const char* const record = control_.FastForward ? nullptr : sorter.Next()) {
      Pair pair;
      std::memcpy(&pair, record + keyBytes, sizeof pair);
      frame.WriteRow(rows_.Line(pair.First, pair.Second));
    }
    report_.WriteTableLine(BoxLine(rows_.RuleTemplate(), RuleKind::Bottom));
    return !control_.FastForward;
  }

  const std::string& name_;
  const BiasTerms& terms_;
  const Analysis& analysis_;
  std::size_t position_;
  const BiasPairGroups& groups_;
  ReportWriter& report_;
  RunControl& control_;
  Console& console_;
  BiasPairRows rows_;
  std::int32_t subTables_ = 0;
};

}  // namespace

void BiasPairwise(std::int32_t run, std::int32_t subTables, const std::string& arrange, const BiasTerms& terms,
                  const Analysis& analysis, ReportWriter& report, RunControl& control, Console& console) {
  control.FastForward = false;
  console.ShowMessage("Press Ctrl+F to exit from Table 14 bias/interaction reporting.");
  const std::string name = BareText(run);
  for (std::size_t position = 0; position < terms.Positions().size(); ++position) {
    const BiasPairGroups groups(terms, position);
    const std::int64_t count = groups.PairCount();
    const std::string text =
        "Table 14." + name + "." + BareText(subTables) + ".0" + PairsText(terms, analysis.Facets, position, count);
    if (count == 0) {
      console.ShowWarning(text);
      continue;
    }
    console.ShowMessage(text);
    PairTables tables(name, terms, analysis, position, groups, report, control, console);
    for (const Arrangement& arrangement : ArrangementsOfAll(arrange)) {
      if (tables.Write(arrangement)) continue;
      control.FastForward = false;
      console.ShowWarning("< Cancelled");
      return;
    }
    subTables = tables.SubTables();
  }
}

}  // namespace tessaly

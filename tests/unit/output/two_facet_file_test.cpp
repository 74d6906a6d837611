#include "output/two_facet_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "estimate/prepare_scales.h"
#include "unit/output/stored_data.h"

namespace tessaly {
namespace {

constexpr std::string_view kLabels =
    "Labels=\n1,Persons\n1,Ann\n2,Bo\n10,Cem\n*\n2,Items\n1,Sing\n2,Dance\n*\n3,Raters\n3,X\n4,Yo\n*\n";

/// Three facets with measures and one scale, as the estimation leaves them.
struct Matrix : StoredData {
  explicit Matrix(std::string_view data, std::string_view settings = "Models=?,?,?,R12")
      : StoredData("Title=^A test\nFacets=3\n" + std::string(settings) + "\n" + std::string(kLabels), data) {
    PrepareScales(A.Models, A.Settings, A.Scales);
    A.Scales.ScaleOrder = {{0}};
    int next = 0;
    for (const float measure : {0.5F, -0.5F, 1.0F, 0.25F, -0.25F, 2.0F, -2.0F})
      A.Elements.ElementMeasure[{++next}] = measure;
    for (const auto& [facet, number, label] : {std::tuple{1, 2, 3}, {2, 1, 5}, {3, 1, 2}}) {
      A.Facets[{facet}].FacetNumberWidth = number;
      A.Facets[{facet}].FacetLabelWidth = label;
    }
  }

  std::string File(const ZandrelRequest& request) {
    User nobody;
    RunControl control(nobody);
    return TextWritten([&](TextOutput& output) { WriteZandrelFile(request, A, *Store, control, Said, output); });
  }
};

/// The text from `from` up to `to`.
std::string Part(const std::string& text, const std::string& from, const std::string& to) {
  const std::size_t start = text.find(from);
  EXPECT_NE(start, std::string::npos) << from;
  return start == std::string::npos ? text : text.substr(start, text.find(to, start) - start);
}

constexpr std::string_view kRatings = "10,1,3,12\n1,2,4,7\n1,1,3,5\n1,1,3,6\n1,1,4,8\n10,1,4,9\n0,1,3,11\n";

TEST(TwoFacetFile, WholeFile) {
  // Ann sings for X twice; nobody dances for X; Bo is in no data.
  Matrix matrix(kRatings, "Umean=50,10,1\nModels=?,?,?,R12");
  ZandrelRequest request{{{1}}, {{2}, {3}}, RepeatRule::First, true, true, true, true};
  const std::string text = matrix.File(request);
  std::string scale = "safile = *  ; rating structure anchor values\n";
  for (int category = 0; category <= 12; ++category) scale += BareText(category) + " .00\n";
  EXPECT_EQ(text,
            "Title = A test 2020-02-29 12:00:00\n"
            "item = Items/Raters  ; column identification\n"
            "person = Persons  ; row identification\n"
            "xwide = 2  ; width of datapoint\n"
            "codes = \" 5 6 7 8 9101112\"  ; valid data codes\n"
            "; first data point in cell used\n"
            "ni = 3  ; number of data columns\n"
            "item1 = 1  ; starting column of data\n"
            "name1 = 8  ; start of row labels\n"
            "@pf1=$S1W6 ; 1 Persons\n"
            "namelen = 6 ; row label length\n"
            "umean = 50  ; user mean measure\n"
            "uscale = 10  ; user logit scaling conversion\n"
            "udecim = 1  ; user logit decimal places\n" +
                scale +
                "*\n"
                // 50 + 10 (.25 + 2), 50 + 10 (.25 - 2), 50 + 10 (-.25 - 2); 50 + 10 (.5), 50 + 10 (1).
                "iafile = *  ; item-column anchor values\n"
                "1 72.50 ; 1 Sing  + 3 X\n"
                "2 32.50 ; 1 Sing  + 4 Yo\n"
                "3 27.50 ; 2 Dance + 4 Yo\n"
                "*\n"
                "pafile = *  ; person-row anchor values\n"
                "1 55.00 ;  1 Ann\n"
                "2 60.00 ; 10 Cem\n"
                "*\n"
                "@if2=$S1W7 ; 2 Items\n"
                "@if3=$S11W4 ; 3 Raters\n"
                "&End\n"
                "1 Sing  - 3 X   ; item-column labels\n"
                "1 Sing  - 4 Yo\n"
                "2 Dance - 4 Yo\n"
                "END LABELS\n"
                " 5 8 7  1 Ann  ; row data + label\n"
                "12 9 . 10 Cem\n");

  // A side with the facets the other way round, no data, nothing known about repeats.
  const std::string turned = matrix.File({{{3}, {1}}, {{2}}, RepeatRule::Unstated, false, false, false, false});
  EXPECT_EQ(Part(turned, "@pf", "umean"),
            "@pf3=$S1W4 ; 3 Raters\n@pf1=$S8W6 ; 1 Persons\nnamelen = 13 ; row label length\n");
  EXPECT_EQ(Part(turned, "udecim", "none"),
            "udecim = 1  ; user logit decimal places\n@if2=$S1W7 ; 2 Items\n&End\n1 Sing   ; item-column labels\n2 "
            "Dance\nEND LABELS\n");
  EXPECT_EQ(turned.find("data point in cell"), std::string::npos);
}

TEST(TwoFacetFile, RepeatedCells) {
  const std::map<RepeatRule, std::string> cells = {
      {RepeatRule::Unstated, " 5 7  1 Ann  ; row data + label\n12 . 10 Cem\n"},
      {RepeatRule::First, " 5 7  1 Ann  ; row data + label\n12 . 10 Cem\n"},
      {RepeatRule::Last, "87  1 Ann  ; row data + label\n9. 10 Cem\n"},
      {RepeatRule::Sum, "19 7  1 Ann  ; row data + label\n21 . 10 Cem\n"}};
  Matrix matrix(kRatings, "Models=?,?,?,S\nRating scale=S,R12\n0,None\n5,Some,,,5+five\n7,\n*");
  for (const auto& [rule, expected] : cells) {
    const std::string text = matrix.File({{{1}}, {{2}}, rule, true, false, false, true});
    EXPECT_EQ(Part(text, "END LABELS\n", "none").substr(11), expected);
    // Sums are no categories.
    const bool sum = rule == RepeatRule::Sum;
    EXPECT_EQ(text.find("clfile = *  ; category labels\n0 None\n5 Some (5+five)\n*\n") == std::string::npos, sum)
        << text;
    EXPECT_EQ(text.find("safile") == std::string::npos, sum);
  }
  std::string data;
  for (int i = 0; i < 130; ++i) data += "1,1,3,255\n";
  Matrix large(data, "Models=?,?,?,R255");
  try {
    large.File({{{1}}, {{2}}, RepeatRule::Sum});
    ADD_FAILURE() << "130 times 255 is too much";
  } catch (const Halt& halt) {
    EXPECT_NE(FailureText(halt, {}).find("add up to more than 32766"), std::string::npos);
  }
}

// Thresholds whose rating scale gives the probabilities of the model.
TEST(TwoFacetFile, ScaleAnchors) {
  Matrix kept(kRatings, "Uscale=2\nModels=?,?,?,R12K");
  ScaleTables& scales = kept.A.Scales;
  scales.Scales[{0}].ScaleTopCategory = 4;
  for (int raw = 0; raw <= 12; ++raw)
    scales.CategoryOrdinal({0}, raw) = static_cast<std::int16_t>(raw >= 5 && raw <= 9 ? raw - 5 : -1);
  for (const auto& [ordinal, step] : {std::pair{1, -1.0F}, {2, 0.0F}, {3, 0.0F}, {4, 1.0F}})
    scales.CategoryStep({0}, ordinal) = step;
  scales.CategoryAnchor({0}, 2) = scales.CategoryAnchor({0}, 3) = CategoryAnchor::KeptUnobserved;
  EXPECT_EQ(Part(kept.File({{{1}}, {{2}}, RepeatRule::First, true}), "safile", "@if"),
            "safile = *  ; rating structure anchor values\n5 .00\n6 -2.00\n7 80.00\n8 .00\n9 -78.00\n*\n");

  // Three trials: ln(1/3), ln(2/2), ln(3/1); counts: ln k.
  Matrix trials("1,1,3,2\n1,2,3,3\n", "Models=?,?,?,B3");
  EXPECT_EQ(Part(trials.File({{{1}}, {{2}}, RepeatRule::First, true}), "safile", "@if"),
            "safile = *  ; rating structure anchor values\n0 .00\n1 -1.10\n2 .00\n3 1.10\n*\n");
  Matrix counts("1,1,3,2\n1,2,3,3\n", "Models=?,?,?,P");
  EXPECT_EQ(Part(counts.File({{{1}}, {{2}}, RepeatRule::First, true}), "safile", "@if"),
            "safile = *  ; rating structure anchor values\n0 .00\n1 .00\n2 .69\n3 1.10\n*\n");
  counts.A.Scales.ScaleOrder.clear();
  const std::string none = counts.File({{{1}}, {{2}}, RepeatRule::First, true});
  EXPECT_NE(none.find("groups = 0  ; allow each item to define its own rating scale\n@if"), std::string::npos);
}

TEST(TwoFacetFile, EmptyAndTooLarge) {
  Matrix empty("0,1,3,5\n");
  EXPECT_EQ(Part(empty.File({{{1}}, {{2}}}), "xwide", "item1"),
            "xwide = 1  ; width of datapoint\ncodes = \"0\"  ; valid data codes\nni = 0  ; number of data columns\n");

  std::string data;
  for (int element = 1; element <= 33000; ++element) data += BareText(element) + "," + BareText(element) + ",1\n";
  StoredData large("Facets=2\nLabels=\n1,A\n1-33000\n*\n2,B\n1-33000\n*\n", data);
  User nobody;
  RunControl control(nobody);
  EXPECT_EQ(TextWritten([&](TextOutput& output) {
              try {
                WriteZandrelFile({{{1}}, {{2}}}, large.A, *large.Store, control, large.Said, output);
                ADD_FAILURE() << "33,000 times 33,000 is above 2^30";
              } catch (const Halt& halt) {
                EXPECT_EQ(FailureText(halt, {}),
                          "Incompatible file usage: a matrix of 33000 rows and 33000 columns is too large. Please "
                          "choose other facets for rows and columns");
              }
            }),
            "");
}

}  // namespace
}  // namespace tessaly

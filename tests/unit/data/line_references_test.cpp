#include "data/line_references.h"

#include <gtest/gtest.h>

#include "support/failure.h"
#include "unit/data/data_run.h"

namespace tessaly {
namespace {

/// `settings` for persons "a1" to "c3" in groups 5 to 7, and items 1 to 3.
std::string Derivable(std::string_view settings) {
  return "Facets=2\n" + std::string(settings) +
         "\nModels=?,?,R9\nLabels=\n1,Persons,G\n1,a1,,5\n2,b2,,6\n3,cx,,7\n4,d9,,8\n*\n2,Items\n1-3\n5,fifth\n*\n";
}

TEST(LineReferences, RangesGiveAResponseToEachElement) {
  const std::string models = ThreeFacets("Models=?,?,?,R9");
  EXPECT_EQ(DataRun(models, "1, 1-3, 11, 2, 1, 0\n").Observations, (Texts{"1,1,11=2", "1,2,11=1", "1,3,11=0"}));
  EXPECT_EQ(DataRun(models, "1, 3_1, 11, 2, 1, 0\n").Observations, (Texts{"1,3,11=2", "1,2,11=1", "1,1,11=0"}));
  EXPECT_EQ(DataRun(models, "1, 2-2, 11, 2\n").Observations, Texts{"1,2,11=2"}) << "not a range";
  EXPECT_EQ(DataRun(ThreeFacets("Models=?,?,?,R9\nDvalues=2,1-3"), "1,11,2,,4\n").Observations,
            (Texts{"1,1,11=2", "1,3,11=4"}));
  EXPECT_EQ(DataRun(ThreeFacets("Models=?,X,?,R9"), "1,7-9,11,2,1,0\n1,x-y,11,5\n").Observations,
            (Texts{"1,0,11=2", "1,0,11=1", "1,0,11=0", "1,0,11=5"}))
      << "a column that no model uses can still carry a range";

  const DataRun unknown(models, "1,11-8,11,1,2,3,4\n");
  EXPECT_EQ(unknown.Observations, (Texts{"1,9,11=3", "1,8,11=4"}));
  EXPECT_EQ(unknown.A.Unspecified, (std::vector<UnspecifiedElement>{{2, "10", 10}, {2, "11", 11}}));
  EXPECT_EQ(unknown.A.Counters.UnspecifiedCount, 2);
}

TEST(LineReferences, LabelsAndNumbersAreTriedAsToldForEachFacet) {
  const auto observations = [](std::string_view delements, std::string_view data) {
    return DataRun(ThreeFacets("Models=?,?,?,R9\nDelements=" + std::string(delements)), data).Observations;
  };
  EXPECT_EQ(observations("1N,2N,L", "1,1,Bo,2\n1,1,A,3\n1,1,11,4\n"), (Texts{"1,1,13=2", "1,1,11=3"}))
      << "labels may be cut short; a number is no label here";
  EXPECT_EQ(observations("NL", "1,1,13,2\n1,1,Ann,3\n1,1,'Bo',4\n"), (Texts{"1,1,13=2", "1,1,11=3", "1,1,13=4"}));
  EXPECT_EQ(observations("LN", "1,1,11-13,2,3,4\n"), (Texts{"1,1,11=2", "1,1,13=4"}));

  const DataRun unknown(ThreeFacets("Models=?,?,?,R9\nDelements=1N,2LN,3L"), "1,20,Cy,2\n1,x,Ann,2\n1,1,12,2\n");
  EXPECT_EQ(unknown.A.Unspecified,
            (std::vector<UnspecifiedElement>{{2, "20", 20}, {2, "x", -1}, {3, "", 12}, {3, "Cy", -1}}));
  EXPECT_EQ(unknown.Said.Warnings[1], "Processed: 1, 20, Cy (?),  2");
}

TEST(LineReferences, ElementsCanStandForOthersOrForNone) {
  const std::string labels =
      "Facets=2\nNull=9\nDelements=NL\nModels=?,?,R9\nLabels=\n1,P\n1-2\n3,three,,,,1\n4,four,,,,9\n9,nobody\n*\n2,"
      "I\n1\n*\n";
  EXPECT_EQ(DataRun(labels, "3,1,5\nthree,1,6\n4,1,7\n9,1,8\nnobody,1,8\n1-3,1,1,2,3\n").Observations,
            (Texts{"1,1=5", "1,1=6", "0,1=7", "0,1=8", "0,1=8", "1,1=1", "2,1=2", "1,1=3"}));
  const DataRun explained(labels, "nobody,1,5\n");
  EXPECT_EQ(explained.Said.Messages[2], " Sorting labels for facet 1");
  EXPECT_EQ(explained.Said.Messages[3], " Processed as: nobody (9), 1,  5");
}

TEST(LineReferences, ColumnsWithoutFacetAndRepeatedFacets) {
  const std::string labels = "\nLabels=\n1,P\n1-3\n*\n2,I\n1-3\n*\n";
  const DataRun skipped("Facets=2\nEntered=1,0,2\nModels=?,?,R9" + labels, "1,what-ever,2,5\n");
  EXPECT_EQ(skipped.Observations, Texts{"1,2=5"});
  const DataRun repeated("Facets=2\nEntered=1,2,2\nModels=?,?,-?,R9" + labels, "1,2,3,5\n");
  EXPECT_EQ(repeated.Observations, Texts{"1,2,3=5"});
}

TEST(LineReferences, CountersCanSupplyColumns) {
  const std::string models = "Facets=2\nModels=?,?,R9\nLabels=\n1,P\n1-9\n*\n2,I\n1-9\n*\n";
  EXPECT_EQ(DataRun("Facets=2\nDvalues=1,$L\n" + models, "7,1\n\n7,2\n").Observations, (Texts{"1,7=1", "3,7=2"}));
  EXPECT_EQ(DataRun("Facets=2\nDvalues=1,$C\n" + models, "7,1\n\n7,2\n").Observations, (Texts{"0,7=1", "1,7=2"}));
}

TEST(LineReferences, ColumnsAreDerivedFromLabelsAndGroups) {
  EXPECT_EQ(DataRun(Derivable("Dvalues=2,1,2,1"), "1,7\n2,8\n0,9\n").Observations, (Texts{"1,1=7", "2,2=8", "0,0=9"}))
      << "no element derives no element";
  EXPECT_EQ(DataRun(Derivable("Dvalues=2,1,$G"), "1,7\n").Observations, Texts{"1,5=7"});
  EXPECT_EQ(DataRun(Derivable("Dvalues=2,1,2,1"), "1-2,7,8\n").Observations, (Texts{"1,1=7", "2,2=8"}));

  const DataRun unknown(Derivable("Dvalues=2,1,$G"), "2,7\n9,5\n");
  EXPECT_EQ(unknown.A.Counters.UnspecifiedCount, 2) << "group 6 is no item, and person 9 has none";
  EXPECT_EQ(unknown.A.Unspecified.front(), (UnspecifiedElement{1, "9", 9}));
  EXPECT_EQ(DataRun(Derivable("Dvalues=2,1,2,1"), "3,7\n").Error,
            "3,7 | Error F231 in line 1: Invalid element number. Must be integers in range 0 - 2147483646");
  EXPECT_EQ(DataRun(Derivable("Dvalues=2,1,2,1"), "2-3,7,8\n").Error,
            "2-3,7,8 | Error F74 in line 1: Invalid target element number in this element specification");
  EXPECT_EQ(DataRun(Derivable("Dvalues=2,1,2,1"), "1-2,7\n").Error.substr(8, 9), "Error F30");
}

TEST(LineReferences, DerivedColumnsMayFollowEachOther) {
  const std::string labels = "\nModels=?,?,?,R9\nLabels=\n1,P\n1,a\n2,b\n*\n2,Q\n1,2\n2,1\n*\n3,R\n1,one2\n2,two1\n*\n";
  const DataRun chain("Facets=3\nDvalues=\n1,2,1,1\n2,3,4,1\n*" + labels, "1,5\n2,6\n1-2,7,8\n");
  EXPECT_EQ(chain.Observations, (Texts{"1,2,1=5", "2,1,2=6", "1,2,1=7", "2,1,2=8"}));

  FieldMap fields;
  for (const int number : {1, 2}) {
    DataColumn column;
    column.ColumnFacet = {number};
    column.ColumnPosition = {number};
    column.DvalueSource = {3 - number};
    fields.Columns.add(column);
    fields.Positions.add({{number}, {number}, true});
  }
  FacetTable facets = DefaultFacets(2);
  ElementTable elements;
  Console silent;
  ElementResolver resolver(facets, fields, elements, 0, silent);
  LineReferences references(fields, elements, resolver, silent);
  DataLine line(fields.Columns, "R");
  line.Split("1", 1, 0);
  try {
    references.Resolve(line);
    ADD_FAILURE();
  } catch (const Halt& halt) {
    EXPECT_EQ(halt.Code, FailureCode::DvaluesCircular);
  }
}

}  // namespace
}  // namespace tessaly

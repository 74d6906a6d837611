// Subsets of the data: what connects them, and what does not.
#include <gtest/gtest.h>

#include <map>
#include <numeric>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "fixture/analysis_fixture.h"
#include "fixture/design.h"

namespace tessaly {
namespace {

constexpr const char* kConnected = "Subset connection O.K.";

/// Ratings of 0, 1, 0, 1, ... of these elements, each combination twice, so that no element is extreme.
std::vector<Rating> Met(const std::vector<std::vector<int>>& combinations) {
  std::vector<Rating> ratings;
  for (const std::vector<int>& elements : combinations)
    for (const int response : {0, 1}) ratings.push_back({elements, response});
  return ratings;
}

/// Persons 1 and 2 meet items 1 and 2, persons 3 and 4 items 3 and 4.
Design TwoBlocks() {
  Design design({4, 4}, "?,?,D");
  design.Ratings = Met({{1, 1}, {1, 2}, {2, 1}, {2, 2}, {3, 3}, {3, 4}, {4, 3}, {4, 4}});
  return design;
}

const std::vector<std::int32_t>& Subsets(const FinishedAnalysis& run, int facet, int number) {
  return run.A.Subsets.ElementSubsets[run.At(facet, number)];
}

TEST(SubsetConnection, BlocksWithoutOverlapAreToldApart) {
  const FinishedAnalysis run = TwoBlocks().Run({"Arrange=N"});
  EXPECT_EQ(run.A.SubsetWarning, "Warning (6)! There may be 2 disjoint subsets");
  EXPECT_TRUE(run.Reports("There are 2 disconnected subsets identified in Table 7.\r\n"));
  for (const int facet : {1, 2}) {
    for (const int number : {1, 2}) EXPECT_EQ(Subsets(run, facet, number), std::vector<std::int32_t>{1});
    for (const int number : {3, 4}) EXPECT_EQ(Subsets(run, facet, number), std::vector<std::int32_t>{2});
  }
  EXPECT_NE(run.Report.find("| 4 Element 4         | in subset: 2\r\n"), std::string::npos);
  EXPECT_NE(run.Report.find("| 1 Element 1         | in subset: 1\r\n"), std::string::npos);

  const FinishedAnalysis bypassed = TwoBlocks().Run({"Subsets=No"});
  EXPECT_EQ(bypassed.A.SubsetWarning, "Warning (2)! Subset checking bypassed");
  EXPECT_EQ(bypassed.Report.find("in subset:"), std::string::npos);
  EXPECT_EQ(bypassed.A.Elements.ElementMeasure[bypassed.At(1, 3)], run.A.Elements.ElementMeasure[run.At(1, 3)]);
}

TEST(SubsetConnection, OneObservationAnchorsOrGroupsJoinBlocks) {
  Design joined = TwoBlocks();
  joined.Ratings.push_back({{2, 3}, 1});
  EXPECT_EQ(joined.Run().A.SubsetWarning, kConnected);

  Design anchored = TwoBlocks();
  anchored.FacetFields[1] = ",A";
  anchored.Field(2, 2) = ",0.5";
  anchored.Field(2, 4) = ",-0.5";
  EXPECT_EQ(anchored.Run().A.SubsetWarning, kConnected);

  // The mean of each group is held, and each block has a whole group.
  Design grouped = TwoBlocks();
  grouped.FacetFields[1] = ",G";
  for (const int number : {1, 2, 3, 4}) grouped.Field(2, number) = number < 3 ? ",0,1" : ",0,2";
  EXPECT_EQ(grouped.Run().A.SubsetWarning, kConnected);
  // A group that lies across the blocks holds neither.
  for (const int number : {1, 2, 3, 4}) grouped.Field(2, number) = number % 2 == 0 ? ",0,1" : ",0,2";
  EXPECT_EQ(grouped.Run().A.SubsetWarning, "Warning (6)! There may be 2 disjoint subsets");
}

// Rater 1 and person 1 tie the tasks to each other. Persons 2 and 3 share rater 2 but no task: they can be compared
// once the tasks are known, yet never with person 1, whose rater is another.
TEST(SubsetConnection, AFacetThatIsTiedTogetherConnectsTheOthers) {
  Design design({3, 2, 4}, "?,?,?,D");
  design.Ratings = Met({{1, 1, 1}, {1, 1, 2}, {1, 1, 3}, {1, 1, 4}, {2, 2, 1}, {2, 2, 2}, {3, 2, 3}, {3, 2, 4}});
  const FinishedAnalysis apart = design.Run();
  EXPECT_EQ(apart.A.SubsetWarning, "Warning (6)! There may be 2 disjoint subsets");
  EXPECT_EQ(Subsets(apart, 1, 2), Subsets(apart, 1, 3));
  EXPECT_NE(Subsets(apart, 1, 1), Subsets(apart, 1, 2));
  EXPECT_TRUE(Subsets(apart, 3, 1).empty());
  // One rating of person 3 by rater 1 ties everything.
  design.Ratings.push_back({{3, 1, 1}, 1});
  EXPECT_EQ(design.Run().A.SubsetWarning, kConnected);
}

// With two facets subsets are the components of the graph whose edges are the observations.
TEST(SubsetConnection, SubsetsOfTwoFacetsAreComponents) {
  std::mt19937 random(7);
  for (int trial = 0; trial < 60; ++trial) {
    constexpr int kPersons = 12;
    constexpr int kItems = 9;
    std::vector<int> component(kPersons + kItems);
    std::iota(component.begin(), component.end(), 0);
    std::vector<std::vector<int>> met;
    const int edges = 6 + static_cast<int>(random() % 22);
    for (int edge = 0; edge < edges; ++edge) {
      const int person = static_cast<int>(random() % kPersons);
      const int item = static_cast<int>(random() % kItems);
      met.push_back({person + 1, item + 1});
      const int from = component[static_cast<std::size_t>(kPersons + item)];
      const int to = component[static_cast<std::size_t>(person)];
      for (int& c : component)
        if (c == from) c = to;
    }
    std::map<int, std::int32_t> subsetOf;
    std::set<int> seen;
    for (const auto& pair : met) seen.insert(component[static_cast<std::size_t>(pair[0] - 1)]);
    Design design({kPersons, kItems}, "?,?,D");
    design.Ratings = Met(met);
    const FinishedAnalysis run = design.Run({"Iterations=1"});
    SCOPED_TRACE(trial);
    if (seen.size() == 1) {
      EXPECT_EQ(run.A.SubsetWarning, kConnected);
      continue;
    }
    ASSERT_EQ(run.A.Subsets.SubsetCount, static_cast<std::int32_t>(seen.size()));
    for (const auto& pair : met) {
      for (const int facet : {1, 2}) {
        const int number = pair[static_cast<std::size_t>(facet - 1)];
        ASSERT_EQ(Subsets(run, facet, number).size(), 1U);
        const std::int32_t subset = Subsets(run, facet, number).front();
        const int place = facet == 1 ? number - 1 : kPersons + number - 1;
        const auto [known, isNew] = subsetOf.try_emplace(component[static_cast<std::size_t>(place)], subset);
        EXPECT_EQ(known->second, subset);
      }
    }
  }
}

TEST(SubsetConnection, ManySubsetsAndMoreThanCanBeNumbered) {
  const auto pairs = [](int count) {
    Design design({count, count}, "?,?,D");
    for (int pair = 1; pair <= count; ++pair)
      for (const int response : {0, 1}) design.Ratings.push_back({{pair, pair}, response});
    return design.Run({"Iterations=1", "Tables=N"}).A.SubsetWarning;
  };
  EXPECT_EQ(pairs(2000), "Warning (6)! There may be 2000 disjoint subsets");
  EXPECT_EQ(pairs(16400),
            "Warning (6)! There may be 16383 disjoint subsets and 34 data points not assigned to subsets");
}

// Contests: both places of the data hold the same facet.
TEST(SubsetConnection, RepeatedFacetsMakeOneGraph) {
  const auto contests = [](const std::string& data) {
    return RunSpecification("Facets=1\nEntered=1,1\nModels=?,-?,D\nLabels=\n1,Player\n1-4\n*\nData=d.txt\n",
                            {{"d.txt", data}})
        .A.SubsetWarning;
  };
  const std::string blocks = "1,2,1\n1,2,0\n3,4,1\n3,4,0\n";
  EXPECT_EQ(contests(blocks), "Warning (6)! There may be 2 disjoint subsets");
  EXPECT_EQ(contests(blocks + "2,3,1\n2,3,0\n"), kConnected);
}

/// Asks to finish at one poll.
class FinishAt : public User {
 public:
  explicit FinishAt(int poll) : poll_(poll) {}
  UserRequest Poll() override { return ++polls_ == poll_ ? UserRequest::Finish : UserRequest::None; }

 private:
  int poll_;
  int polls_ = 0;
};

// A request to finish ends what is going on: the data and the first correlations halt the run, the search for subsets
// and the agreement are given up, iterations end. All of them must have come by once.
TEST(SubsetConnection, FinishRequestsAtEveryPoll) {
  Design design = TwoBlocks();
  const std::vector<Rating> once = design.Ratings;
  for (int copy = 0; copy < 16; ++copy) design.Ratings.insert(design.Ratings.end(), once.begin(), once.end());
  const std::vector<std::string> words = {"Pt-biserial=Y", "Inter-rater=1", "Arrange=N", "Barcharts=N"};
  int halted = 0, unverified = 0, withoutAgreement = 0, unimpressed = 0;
  for (int poll = 1; poll < 120; ++poll) {
    const FinishedAnalysis run =
        RunSpecification(design.Specification(), {{"data.txt", design.DataLines()}}, words, FinishAt(poll));
    ASSERT_TRUE(run.Outcome.has_value()) << poll;
    if (!run.Finished()) {
      ++halted;
      continue;
    }
    const bool noted = run.Report.find(" in subset:") != std::string::npos;
    EXPECT_EQ(noted, run.A.SubsetWarning != kSubsetsNotVerified) << poll;
    EXPECT_EQ(run.A.Agreement.Computed(), run.Report.find("Exact Agree.") != std::string::npos) << poll;
    if (!noted) ++unverified;
    if (!run.A.Agreement.Computed()) ++withoutAgreement;
    if (noted && run.A.Agreement.Computed()) ++unimpressed;
  }
  EXPECT_GT(halted, 0);
  EXPECT_GT(unverified, 0);
  EXPECT_GT(withoutAgreement, 0);
  EXPECT_GT(unimpressed, 0);
}

}  // namespace
}  // namespace tessaly

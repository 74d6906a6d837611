// A second processor changes nothing but the time.
#include <gtest/gtest.h>
#include <sched.h>

#include "fixture/design.h"
#include "support/processors.h"

namespace tessaly {
namespace {

/// Leaves one processor to this thread, and to those that it starts, as long as it lives.
class OneProcessor {
 public:
  OneProcessor() {
    sched_getaffinity(0, sizeof before_, &before_);
    int first = 0;
    while (!CPU_ISSET(first, &before_)) ++first;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(first, &one);
    sched_setaffinity(0, sizeof one, &one);
  }
  ~OneProcessor() { sched_setaffinity(0, sizeof before_, &before_); }

 private:
  cpu_set_t before_;
};

// Enough ratings for a second thread, and every way in which an observation enters the sums.
TEST(Processors, OneAndSeveralGiveTheSameReport) {
  Design design = SimulatedDesign({600, 12, 4}, 4, 20, 0.05);
  design.Models = "1-300,?,1,R4,1.5\n?,?,2,B4\n?,1-,3,D,0.5\n?,?,3,P4\n?,#,4,R4\n*";
  for (Rating& rating : design.Ratings) {
    if (rating.Elements[0] % 100 == 7) rating.Response = rating.Elements[0] % 200 == 7 ? 0 : 4;
    if (rating.Elements[2] == 3 && rating.Elements[1] == 1) rating.Response = rating.Response > 2 ? 1 : 0;
    if (rating.Elements[0] % 17 == 1) rating.Replication = 2;
  }
  design.Settings += "Iterations=12\nUnexpected=4\n";
  ASSERT_GT(design.Ratings.size(), 20000U);
  const FinishedAnalysis several = design.Run();
  OneProcessor one;
  ASSERT_EQ(UsableProcessors(), 1);
  const FinishedAnalysis alone = design.Run();
  const auto tables = [](const FinishedAnalysis& run) { return run.Report.substr(run.Report.find("\nTable 2.")); };
  EXPECT_EQ(tables(alone), tables(several));
}

}  // namespace
}  // namespace tessaly

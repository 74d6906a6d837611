#include "reports/report_writer.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "fixture/design.h"
#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

std::string Written(const Settings& settings, const std::string& name, const std::vector<std::string>& lines) {
  const TestFolder folder;
  ReportWriter report(settings);
  report.WriteTableLine("lost: no file is open");
  report.OpenReportFile(folder.Path() + name);
  for (const std::string& line : lines) report.WriteTableLine(line);
  report.CloseReportFile();
  std::ifstream file(folder.Path() + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(ReportWriter, NameAndSettingDecideTheForm) {
  const std::string start = "<BODY><FONT FACE='Lucida Console, Andale Mono, Courier New, monospace'>";
  struct Case {
    char Ascii;
    bool Boxes;
    std::string Name, Report;
  };
  for (const Case& c :
       {Case{'Y', true, "a.txt", "\r\n|x\r\n"}, Case{'W', true, "a.txt", "\r\n|x\r\n"},
        Case{'N', true, "a.txt", "\r\n\xB3x  \r\n"}, Case{'Y', false, "a.txt", "\r\n x\r\n"},
        Case{'N', false, "a", "\r\n x  \r\n"}, Case{'Y', true, "a.HTM", start + "<br>\r\n&#9474;x<br>\r\n"},
        Case{'N', false, "a.html", start + "<br>\r\n&nbsp;x<br>\r\n"}}) {
    Settings settings;
    settings.AsciiOption = c.Ascii;
    settings.BoxShow = c.Boxes;
    EXPECT_EQ(Written(settings, c.Name, {"", "\x0Fx  "}), c.Report) << c.Ascii << c.Name;
  }
}

TEST(ReportWriter, LongTablesCanBeLeft) {
  class Leaver : public User {
   public:
    UserRequest Poll() override { return UserRequest::Stop; }
  } user;
  RunControl control(user);
  const Settings settings;
  ReportWriter report(settings);
  report.PollWith(control);
  EXPECT_THROW(
      {
        for (int row = 0; row < 10000; ++row) report.WriteTableLine("row");
      },
      Stopped);
}

TEST(ReportWriter, NamesTheReportBehindItsSpecification) {
  for (const auto& [specification, ascii, name] : {std::tuple{"essays.txt", 'Y', "essays.out.txt"},
                                                   {"a.b/essays", 'Y', "a.b/essays.out.txt"},
                                                   {"a.b\\essays", 'N', "a.b\\essays.out.txt"},
                                                   {"my.essays.txt", 'W', "my.essays.out.htm"},
                                                   {"x.", 'Y', "x.out.txt"}})
    EXPECT_EQ(DerivedReportName(specification, ascii), name);
}

TEST(ReportWriter, TablesSwitchTablesOff) {
  struct Case {
    std::string Tables;
    bool One, Two, Three, Seven;
  };
  const Design design = SimulatedDesign({8, 4}, 1, 1, 0);
  for (const Case& c : {Case{"Y", true, true, true, true}, Case{"N", true, true, true, false},
                        Case{"10000000", true, false, false, false}, Case{"0110001", false, true, true, true},
                        Case{"1200002", true, true, false, true}, Case{"1", true, false, false, false},
                        Case{"X", true, true, true, true}}) {
    const FinishedAnalysis run = design.Run({"Tables=" + c.Tables});
    EXPECT_TRUE(run.Finished());
    EXPECT_EQ(run.Reports("Table 1."), c.One) << c.Tables;
    EXPECT_EQ(run.Reports("Table 2."), c.Two) << c.Tables;
    EXPECT_EQ(run.Reports("Table 3."), c.Three) << c.Tables;
    EXPECT_EQ(run.Reports("Table 7.2.1"), c.Seven) << c.Tables;
    EXPECT_NE(run.StandardError(1, 1), 0);
  }
}

}  // namespace
}  // namespace tessaly

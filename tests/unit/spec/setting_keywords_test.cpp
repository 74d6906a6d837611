#include <gtest/gtest.h>

#include <cmath>

#include "spec/arrange.h"
#include "spec/keywords.h"
#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

Settings After(const std::string& lines) {
  const SpecRun run(WithTwoFacets(lines));
  EXPECT_EQ(run.Error, "") << lines;
  return run.A.Settings;
}

TEST(SettingKeywords, FirstLetters) {
  for (const char* text : {"Y", "yes", "Y?"}) EXPECT_TRUE(After(std::string("Beep=") + text).BeepOn) << text;
  for (const char* text : {"", "N", "1", "Oui"})
    EXPECT_FALSE(After(std::string("Write=") + text).WriteIterations) << text;
  EXPECT_FALSE(After("Whexact").Whexact);
  EXPECT_FALSE(After("Show=Yes").OmitUnobserved);
  EXPECT_TRUE(After("Show=No").OmitUnobserved);
  EXPECT_TRUE(After("T3onscreen=").T3onscreen);
  EXPECT_FALSE(After("T3onscreen=none").T3onscreen);
  EXPECT_EQ(After("ASCII=webpage").AsciiOption, 'W');
  EXPECT_EQ(After("ASCII=x").AsciiOption, 'Y');
  EXPECT_EQ(After("Bar=All").BarchartsOption, 2);
  EXPECT_EQ(After("Bar=").BarchartsOption, 0);
  EXPECT_EQ(After("Fair=zero").FairOption, 'Z');
  EXPECT_TRUE(After("S=Enlarged").RealSE);
  EXPECT_FALSE(After("S=Model").RealSE);
  for (const char c : std::string("+pale"))
    EXPECT_EQ(After(std::string("Bias=") + c).BiasDirection, BiasDirection::Plus);
  for (const char c : std::string("-ndms"))
    EXPECT_EQ(After(std::string("Bias=") + c).BiasDirection, BiasDirection::Minus);
  EXPECT_EQ(After("Bias=omit").BiasDirection, BiasDirection::Omit);
  const std::pair<const char*, char> correlations[] = {{"Yes", 'Y'}, {"B", 'Y'},       {"P", 'Y'},
                                                       {"O", 'Y'},   {"Include", 'I'}, {"All", 'I'},
                                                       {"M", 'M'},   {"", 'N'},        {"No", 'N'}};
  for (const char* text : {"Single", "s", "1"})
    EXPECT_EQ(After(std::string("Invalid lines=") + text).InvalidLinesOption, InvalidLines::Single) << text;
  for (const char* text : {"Repeated", "2"})
    EXPECT_EQ(After(std::string("Invalid lines=") + text).InvalidLinesOption, InvalidLines::Repeated) << text;
  for (const char* text : {"", "Halt", "3"})
    EXPECT_EQ(After(std::string("Invalid lines=") + text).InvalidLinesOption, InvalidLines::Halt) << text;
  const std::pair<const char*, char> encodings[] = {{"yes", 'Y'}, {"No", 'N'}, {"?", '?'}, {"", '?'}, {"U", '?'}};
  for (const auto& [text, encoded] : encodings)
    EXPECT_EQ(After(std::string("UTF8encoded=") + text).Encoding.Utf8Encoded, encoded) << text;
  for (const auto& [text, option] : correlations) EXPECT_EQ(After(std::string("G=") + text).PtBiserial, option) << text;
}

TEST(SettingKeywords, Delimiters) {
  const std::pair<const char*, const char*> delimiters[] = {
      {"Tab", "\t"}, {"Y", ","}, {"comma", ","}, {"S", ";"}, {"N", " "}, {"B", " "}, {"F", " "}, {"", " "}, {"|", "|"}};
  for (const auto& [text, delimiter] : delimiters) EXPECT_EQ(After(std::string("CSV=") + text).CsvDelimiter, delimiter);
  const std::pair<const char*, const char*> marks[] = {{"Double", "\""}, {"Q", "\""}, {"A", "'"},
                                                       {"C", ","},       {"S", ";"},  {"B", " "},
                                                       {"None", ""},     {"", ""},    {"<>", "<>"}};
  for (const auto& [text, mark] : marks) EXPECT_EQ(After(std::string("QM=") + text).QuoteMark, mark);
}

TEST(SettingKeywords, Numbers) {
  const Settings s = After(
      "Convergence=-0.1,,.02\nIterations=2*3\nJ=-4\nT4MAX=9.6\nUnexpected=-2\nZscore=-1,2-4\n"
      "Newton=Yes\nUmean=50+5,0,3\nUscale=-2\nUdecimals=99");
  EXPECT_EQ(s.ConvergenceScore, 0.1F);
  EXPECT_EQ(s.ConvergenceLogit, 0.01F);
  EXPECT_EQ(s.ConvergenceCategoryScore, 0.02F);
  EXPECT_EQ(s.IterationsLimit, 6);
  EXPECT_EQ(s.JuxtaposeLines, 4);
  EXPECT_EQ(s.T4Max, 10);
  EXPECT_EQ(s.UnexpectedMin, 2);
  EXPECT_EQ(s.ZscoreSize, 1);
  EXPECT_EQ(s.ZscoreT, 2);
  EXPECT_EQ(s.NewtonStep, 0.5F);
  EXPECT_EQ(s.Umean, 55);
  EXPECT_EQ(s.Uscale, -2);
  EXPECT_EQ(s.Udecimals, 9);
  EXPECT_EQ(After("Iterations=1E+30").IterationsLimit, 2147483647);

  EXPECT_EQ(After("Xtreme=2,0.25").XtremeMain, 0.3F);
  EXPECT_EQ(After("Xtreme=2,0.25").XtremeBias, 0.25F);
  EXPECT_EQ(After("Xtreme=-.2").XtremeMain, 0.2F);
  EXPECT_EQ(After("Xtreme=-.2").XtremeBias, 0.5F);
  EXPECT_EQ(After("Xtreme=0,0").XtremeMain, 0.3F);
  EXPECT_EQ(After("Xtreme=0,0").XtremeBias, 0);
  EXPECT_EQ(After("Xtreme=1,1").XtremeBias, 0.5F);
}

TEST(SettingKeywords, HardwareKeepsItsFloorsAboveZero) {
  EXPECT_EQ(After("Hardware=40").SmallestNumber, float(std::exp(-40.0)));
  EXPECT_EQ(After("Hardware=-5").HardwareExponent, 80);
  for (const char* value : {"1E+6", "90"}) {
    const Settings s = After(std::string("Hardware=") + value);
    EXPECT_TRUE(std::isnormal(s.SmallestNumber)) << value;
    EXPECT_TRUE(std::isfinite(256 * float(std::exp(double(s.HardwareExponent))))) << value;
  }
  EXPECT_GT(After("Hardware=1E-30").HardwareExponent, 0);
  EXPECT_EQ(SpecRun(WithTwoFacets("Hardware=")).Said.Messages.front(), "Hardware maximum exponent = 80");
}

TEST(SettingKeywords, NullElement) {
  EXPECT_EQ(After("Null=-1").NullElement, -1);
  EXPECT_EQ(After("Keepzero=2147483646").NullElement, 2147483646);
  for (const char* value : {"-2", "2147483647", "1E+9*9"})
    EXPECT_EQ(SpecRun(WithTwoFacets(std::string("Null=") + value)).Error,
              "Error F76 in line 2: Keepzero= value out of range: -1 to 2147483646");
}

TEST(SettingKeywords, Texts) {
  EXPECT_EQ(After("Title=\"One\", 'two' , three = four").Title, "One, two, three, four 2020-02-29 12:00:00");
  EXPECT_EQ(After("Title").Title, "");
  EXPECT_EQ(After("Missing=9,.,,'x'").MissingCodes, (std::vector<std::string>{"9", ".", "x"}));
  EXPECT_EQ(After("Replication=rep").ReplicationChar, "REP");
  EXPECT_EQ(After("Replication=").ReplicationChar, "R");
  EXPECT_EQ(After("Tables=101").TablesOption, "10100000000000");
  EXPECT_EQ(After("Tables=1111111111111111").TablesOption, "11111111111111");
  EXPECT_EQ(After("Tables=no").TablesOption, "N");
  EXPECT_EQ(After("Tables=2").TablesOption, "Y");
  EXPECT_EQ(After("T8NBC=nb").T8NBC, "NB");
  EXPECT_EQ(After("UTF8sub=?!").Encoding.Utf8Sub, '?');
  EXPECT_EQ(After("UTF8sub=").Encoding.Utf8Sub, '.');
  EXPECT_EQ(After("Usort=u,(1,U)").USort, "u,(1,U)");
  EXPECT_EQ(After("Vertical=1A,2N,S").VerticalSpec, "1A,2N,S");
  EXPECT_EQ(After("Vertical=").VerticalSpec, "N");
  const SpecRun bypassed(WithTwoFacets("Subsets=No"));
  EXPECT_EQ(bypassed.A.Settings.SubsetDetection, SubsetReport::Off);
  EXPECT_EQ(bypassed.A.SubsetWarning, "Warning (2)! Subset checking bypassed");
  EXPECT_EQ(SpecRun(WithTwoFacets("Subsets=list")).A.SubsetWarning, "Warning (5)! Subset connection not verified");
}

TEST(SettingKeywords, UserUnitsComeBeforeWhatIsGivenInThem) {
  const std::string failure = "Umean= and Uscale= must be specified before Labels= and Rating=";
  EXPECT_EQ(SpecRun(WithTwoFacets("") + "Umean=50,10").Blamed(), "Umean=50,10 | Error F39 in line 12: " + failure);
  EXPECT_EQ(SpecRun("Facets=2\nRating=x,R2\n*\nUscale=2\n").Blamed(), "Uscale=2 | Error F39 in line 4: " + failure);
  EXPECT_EQ(SpecRun(WithTwoFacets("") + "Udecimals=1").A.Settings.Udecimals, 1);
}

TEST(Arrange, CodesAndTheirFailure) {
  EXPECT_EQ(After("Arrange=").ArrangeSpec, "");
  EXPECT_EQ(After("Arrange=m,(2 Fn), 13aAmm,N").ArrangeSpec, "mN,2Fn,13aAmN,N");
  EXPECT_EQ(After("Arrange=m,,f").ArrangeSpec, "mN,N,fN");
  EXPECT_EQ(NormaliseArrange({}), "N");
  for (const char* code : {"mX", "M2", "-N"})
    EXPECT_EQ(SpecRun(WithTwoFacets(std::string("Arrange=") + code)).Blamed(),
              std::string("Arrange=") + code +
                  " | Error F32 in line 2: Valid arrangements are facet number (optional) then A,F,M,N,P,a,m,f,n,p");
}

TEST(InterRater, FacetsToMatch) {
  // Reached through its row alone as long as agreement is not reported.
  Analysis analysis;
  RecordingConsole console;
  User user;
  FixedClock clock;
  Host host{user, console, clock};
  InputStack input(analysis.Input, console, "");
  SpecReader reader(input, analysis.SpecComments);
  SpecContext context{analysis, host, reader};
  const auto facets = [&](const char* line) {
    FindKeyword("Inter-rater=")->Apply(context, SplitSpecLine(line));
    return analysis.Settings.InterRaterFacets;
  };
  EXPECT_EQ(facets("Inter=-3,1,0,2,1"), (std::vector<std::int32_t>{3, 1, 2}));
  EXPECT_TRUE(facets("Inter=0,1").empty());
}

}  // namespace
}  // namespace tessaly

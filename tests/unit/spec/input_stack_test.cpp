#include "spec/input_stack.h"
#include "spec/clean_line.h"

#include <gtest/gtest.h>

#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

/// All lines of a file, each behind its number; a failure ends them.
struct Lines {
  explicit Lines(const std::string& path, std::string_view kind = "Specification") {
    InputStack input(At, Said, std::string(FolderOf(path)));
    try {
      input.Open(path, kind);
      while (const auto line = input.NextRawLine()) {
        EXPECT_EQ(At.LastLine, *line);
        Read.push_back(std::to_string(At.LineNumber) + ":" + std::string(*line));
      }
      EXPECT_FALSE(input.NextRawLine());
    } catch (const Halt& halt) {
      Error = FailureLine(halt, {}, At.LineNumber);
    }
  }
  std::vector<std::string> Read;
  InputLine At;
  RecordingConsole Said;
  std::string Error;
};

using Texts = std::vector<std::string>;

TEST(InputStack, IncludeFilesGoOnCountingAndReturnToWhoIncludedThem) {
  const TestFolder folder;
  const std::string path = folder.Write("a.txt", "one\n%  b.txt ; comment\nfour\n");
  folder.Write("b.txt", "two\n%sub\\c.txt");
  std::filesystem::create_directory(folder.Path() + "sub");
  folder.Write("sub/c.txt", "three % not an include");
  const Lines lines(path);
  EXPECT_EQ(lines.Read, (Texts{"1:one", "3:two", "5:three % not an include", "6:four"}));
  EXPECT_EQ(lines.Said.Messages, (Texts{"Reading % include file: b.txt", "Reading % include file: sub\\c.txt"}));
}

TEST(InputStack, FilesThatCannotBeRead) {
  const TestFolder folder;
  EXPECT_EQ(Lines(folder.Write("a.txt", "x\n% ;c\n")).Error, "Error F41 in line 2: No file name");

  const Lines missing(folder.Write("a.txt", "x\n%none.txt\n"));
  EXPECT_EQ(missing.Said.Warnings, Texts{"Failure opening % include file: none.txt"});
  EXPECT_EQ(missing.Error, "Error 2 in line 2: No such file or directory");
  EXPECT_EQ(missing.At.LastLine, "%none.txt");

  const Lines itself(folder.Write("a.txt", "%a.txt\n"));
  EXPECT_EQ(itself.Said.Warnings,
            Texts{"% include file - a.txt - is included more than 100 deep: does it include itself?"});
  EXPECT_EQ(itself.Error, "Error F37 in line 101: Incompatible file usage: a.txt");

  // Nowhere deep, but each level is ten times as long as the one above it.
  for (char level = 'b'; level < 'h'; ++level) {
    std::string tenfold;
    for (int time = 0; time < 10; ++time) tenfold.append("%").append(1, static_cast<char>(level + 1)).append(".txt\n");
    folder.Write(std::string(1, level) + ".txt", tenfold);
  }
  folder.Write("h.txt", "");
  const Lines bomb(folder.Write("a.txt", "%b.txt\n"));
  EXPECT_EQ(bomb.Said.Warnings,
            Texts{"% include file - h.txt - comes after 10000 others: do files include each other?"});
  EXPECT_EQ(bomb.Error.substr(0, 9), "Error F37");

  const std::string rtf = folder.Write("r.rtf", "{\\rtf1 x");
  const Lines foreign(rtf);
  EXPECT_EQ(foreign.Said.Warnings, Texts{"Specification file - " + rtf + " - has RTF format. Please re-format."});
  EXPECT_EQ(foreign.Error, "Error F44: Invalid file format: not in DOS-Text (ASCII) format.");
  EXPECT_EQ(Lines(folder.Write("u.txt", "\xFF\xFEx"), "Data").Said.Warnings,
            Texts{"Data file - " + folder.Path() + "u.txt - has Unicode format. Please re-format."});

  const std::string empty = folder.Write("e.txt", "");
  EXPECT_EQ(Lines(empty).Error, "Error F46: File has no contents");
  EXPECT_EQ(Lines(empty).Said.Warnings, Texts{"Specification file - " + empty + " - is empty."});
  EXPECT_EQ(Lines(empty, "Data").Error, "");
}

TEST(CleanLine, NoBreakSpacesBecomeBlanksInTheirOwnEncodingOnly) {
  const auto clean = [](std::string_view raw) {
    std::string work;
    CleanLine(raw, true, work);
    return work;
  };
  EXPECT_EQ(clean("\xA0"
                  "1\xA0=\xA0"
                  "caf\xE9\xA0; \xA0"),
            "1 = caf\xE9");
  EXPECT_EQ(clean("1\xC2\xA0=\xC2\xA0\xC2\xA0voil\xC3\xA0"), "1 =  voil\xC3\xA0");
  EXPECT_EQ(clean("\xA0,\xA0"), "");
}

TEST(FileNames, FoldersAndExtensions) {
  EXPECT_EQ(FolderOf("a/b\\c.txt"), "a/b\\");
  EXPECT_EQ(FolderOf("c.txt"), "");
  EXPECT_EQ(ExtensionOf("a.b/c.TXT"), ".txt");
  EXPECT_EQ(ExtensionOf("a.b/c"), "");
  const TestFolder folder;
  const std::string path = folder.Write("d.txt", "");
  EXPECT_EQ(FindInputFile("d.txt", folder.Path()), path);
  EXPECT_EQ(FindInputFile("d.txt", folder.Path().substr(0, folder.Path().size() - 1)), path);
  EXPECT_EQ(FindInputFile(path, "elsewhere/"), path);
  EXPECT_EQ(FindInputFile("none\\d.txt", folder.Path()), "none\\d.txt");
}

}  // namespace
}  // namespace tessaly

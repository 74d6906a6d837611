#include "support/line_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "support/failure.h"
#include "support/work_file.h"

namespace tessaly {
namespace {

constexpr std::size_t kBlock = std::size_t{256} << 10;
using Lines = std::vector<std::string>;

class LineFileTest : public testing::Test {
 protected:
  ~LineFileTest() override { unlink(path_.c_str()); }

  LineFile Open(const std::string& content) {
    std::ofstream(path_, std::ios::binary) << content;
    return LineFile(path_);
  }
  Lines Read(const std::string& content) { return AllLines(Open(content)); }

  static Lines AllLines(LineFile file) {
    Lines lines;
    while (const auto line = file.Next()) {
      const bool atEnd = file.AtEnd();
      lines.emplace_back(*line);
      if (atEnd) {
        EXPECT_FALSE(file.Next());
        break;
      }
    }
    EXPECT_TRUE(file.AtEnd());
    return lines;
  }

  const std::string path_ = MakeTemporaryName(TemporaryFolder(), "lines", ".txt");
};

/// Lines of `content`, byte by byte.
Lines SplitLines(std::string_view content) {
  if (content.substr(0, 3) == "\xEF\xBB\xBF") {
    content.remove_prefix(3);
    if (content.empty()) return {""};
  }
  Lines lines;
  std::string line;
  bool open = false;
  for (std::size_t i = 0; i < content.size(); ++i) {
    const char c = content[i];
    open = c != '\r' && c != '\n';
    if (open) {
      line += c;
      continue;
    }
    lines.push_back(std::exchange(line, {}));
    if (i + 1 < content.size() && content[i + 1] == (c == '\r' ? '\n' : '\r')) ++i;
  }
  if (open) lines.push_back(line);
  return lines;
}

TEST_F(LineFileTest, LineEndsAndMarks) {
  EXPECT_EQ(Read("a\r\nb\n\rc\rd\ne"), (Lines{"a", "b", "c", "d", "e"}));
  EXPECT_EQ(Read("a\r\rb"), (Lines{"a", "", "b"}));
  EXPECT_EQ(Read("a\r\n\r\nb\n\r"), (Lines{"a", "", "b"}));
  EXPECT_EQ(Read("a\r\r\nb"), (Lines{"a", "", "b"}));
  EXPECT_EQ(Read("a\n"), (Lines{"a"})) << "a final line end adds no line";
  EXPECT_EQ(Read("\n"), (Lines{""}));
  EXPECT_EQ(Read(""), Lines{});
  EXPECT_EQ(Read("\xEF\xBB\xBF"), (Lines{""})) << "a mark alone is one empty line";
  EXPECT_EQ(Read("\xEF\xBB\xBFx\n\xEF\xBB\xBFy"), (Lines{"x", "\xEF\xBB\xBFy"})) << "a mark only at the start";
  EXPECT_EQ(Read("\xEF\xBB"), (Lines{"\xEF\xBB"}));
  EXPECT_EQ(Read(std::string("a\0b\n", 4)), (Lines{std::string("a\0b", 3)}));
  EXPECT_TRUE(Open("").AtEnd());
  EXPECT_FALSE(Open("\xEF\xBB\xBF").AtEnd());
}

TEST_F(LineFileTest, BlocksTearNothingApart) {
  for (const std::string lineEnd : {"\r\n", "\n\r", "\r", "\n"}) {
    for (std::size_t length = kBlock - 4; length < kBlock + 3; ++length) {
      const Lines expected = {std::string(length, 'x'), "y", std::string(3 * kBlock, 'z'), "end"};
      std::string content;
      for (const std::string& line : expected) content += line + lineEnd;
      EXPECT_EQ(Read(content), expected) << length;
    }
  }
}

TEST_F(LineFileTest, FormatsAndFailures) {
  EXPECT_EQ(Open("{\\rtf1").ForeignFormat(), "RTF");
  EXPECT_EQ(Open("\xFF\xFE"
                 "a")
                .ForeignFormat(),
            "Unicode");
  EXPECT_EQ(Open("\xFE\xFF").ForeignFormat(), "Unicode");
  EXPECT_EQ(Open(std::string("T\0i\0", 4)).ForeignFormat(), "Unicode");
  EXPECT_EQ(Open("{").ForeignFormat(), "");
  EXPECT_EQ(Open("").ForeignFormat(), "");
  LineFile text = Open("Title = x\n");
  EXPECT_EQ(text.FileLength(), 10);
  EXPECT_EQ(text.ForeignFormat(), "");
  EXPECT_EQ(text.Next(), "Title = x") << "looking at the start consumes nothing";
  const auto codeOf = [](const std::string& path) {
    try {
      LineFile file(path);
    } catch (const Halt& halt) {
      return static_cast<int>(halt.Code);
    }
    return 0;
  };
  EXPECT_EQ(codeOf(TemporaryFolder()), -EISDIR);
  EXPECT_EQ(codeOf(path_ + ".none"), -ENOENT);
}

TEST_F(LineFileTest, LongestLine) {
  const auto open = [&](const char* tail) {
    std::filesystem::resize_file(path_, static_cast<std::uintmax_t>(LineFile::kLongestLine));
    std::ofstream(path_, std::ios::binary | std::ios::app) << tail;
    return LineFile(path_);
  };
  EXPECT_EQ(open("\n").Next()->size(), static_cast<std::size_t>(LineFile::kLongestLine));
  for (const char* tail : {"x", "more\r\n"}) {
    LineFile file = open(tail);
    EXPECT_THROW(file.Next(), Halt);
  }
}

TEST_F(LineFileTest, AgreesWithAPlainSplitter) {
  std::mt19937 random(3);
  for (int round = 0; round < 300; ++round) {
    // A few rounds are longer than a block; dense line ends make every kind of pair and boundary.
    const std::size_t size = round < 8 ? 2 * kBlock + random() % 1000 : random() % 60;
    const std::size_t kinds = 3 + random() % 30;
    std::string content = round % 5 == 0 ? "\xEF\xBB\xBF" : "";
    while (content.size() < size) content += "\r\nabcdefghijklmnopqrstuvwxyzABCDEFGH"[random() % kinds];
    // One kind of line end, and in some of these files the other one far away.
    if (round % 4 == 0) std::replace(content.begin(), content.end(), '\r', '\n');
    if (round % 8 == 4) std::replace(content.begin(), content.end(), '\n', '\r');
    if (round % 16 == 0) content[content.size() / 2] = '\r';
    ASSERT_EQ(Read(content), SplitLines(content)) << round;
  }
}

TEST_F(LineFileTest, ReadsPipesInPiecesOfAnySize) {
  std::mt19937 random(5);
  for (int round = 0; round < 10; ++round) {
    std::string content;
    while (content.size() < 20000) content += "\r\nabc"[random() % 5];
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::thread writer([&, seed = random()] {
      std::mt19937 sizes(seed);
      for (std::size_t at = 0; at < content.size();) {
        const ssize_t count =
            write(ends[1], content.data() + at, std::min<std::size_t>(sizes() % 700 + 1, content.size() - at));
        at += static_cast<std::size_t>(count);
      }
      close(ends[1]);
    });
    LineFile file("/dev/fd/" + std::to_string(ends[0]));
    close(ends[0]);
    EXPECT_EQ(file.FileLength(), 0);
    const Lines lines = AllLines(std::move(file));
    writer.join();
    ASSERT_EQ(lines, SplitLines(content));
  }
}

}  // namespace
}  // namespace tessaly

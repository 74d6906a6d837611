#include "reports/report_writer.h"

#include <utility>

#include "spec/file_names.h"
#include "support/bytes.h"

namespace tessaly {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::uint32_t kLinesBetweenPolls = 1000;

ReportForm FormOf(const std::string& path, char asciiOption) {
  const std::string extension = ExtensionOf(path);
  if (extension == ".html" || extension == ".htm") return ReportForm::Webpage;
  return asciiOption == 'N' ? ReportForm::Drawing : ReportForm::Text;
}

std::string WebpageStart(const Settings& settings) {
  std::string font = settings.WebpageFont;
  // What would end the attribute or the tag is no part of a font's name.
  std::erase_if(font, [](char c) { return c == '\'' || c == '<' || c == '>'; });
  return "<BODY><FONT FACE='" + font + "'>" + (settings.WebpageBold ? "<B>" : "");
}

}  // namespace

std::string DerivedReportName(std::string_view specFileName, char asciiOption) {
  const std::string_view folder = FolderOf(specFileName);
  const std::size_t point = specFileName.rfind('.');
  std::string name(specFileName);
  if (point != std::string_view::npos && point >= folder.size()) {
    name.resize(point + 1);
  } else {
    name += '.';
  }
  return name + "out." + (asciiOption == 'W' ? "htm" : "txt");
}

void ReportWriter::OpenReportFile(const std::string& path) {
  file_.emplace(path, OutputFile::Opening::Now, PollsWhileWaiting(control_));
  form_ = FormOf(path, settings_.AsciiOption);
  webpageStarted_ = false;
}

void ReportWriter::OpenScreen(Console& screen) {
  screen_ = &screen;
  form_ = ReportForm::Text;
}

void ReportWriter::CloseReportFile() {
  if (!file_) return;
  OutputFile file = std::move(*file_);
  file_.reset();
  file.Close();
}

std::string ReportWriter::Rendered(std::string_view line) {
  const std::string shown = settings_.BoxShow ? std::string(line) : BlankBox(line);
  switch (form_) {
    case ReportForm::Text:
      return std::string(TrimRight(ToTextBox(shown)));
    case ReportForm::Drawing:
      return ToDrawingBox(shown);
    case ReportForm::Webpage:
      break;
  }
  const bool first = !std::exchange(webpageStarted_, true);
  return (first ? WebpageStart(settings_) : "") + ToWebpage(shown);
}

void ReportWriter::WriteTableLine(std::string_view line) {
  if (!reportOn_) return;
  if (control_ != nullptr && ++lines_ % kLinesBetweenPolls == 0) control_->Poll();
  if (screen_ != nullptr) screen_->ShowMessage(Rendered(line));
  if (!file_) return;
  file_->Write(Rendered(line));
  file_->Write(kLineEnd);
}

bool ReportWriter::Wants(int number) const {
  const std::string& tables = settings_.TablesOption;
  const auto at = static_cast<std::size_t>(number - 1);
  const bool switches = !tables.empty() && IsDigit(tables.front());
  return !switches || (at < tables.size() && tables[at] != '0');
}

void ReportWriter::SelectTable(int number) {
  reportOn_ = Wants(number);
}

}  // namespace tessaly

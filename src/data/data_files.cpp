#include "data/data_files.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "spec/file_names.h"
#include "support/bytes.h"
#include "support/failure.h"

namespace tessaly {
namespace {

struct ForeignFile {
  std::string_view Extension;
  std::string_view Program;
};

constexpr ForeignFile kForeignFiles[] = {
    {".xls", "an Excel"},   {".xlsx", "an Excel"}, {".dta", "a STATA"}, {".sav", "an SPSS"},
    {".sas7bdat", "a SAS"}, {".rda", "an R"},      {".rdata", "an R"},
};

/// The extension in small letters; also that of a workbook whose sheet is named in parentheses ("book.xlsx(2)").
std::string ForeignExtension(const std::string& name) {
  const std::string lower = LowerAscii(name);
  for (const std::string_view workbook : {".xlsx", ".xls"})
    if (lower.find(std::string(workbook) + "(") != std::string::npos) return std::string(workbook);
  return ExtensionOf(name);
}

void RefuseForeignFile(const std::string& name, Console& console) {
  const std::string extension = ForeignExtension(name);
  const auto* const found = std::find_if(std::begin(kForeignFiles), std::end(kForeignFiles),
                                         [&](const ForeignFile& file) { return file.Extension == extension; });
  if (found == std::end(kForeignFiles)) return;
  console.ShowWarning("Data file - " + name + " - is " + std::string(found->Program) + " file (" + extension +
                      "): imports are not available in this version. Please save it as comma-separated text (.csv).");
  throw Halt{FailureCode::InvalidFileFormat, {}};
}

}  // namespace

std::vector<std::string> DataFileNames(const std::string& dataFileName) {
  std::vector<std::string> names;
  for (const std::string_view item : SplitAt(dataFileName, '+')) {
    const std::string_view name = TrimQuotes(item);
    if (!name.empty()) names.emplace_back(name);
  }
  return names;
}

std::string FindDataFile(const std::string& name, const std::string& specFolder, Console& console) {
  RefuseForeignFile(name, console);
  std::string path = FindInputFile(name, specFolder);
  std::error_code error;
  if (std::filesystem::exists(path, error)) return path;
  std::string warning = FailureText({FailureCode::FileNotFound, {}}, {}) + ": Input file name = " + name;
  if (FolderOf(name).empty()) warning += " (Current folder = " + std::filesystem::current_path(error).string() + ")";
  console.ShowWarning(warning);
  throw Halt{FailureCode::FileNotFound, {}};
}

}  // namespace tessaly

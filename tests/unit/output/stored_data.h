// A data phase that keeps its observations, and output files as texts.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "data/data_reader.h"
#include "output/text_output.h"
#include "unit/data/data_run.h"

namespace tessaly {

/// Reads `specification`, which does not end with "Data=", and `data`. A failure fails the test.
struct StoredData {
  StoredData(std::string_view specification, std::string_view data) {
    User nobody;
    FixedClock clock;
    Host host{nobody, Said, clock};
    RunControl control(nobody);
    InputStack input(A.Input, Said, Folder.Path());
    const std::string path = Folder.Write("data.txt", data);
    try {
      input.Open(Folder.Write("spec.txt", std::string(specification) + "Data=" + path + "\n"), "Specification");
      ReadSpecification(A, {}, host, input);
      MatchScalesToModels(A.Models, A.Scales, A.Input, Said);
      ObservationWriter writer(Folder.Path(), ElementLayout(A.Facets, A.Fields));
      ReadData(A, nullptr, Folder.Path(), writer, control, host);
      Store.emplace(std::move(writer).Seal());
    } catch (const Halt& halt) {
      ADD_FAILURE() << A.Input.LastLine << " | " << FailureLine(halt, A.Limits(), A.Input.LineNumber);
    }
  }

  TestFolder Folder;
  RecordingConsole Said;
  Analysis A;
  std::optional<ObservationStore> Store;
};

/// What `write` puts into a text output, with "\n" for line ends.
template <class Write>
std::string TextWritten(Write write) {
  const TestFolder folder;
  TextOutput output(folder.Path() + "out.txt");
  write(output);
  output.Close();
  std::ifstream stream(output.Path(), std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), {}};
  for (std::size_t at = 0; (at = text.find('\r', at)) != std::string::npos;) text.erase(at, 1);
  return text;
}

}  // namespace tessaly

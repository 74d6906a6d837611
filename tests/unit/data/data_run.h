// One data phase: a specification and data as texts, what is stored and said as texts.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/data_reader.h"
#include "spec/read_specification.h"
#include "support/bytes.h"
#include "support/number_text.h"
#include "unit/spec/spec_run.h"

namespace tessaly {

class DataConsole : public RecordingConsole {
 public:
  void ReportLine(std::string_view text) override { Report.emplace_back(text); }

  std::vector<std::string> Report;
};

/// Somebody who answers every question from a list, then with an empty line, and acts at the first poll.
class DataUser : public User {
 public:
  UserRequest Poll() override {
    ++Polls;
    return Request;
  }
  std::optional<std::string> Ask(std::string_view question) override {
    Questions.emplace_back(question);
    if (Answers.empty()) return {};
    std::optional<std::string> answer = Answers.front();
    if (Answers.size() > 1) Answers.erase(Answers.begin());
    return answer;
  }
  bool Present() const override { return !Answers.empty(); }

  UserRequest Request = UserRequest::None;
  int Polls = 0;
  /// What the clock moves on with each poll.
  double SecondsPerPoll = 0;
  /// The last answer is given again and again.
  std::vector<std::optional<std::string>> Answers;
  std::vector<std::string> Questions;
};

class DataClock : public FixedClock {
 public:
  explicit DataClock(const DataUser& user) : user_(user) {}
  double Seconds() override { return user_.Polls * user_.SecondsPerPoll; }

 private:
  const DataUser& user_;
};

/// Reads `specification` and then `data` from the file data.txt, or behind the specification if it ends with "Data=".
class DataRun {
 public:
  explicit DataRun(std::string_view specification, std::string_view data, DataUser user = {}) : User(std::move(user)) {
    Folder.Write("data.txt", data);
    const bool inside = specification.ends_with("Data=\n");
    std::string text(specification);
    text += inside ? std::string(data) : "Data=" + Folder.Path() + "data.txt\n";
    Read(text);
  }

  TestFolder Folder;
  Analysis A;
  DataConsole Said;
  DataUser User;
  /// "Error F..." of a halt, with the line that it quotes: "line | Error F..."; empty if all went well.
  std::string Error;
  /// "1,2=3" is response 3 of elements 1 and 2 (0: no element), with " x2" for a replication of 2.
  std::vector<std::string> Observations;
  /// The cell of each observation.
  std::vector<int> Cells;

 private:
  void Read(const std::string& text) {
    DataClock clock(User);
    Host host{User, Said, clock};
    RunControl control(User);
    InputStack input(A.Input, Said, Folder.Path());
    try {
      input.Open(Folder.Write("spec.txt", text), "Specification");
      A.Settings.SpecFileName = "spec.txt";
      ReadSpecification(A, {}, host, input);
      MatchScalesToModels(A.Models, A.Scales, A.Input, Said);
      Said = {};
      ObservationWriter writer(Folder.Path(), ElementLayout(A.Facets, A.Fields));
      ReadData(A, A.Settings.InlineData ? &input : nullptr, Folder.Path(), writer, control, host);
      List(std::move(writer).Seal());
    } catch (const Halt& halt) {
      Error = A.Input.LastLine + " | " + FailureLine(halt, A.Limits(), A.Input.LineNumber);
    } catch (const Stopped&) {
      Error = "stopped";
    }
  }

  void List(ObservationStore store) {
    std::vector<ElementIndex> elements(static_cast<std::size_t>(A.Fields.ActiveFacetCount()));
    for (std::int64_t number = 1; number <= store.ValidResponses(); ++number) {
      const ObservationRecord record = store.Read(number, elements.data());
      std::string text;
      for (const ElementIndex element : elements) {
        if (!text.empty()) text += ',';
        text += element == kNoElement ? "0" : TrimBlanks(GeneralText(A.Elements.ElementNumber[element]));
      }
      text.append("=").append(TrimBlanks(GeneralText(std::int32_t{record.ObsResponse})));
      if (record.Replication != 1) text.append(" x").append(TrimBlanks(GeneralText(record.Replication)));
      Observations.push_back(text);
      Cells.push_back(record.ObsCell.value);
    }
  }
};

using Texts = std::vector<std::string>;

/// `settings` for three facets: persons 1 to 5, items 1 to 9, raters 11 and 13 with the labels Ann and Bo.
inline std::string ThreeFacets(std::string_view settings) {
  return "Facets=3\n" + std::string(settings) +
         "\nLabels=\n1,Persons\n1-5\n*\n2,Items\n1-9\n*\n3,Raters\n11,Ann\n13,Bo\n*\n";
}

}  // namespace tessaly

// Writes a large rating design with known measures: examinees rated by raters on tasks and criteria.
//
// The responses follow the rating scale model (Andrich 1978; Wright & Masters 1982)
//   P(k) ∝ exp Σ_{j=1..k} (B_n − C_r − D_t − E_c − F_j),  k = 0..categories-1
// The design is incomplete, yet every measure is tied to every other: examinees take turns in being rated by two
// neighbouring raters on one task, and by one rater on two neighbouring tasks; or raters and tasks are drawn each time.
// All criteria are rated each time.
// Output depends on nothing but the options: random numbers and the exponential function are our own, and all other
// arithmetic is exact by IEEE 754. Lines are written as they are drawn, so memory does not grow with the design.
#include <charconv>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Design {
  std::int64_t Examinees = 1000;
  std::int64_t Raters = 20;
  std::int64_t Tasks = 5;
  std::int64_t Criteria = 4;
  std::int64_t Categories = 5;
  /// Lines of data for each examinee; a line holds one rater's responses to all criteria of one task.
  std::int64_t Ratings = 4;
  std::int64_t Mixed = 0;
  std::int64_t Seed = 1;
  std::string Folder;
};

struct Option {
  std::string_view name, help;
  std::int64_t Design::*value;
  std::int64_t lowest, highest;
};
constexpr Option kOptions[] = {
    {"--examinees", "number of examinees", &Design::Examinees, 2, 3'000'000},
    {"--raters", "number of raters", &Design::Raters, 2, 100'000},
    {"--tasks", "number of tasks", &Design::Tasks, 2, 10'000},
    {"--criteria", "number of criteria", &Design::Criteria, 1, 1'000},
    {"--categories", "categories of the rating scale, counted from 0", &Design::Categories, 2, 10},
    {"--ratings", "ratings for each examinee, each on all criteria", &Design::Ratings, 2, 10'000},
    {"--mixed", "1: raters and tasks are drawn for each rating; 0: neighbours, which links them as weakly as can be",
     &Design::Mixed, 0, 1},
    {"--seed", "start of the random numbers", &Design::Seed, 0, INT64_MAX},
};

/// SplitMix64 (Steele, Lea & Flood 2014).
class Random {
 public:
  explicit Random(std::int64_t seed) : state_(static_cast<std::uint64_t>(seed)) {}

  /// Uniform in [0, 1).
  double Uniform() { return static_cast<double>(Next() >> 11) * 0x1p-53; }
  /// Uniform in 0..count-1.
  std::int64_t Below(std::int64_t count) { return static_cast<std::int64_t>(Uniform() * static_cast<double>(count)); }
  /// Mean 0, variance 1: nearly normal, and inside ±6, as a sum of twelve uniforms.
  double Normal() {
    double sum = -6.0;
    for (int i = 0; i < 12; ++i) sum += Uniform();
    return sum;
  }

 private:
  std::uint64_t Next() {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15u;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }

  std::uint64_t state_;
};

/// exp(x) for |x| below 100. The C library's value differs between processors in its last bit.
double Exp(double x) {
  constexpr int kHalvings = 10;
  const double y = x / (1 << kHalvings);
  double term = 1.0;
  double sum = 1.0;
  for (int n = 1; n <= 12; ++n) {
    term *= y / n;
    sum += term;
  }
  for (int i = 0; i < kHalvings; ++i) sum *= sum;
  return sum;
}

/// `count` measures in logits whose mean is 0, as centred facets have it.
std::vector<double> CentredMeasures(std::int64_t count, double deviation, Random& random) {
  std::vector<double> measures;
  double sum = 0.0;
  for (std::int64_t i = 0; i < count; ++i) sum += measures.emplace_back(deviation * random.Normal());
  for (double& measure : measures) measure -= sum / static_cast<double>(count);
  return measures;
}

/// F_k for k = 1..categories-1, evenly spaced from -1.5 to 1.5 logits.
std::vector<double> Thresholds(std::int64_t categories) {
  const auto steps = static_cast<int>(categories - 1);
  std::vector<double> thresholds;
  for (int k = 0; k < steps; ++k) thresholds.push_back(steps == 1 ? 0.0 : -1.5 + 3.0 * k / (steps - 1));
  return thresholds;
}

/// Draws responses of one rating scale.
class Responses {
 public:
  explicit Responses(std::int64_t categories) {
    double sum = 0.0;
    for (const double threshold : Thresholds(categories)) weights_.push_back(Exp(-(sum += threshold)));
  }

  /// A category at `measure` logits, net over all facets.
  std::int64_t Draw(double measure, Random& random) {
    const double odds = Exp(measure);
    double power = 1.0;
    double total = 1.0;
    cumulative_.assign(1, total);
    for (const double weight : weights_) {
      power *= odds;
      cumulative_.push_back(total += power * weight);
    }
    const double drawn = random.Uniform() * total;
    std::size_t category = 0;
    while (category < weights_.size() && drawn >= cumulative_[category]) ++category;
    return static_cast<std::int64_t>(category);
  }

 private:
  /// exp −Σ_{j=1..k} F_j for k = 1..top.
  std::vector<double> weights_;
  std::vector<double> cumulative_;
};

void Append(std::string& line, std::int64_t value) {
  char digits[24];
  line.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

/// A file of the design, whole or reported as a failure.
class DesignFile {
 public:
  DesignFile(const Design& design, std::string_view name)
      : name_(std::filesystem::path(design.Folder) / name), file_(name_, std::ios::binary) {}

  void Write(std::string& line) {
    line += '\n';
    file_.write(line.data(), static_cast<std::streamsize>(line.size()));
    line.clear();
  }
  void WriteMeasure(int facet, std::size_t element, double measure) {
    char digits[32];
    std::string line;
    Append(line, facet);
    line += ',';
    Append(line, static_cast<std::int64_t>(element));
    line += ',';
    line.append(digits, std::to_chars(digits, digits + sizeof digits, measure, std::chars_format::fixed, 4).ptr);
    Write(line);
  }
  void Close() {
    file_.close();
    if (!file_) throw std::runtime_error("cannot write " + name_.string());
  }

 private:
  std::filesystem::path name_;
  std::ofstream file_;
};

void WriteSpecification(const Design& design) {
  DesignFile file(design, "design.txt");
  const auto write = [&file](std::string line) { file.Write(line); };
  write("Title = Generated design");
  write("Facets = 4");
  write("Models = ?,?,?,?,R" + std::to_string(design.Categories - 1));
  write("Labels =");
  const auto writeFacet = [&write](int number, std::string_view label, std::int64_t elements) {
    write(std::to_string(number) + "," + std::string(label));
    write("1-" + std::to_string(elements));
    write("*");
  };
  writeFacet(1, "Examinees", design.Examinees);
  writeFacet(2, "Raters", design.Raters);
  writeFacet(3, "Tasks", design.Tasks);
  writeFacet(4, "Criteria", design.Criteria);
  write("Data = design-data.txt");
  file.Close();
}

/// Who rates what: rating `rating` of examinee `examinee`, all counted from 0.
struct Assignment {
  std::int64_t Rater, Task;
};
Assignment Assign(const Design& design, std::int64_t examinee, std::int64_t rating, Random& random) {
  if (design.Mixed != 0) return {random.Below(design.Raters), random.Below(design.Tasks)};
  const bool linksRaters = examinee % 2 == 0;
  const std::int64_t turn = examinee / 2;
  const std::int64_t rater = linksRaters || rating > 1 ? turn + rating : turn;
  std::int64_t task = random.Below(design.Tasks);
  if (rating < 2) task = linksRaters ? turn : turn + rating;
  return {rater % design.Raters, task % design.Tasks};
}

void WriteData(const Design& design) {
  Random random(design.Seed);
  const std::vector<double> raters = CentredMeasures(design.Raters, 0.5, random);
  const std::vector<double> tasks = CentredMeasures(design.Tasks, 0.5, random);
  const std::vector<double> criteria = CentredMeasures(design.Criteria, 0.5, random);
  Responses responses(design.Categories);

  DesignFile data(design, "design-data.txt");
  DesignFile measures(design, "design-measures.txt");
  for (std::size_t i = 0; i < raters.size(); ++i) measures.WriteMeasure(2, i + 1, raters[i]);
  for (std::size_t i = 0; i < tasks.size(); ++i) measures.WriteMeasure(3, i + 1, tasks[i]);
  for (std::size_t i = 0; i < criteria.size(); ++i) measures.WriteMeasure(4, i + 1, criteria[i]);

  std::string line;
  for (std::int64_t examinee = 0; examinee < design.Examinees; ++examinee) {
    const double ability = 0.5 + random.Normal();
    measures.WriteMeasure(1, static_cast<std::size_t>(examinee) + 1, ability);
    for (std::int64_t rating = 0; rating < design.Ratings; ++rating) {
      const auto [rater, task] = Assign(design, examinee, rating, random);
      const double measure = ability - raters[static_cast<std::size_t>(rater)] - tasks[static_cast<std::size_t>(task)];
      for (const std::int64_t number : {examinee + 1, rater + 1, task + 1}) {
        Append(line, number);
        line += ',';
      }
      line += "1-";
      Append(line, design.Criteria);
      for (const double difficulty : criteria) {
        line += ',';
        Append(line, responses.Draw(measure - difficulty, random));
      }
      data.Write(line);
    }
  }
  data.Close();
  measures.Close();
}

std::string Usage() {
  std::string usage =
      "Usage: tessaly_generate [OPTION VALUE]... FOLDER\n"
      "Writes design.txt (specification), design-data.txt and design-measures.txt (facet, element, measure) there.\n";
  const Design defaults;
  for (const Option& option : kOptions) {
    usage += "  " + std::string(option.name) + ": " + std::string(option.help) + ", " + std::to_string(option.lowest) +
             " to " + std::to_string(option.highest) + " (" + std::to_string(defaults.*option.value) + ")\n";
  }
  return usage;
}

void SetOption(Design& design, std::string_view name, std::string_view text) {
  for (const Option& option : kOptions) {
    if (name != option.name) continue;
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < option.lowest || value > option.highest) {
      throw std::runtime_error("invalid value of " + std::string(name) + ": " + std::string(text));
    }
    design.*option.value = value;
    return;
  }
  throw std::runtime_error("unknown option " + std::string(name));
}

Design ReadOptions(int count, char** words) {
  Design design;
  int i = 1;
  for (; i + 1 < count; i += 2) SetOption(design, words[i], words[i + 1]);
  if (i >= count) throw std::runtime_error("no output folder");
  if (*words[i] == '-') throw std::runtime_error("unknown option " + std::string(words[i]));
  design.Folder = words[i];
  // Each rater rates an examinee once or on two tasks, and the turns must come round to every rater and task.
  if (design.Mixed != 0) return design;
  if (design.Ratings > design.Raters) throw std::runtime_error("more ratings than raters");
  if (design.Examinees < 2 * design.Raters || design.Examinees < 2 * design.Tasks) {
    throw std::runtime_error("fewer than two examinees for each rater and task");
  }
  return design;
}

}  // namespace

int main(int count, char** words) {
  try {
    const Design design = ReadOptions(count, words);
    std::filesystem::create_directories(design.Folder);
    WriteSpecification(design);
    WriteData(design);
  } catch (const std::exception& failure) {
    std::cerr << "tessaly_generate: " << failure.what() << "\n" << Usage();
    return 1;
  }
  return 0;
}

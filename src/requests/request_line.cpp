#include "requests/request_line.h"

#include <algorithm>

#include "support/bytes.h"
#include "support/failure.h"

namespace tessaly {

namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// Takes words from the front of a text.
class WordReader {
 public:
  explicit WordReader(std::string_view text) : text_(text) {}

  bool AtEnd() {
    while (!text_.empty() && IsBlank(text_.front())) text_.remove_prefix(1);
    return text_.empty();
  }

  std::string Name() {
    return Take([](char c) { return IsBlank(c) || c == '='; });
  }

  bool TakeEqualsSign() {
    if (text_.empty() || text_.front() != '=') return false;
    text_.remove_prefix(1);
    return true;
  }

  std::string Value() {
    const bool quoted = !text_.empty() && (text_.front() == '"' || text_.front() == '\'');
    if (!quoted) return Take(IsBlank);
    const char mark = text_.front();
    const std::size_t end = text_.find(mark, 1);
    if (end == std::string_view::npos)
      throw Refusal{"There is no closing quote for " + QuotedLine(text_) + ". Please put one behind the value"};
    const std::string value(text_.substr(1, end - 1));
    text_.remove_prefix(end + 1);
    return value;
  }

 private:
  template <class Ends>
  std::string Take(Ends ends) {
    const auto end = static_cast<std::size_t>(std::find_if(text_.begin(), text_.end(), ends) - text_.begin());
    const std::string taken(text_.substr(0, end));
    text_.remove_prefix(end);
    return taken;
  }

  std::string_view text_;
};

/// Far more than any request has.
constexpr std::size_t kMostOptions = 100;

void AddOption(std::string name, std::string value, RequestLine& request) {
  if (request.Options.size() >= kMostOptions) throw Refusal{"A request has at most 100 options. Please give fewer"};
  const auto given = [&](const RequestLine::Option& other) { return other.Name == name; };
  if (std::any_of(request.Options.begin(), request.Options.end(), given))
    throw Refusal{QuotedLine(name) + "= is given twice. Please give it once, with commas between its values"};
  request.Options.push_back({std::move(name), std::move(value)});
}

}  // namespace

RequestLine ReadRequestLine(std::string_view line) {
  WordReader reader(line);
  RequestLine request;
  if (reader.AtEnd()) return request;
  while (!reader.AtEnd()) {
    std::string name = LowerAscii(reader.Name());
    if (reader.TakeEqualsSign()) {
      AddOption(std::move(name), reader.Value(), request);
    } else if (request.Verb.empty()) {
      request.Verb = std::move(name);
    } else {
      request.Words.push_back(std::move(name));
    }
  }
  return request;
}

}  // namespace tessaly

#include "tools/deck/place.h"

#include <algorithm>
#include <charconv>

#include "tools/deck/fields.h"

namespace deck {
namespace {

constexpr std::string_view kInitialKeyword = "INITIALCONDITIONS";

/// Blanks that the solver does not need, but people do.
std::string spelled(const std::string& compact_name) {
  if (compact_name == kInitialKeyword) return "INITIAL CONDITIONS";
  if (compact_name == "TIMEDELAY") return "TIME DELAY";
  if (compact_name == "LOADCASE") return "LOAD CASE";
  return compact_name;
}

std::string text_of(const Parameter& parameter) {
  return spelled(parameter.name) + (parameter.value.empty() ? "" : "=" + parameter.value);
}

/// The keyword as every card of it can be written; the solver ignores what follows.
std::string canonical_keyword(const Card& card) {
  for (const std::string_view keyword :
       {"CLOAD", "BOUNDARY", "TEMPERATURE", "INITIALCONDITIONS", "CFLUX"}) {
    if (card.is(keyword)) return std::string(keyword);
  }
  return card.keyword;
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

/// "Step 1a" and "Step 1.5" name no step 1, but "Step 1-wind" does.
bool continues_word(char c) {
  return is_digit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '.' || c == '_';
}

std::string_view without_separators(std::string_view text) {
  while (!text.empty() && (is_blank(text.front()) || text.front() == ',')) text.remove_prefix(1);
  return text;
}

}  // namespace

std::string Place::parameters_text() const {
  std::string text;
  for (const Parameter& parameter : parameters) {
    text.append(text.empty() ? "" : ", ").append(text_of(parameter));
  }
  return text;
}

std::string Place::name() const {
  if (keyword == kInitialKeyword) return "Initial";
  std::string name = step == 0 ? "Model" : "Step " + std::to_string(step);
  name += ", " + spelled(keyword);
  if (!parameters.empty()) name += ", " + parameters_text();
  return name;
}

std::string Place::key() const {
  std::vector<std::string> texts;
  for (const Parameter& parameter : parameters) texts.push_back(text_of(parameter));
  std::sort(texts.begin(), texts.end());
  std::string key = std::to_string(step) + "," + keyword;
  for (const std::string& text : texts) key += "," + text;
  return key;
}

std::string Place::keyword_line() const {
  const std::string text = parameters_text();
  return "*" + spelled(keyword) + (text.empty() ? "" : ", " + text);
}

Place Place::with_amplitude(const std::string& name) const {
  Place place = *this;
  std::erase_if(place.parameters, [](const Parameter& parameter) {
    return parameter.name == "OP" || parameter.name == "AMPLITUDE";
  });
  if (!name.empty()) place.parameters.push_back({"AMPLITUDE", name});
  return place;
}

Place place_of(const Card& card) { return {card.step, canonical_keyword(card), card.parameters}; }

std::vector<Parameter> parameters_from(std::string_view text) {
  std::vector<Parameter> parameters;
  const std::string characters = compact(text);
  for (std::string_view rest = characters; !rest.empty();) {
    const std::string_view field = rest.substr(0, rest.find(','));
    rest.remove_prefix(std::min(field.size() + 1, rest.size()));
    const std::size_t equals = std::min(field.find('='), field.size());
    if (field.empty()) continue;
    parameters.push_back({std::string(field.substr(0, equals)),
                          std::string(field.substr(std::min(equals + 1, field.size())))});
  }
  return parameters;
}

std::string_view keyword_of(Kind kind, bool is_initial) {
  switch (kind) {
    case Kind::kForce:
    case Kind::kMoment:
      return "CLOAD";
    case Kind::kHeatSource:
      return "CFLUX";
    case Kind::kTemperature:
      return is_initial ? kInitialKeyword : "TEMPERATURE";
    default:
      return "BOUNDARY";
  }
}

std::optional<NamedStep> step_in_name(std::string_view name) {
  name = without_separators(name);
  const auto is_word = [&](std::string_view word) {
    return compact(name.substr(0, word.size())) == word;
  };
  const auto begins = [&](std::string_view word) {
    if (!is_word(word)) return false;
    return name.size() == word.size() || !continues_word(name[word.size()]);
  };
  if (begins("INITIAL")) {
    return NamedStep{.is_initial = true, .rest = without_separators(name.substr(7))};
  }
  if (begins("MODEL")) return NamedStep{.rest = without_separators(name.substr(5))};
  if (!is_word("STEP")) return std::nullopt;
  const std::string_view number = without_separators(name.substr(4));
  const std::string_view digits = number.substr(number.starts_with('-') ? 1 : 0);
  if (digits.empty() || !is_digit(digits.front())) return std::nullopt;
  NamedStep named;
  const auto [end, error] =
      std::from_chars(number.data(), number.data() + number.size(), named.step);
  const std::string_view rest = number.substr(static_cast<std::size_t>(end - number.data()));
  named.is_unclear =
      error != std::errc() || named.step < 1 || (!rest.empty() && continues_word(rest.front()));
  named.rest = rest.empty() ? rest : without_separators(rest.substr(1));
  return named;
}

}  // namespace deck

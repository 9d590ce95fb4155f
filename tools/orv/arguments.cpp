#include "tools/orv/arguments.h"

#include <charconv>
#include <cmath>
#include <string_view>

namespace orv {
namespace {

template <class Number>
bool read(const std::string& text, Number& number) {
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, number);
  return error == std::errc() && end == last;
}

/// The library's words for an argument that has no value of its type: "Could not convert: STEP =
/// x".
std::string of_another_type(std::string_view words) {
  constexpr std::string_view kBegin = "Could not convert: ";
  const std::size_t sign = words.find(" = ");
  if (!words.starts_with(kBegin) || sign == std::string_view::npos) return std::string(words);
  return std::string(words.substr(kBegin.size(), sign - kBegin.size())) + ": \"" +
         std::string(words.substr(sign + 3)) + "\" is not what it takes.";
}

}  // namespace

CLI::Validator whole_number() {
  return {[](const std::string& text) {
            long number = 0;
            return read(text, number) ? std::string()
                                      : '"' + text + "\" is no whole number of at most 2147483647.";
          },
          ""};
}

CLI::Validator positive_number() {
  return {[](const std::string& text) {
            double number = 0;
            const bool is_one = read(text, number) && std::isfinite(number) && number > 0;
            return is_one ? std::string() : '"' + text + "\" is no number above 0.";
          },
          ""};
}

std::string fault_of(const CLI::App& program, const CLI::ParseError& error) {
  std::string sentence = of_another_type(error.what());
  if (!sentence.ends_with('.')) sentence += '.';
  std::string command = program.get_name();
  for (const CLI::App* const each : program.get_subcommands()) command += ' ' + each->get_name();
  return sentence + " '" + command + " --help' tells what to write.";
}

}  // namespace orv

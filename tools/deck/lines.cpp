#include "tools/deck/lines.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "tools/content/utf8.h"
#include "tools/deck/encoding.h"
#include "tools/deck/fields.h"
#include "tools/deck/place.h"

namespace deck {
namespace {

/// The solver reads so many characters of a line, and then the rest as a line of its own.
constexpr std::size_t kLongestLine = 1319;

/// Cards that say what a step solves; they begin one where *STEP is missing behind *END STEP.
constexpr auto kProcedures = std::to_array<std::string_view>(
    {"STATIC", "DYNAMIC", "FREQUENCY", "BUCKLE", "HEATTRANSFER", "MODALDYNAMIC",
     "STEADYSTATEDYNAMICS", "COUPLEDTEMPERATURE", "UNCOUPLEDTEMPERATURE", "VISCO",
     "ELECTROMAGNETICS", "CFD", "COMPLEXFREQUENCY", "SENSITIVITY", "GREEN", "SUBSTRUCTUREGENERATE",
     "CRACKPROPAGATION", "FEASIBLEDIRECTION", "ROBUSTDESIGN"});

enum class Sort { kEmpty, kComment, kKeyword, kData };

Sort sort_of(std::string_view line) {
  std::size_t at = 0;
  const auto skip = [&] {
    while (at < line.size() && is_blank(line[at])) ++at;
  };
  skip();
  if (at == line.size()) return Sort::kEmpty;
  if (line[at] != '*') return Sort::kData;
  ++at;
  skip();
  return at < line.size() && line[at] == '*' ? Sort::kComment : Sort::kKeyword;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && (is_blank(text.front()) || text.front() == '"')) text.remove_prefix(1);
  while (!text.empty() && (is_blank(text.back()) || text.back() == '"')) text.remove_suffix(1);
  return text;
}

class LineReader {
 public:
  LineReader(Deck& deck, const OpenFile& open) : deck_(deck), open_(open) {}

  /// `from` is the line that includes the file; null for the deck itself.
  void read_file(const std::string& path, const Line* from) {
    std::string bytes = open(path, from);
    if (std::find(open_paths_.begin(), open_paths_.end(), path) != open_paths_.end()) {
      refuse(from, path, "The file '" + path + "' includes itself.");
    }
    if (open_paths_.size() > kDeepest) {
      refuse(from, path, "Files include one another more than 100 deep.");
    }
    deck_.files.push_back(std::make_unique<File>(File{path, std::move(bytes), {}}));
    if (deck_.files.size() > kMostFiles) {
      refuse(from, path, "The deck includes more than 10,000 files.");
    }
    check_encoding(from, path);
    decode(*deck_.files.back());
    open_paths_.push_back(path);
    split(static_cast<std::uint32_t>(deck_.files.size() - 1));
    open_paths_.pop_back();
  }

  void end_cards() {
    if (!deck_.cards.empty()) deck_.cards.back().end = deck_.lines.size();
    if (!deck_.cards.empty()) return;
    throw Error(deck_.files.front()->path +
                ": No line begins with an asterisk and a keyword; this is not a deck.");
  }

 private:
  static constexpr std::size_t kDeepest = 100;
  static constexpr std::size_t kMostFiles = 10000;

  [[noreturn]] void refuse(const Line* from, const std::string& path, const std::string& reason) {
    if (from == nullptr) throw Error(path + ": " + reason);
    throw Error(Remark{deck_.files[from->file]->path, from->number, reason}.text());
  }

  std::string open(const std::string& path, const Line* from) {
    try {
      return open_(path);
    } catch (const CannotOpen& reason) {
      if (from == nullptr) throw Error(reason.what());
      refuse(from, path, reason.what());
    }
  }

  static void decode(File& file) {
    if (content::is_utf8(file.text)) return;
    file.original = std::move(file.text);
    file.text = from_windows_1252(file.original);
  }

  /// A file in another encoding would be read as one without cards, or with one card less.
  void check_encoding(const Line* from, const std::string& path) {
    const std::string_view bytes = deck_.files.back()->text;
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
      refuse(from, path,
             "The file '" + path +
                 "' is text in UTF-16, which the solver cannot read. Save it as UTF-8 without a "
                 "byte order mark.");
    }
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    const bool hides_keyword =
        bytes.starts_with(kMark) &&
        sort_of(bytes.substr(kMark.size(), bytes.find('\n') - kMark.size())) == Sort::kKeyword;
    if (hides_keyword) {
      const Line line{bytes.data(), 0, static_cast<std::uint32_t>(deck_.files.size() - 1), 1};
      refuse(&line, path,
             "A byte order mark stands before the keyword, which the solver does not see for it. "
             "Save the file without one.");
    }
  }

  void split(std::uint32_t file) {
    const std::string& text = deck_.files[file]->text;
    const char* at = text.data();
    const char* const end = at + text.size();
    for (std::uint32_t number = 1; at != end; ++number) {
      const auto* newline =
          static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
      const char* next = newline == nullptr ? end : newline + 1;
      add_line(file, number, at, next);
      at = next;
    }
  }

  void add_line(std::uint32_t file, std::uint32_t number, const char* at, const char* end) {
    const auto size = static_cast<std::size_t>(end - at);
    if (std::memchr(at, '\0', size) != nullptr) {
      const Line line{at, 0, file, number};
      refuse(&line, {}, "The line holds a byte 0; a deck is a text.");
    }
    if (has_inner_return(at, end)) {
      const Line line{at, 0, file, number};
      refuse(&line, {},
             "A carriage return stands within the line. To the solver, lines end with a line feed; "
             "convert the line ends of the file.");
    }
    const char* const text_end = end - (size > 0 && end[-1] == '\n' ? 1 : 0);
    const bool is_utf8 = deck_.files[file]->is_utf8();
    const std::size_t characters = characters_of({at, text_end}, is_utf8);
    if (characters > kLongestLine) {
      deck_.remarks.push_back({deck_.files[file]->path, number,
                               "The line has " + std::to_string(characters) +
                                   " characters. The solver reads " + std::to_string(kLongestLine) +
                                   " of them and takes the rest for a line of its own."});
    }
    for (std::size_t left = characters; left > kLongestLine; left -= kLongestLine) {
      const std::size_t piece = longest_piece({at, text_end}, is_utf8);
      add_piece(Line{at, static_cast<std::uint32_t>(piece), file, number});
      at += piece;
    }
    add_piece(Line{at, static_cast<std::uint32_t>(end - at), file, number});
  }

  // A character is a byte to the solver: of UTF-8 one of several, and else a whole one.

  static std::size_t characters_of(std::string_view text, bool is_utf8) {
    if (is_utf8) return text.size();
    return static_cast<std::size_t>(std::ranges::count_if(text, begins_character));
  }

  /// The bytes of the text from which the solver reads a line that is too long for it.
  static std::size_t longest_piece(std::string_view text, bool is_utf8) {
    if (is_utf8) return kLongestLine;
    std::size_t bytes = 0;
    for (std::size_t left = kLongestLine; left > 0; --left) {
      do ++bytes;
      while (bytes < text.size() && !begins_character(text[bytes]));
    }
    return bytes;
  }

  static bool begins_character(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
  }

  static bool has_inner_return(const char* at, const char* end) {
    const auto* found =
        static_cast<const char*>(std::memchr(at, '\r', static_cast<std::size_t>(end - at)));
    if (found == nullptr) return false;
    while (found != end && *found == '\r') ++found;
    return found != end && *found != '\n';
  }

  void add_piece(Line line) {
    const Sort sort = sort_of(line.text());
    line.is_data = sort == Sort::kData && !deck_.cards.empty();
    deck_.lines.push_back(line);
    if (sort != Sort::kKeyword) return;
    if (compact(line.text()).starts_with("*INCLUDE")) {
      include(line);
    } else {
      add_card(line);
    }
  }

  void include(const Line& line) {
    const std::string_view text = line.text();
    const std::size_t equals = text.find('=');
    std::string_view path;
    if (equals != std::string_view::npos) {
      path = text.substr(equals + 1);
      path = trimmed(path.substr(0, path.find(',')));
    }
    if (path.empty()) refuse(&line, {}, "*INCLUDE names no file; INPUT= is missing.");
    read_file(std::string(path), &line);
  }

  void add_card(const Line& line) {
    if (!deck_.cards.empty()) deck_.cards.back().end = deck_.lines.size() - 1;
    Card card;
    card.first = deck_.lines.size() - 1;
    const std::string characters = compact(line.text());
    const std::size_t end = std::min(characters.find(','), characters.size());
    card.keyword = characters.substr(1, end - 1);
    card.parameters = parameters_from(std::string_view(characters).substr(end));
    count_steps(card);
    deck_.cards.push_back(std::move(card));
  }

  void count_steps(Card& card) {
    const bool is_procedure =
        std::any_of(kProcedures.begin(), kProcedures.end(),
                    [&card](std::string_view keyword) { return card.is(keyword); });
    const bool is_step = card.is("STEP");
    if (is_step || (is_procedure && !deck_.steps.empty() && !within_step_)) {
      remark_missing(is_step, card);
      deck_.steps.push_back({card.first, {}});
      within_step_ = true;
    }
    card.step = deck_.step_count();
    card.within_step = within_step_;
    if (is_procedure && within_step_ && deck_.steps.back().procedure.empty()) {
      deck_.steps.back().procedure = card.keyword;
    }
    if (card.is("ENDSTEP")) within_step_ = false;
  }

  /// Before the step that the card begins is counted.
  void remark_missing(bool is_step, const Card& card) {
    const std::string step = std::to_string(deck_.step_count() + 1);
    if (!is_step) {
      deck_.remarks.push_back(deck_.remark_at(
          card.first, "*" + card.keyword + " begins step " + step +
                          " without *STEP, which the solver computes and reports as an error."));
    } else if (within_step_) {
      deck_.remarks.push_back(deck_.remark_at(
          card.first, "Step " + step +
                          " begins within the one before, which has no *END STEP. The solver "
                          "refuses such a deck."));
    }
  }

  Deck& deck_;
  const OpenFile& open_;
  std::vector<std::string> open_paths_;
  bool within_step_ = false;
};

}  // namespace

std::string_view Line::text() const {
  std::string_view text(bytes, size);
  if (!text.empty() && text.back() == '\n') text.remove_suffix(1);
  if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
  return text;
}

void read_lines(Deck& deck, const std::string& path, const OpenFile& open) {
  LineReader reader(deck, open);
  reader.read_file(path, nullptr);
  reader.end_cards();
}

}  // namespace deck

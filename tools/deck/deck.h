#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "tools/content/axes.h"
#include "tools/mesh/mesh.h"
#include "tools/mesh/node_index.h"

/// Solver input decks: reading, what their cards mean, and writing them back. All texts are UTF-8.
namespace deck {

/// A deck that cannot be read; what() is a sentence that names file and line.
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A file that cannot be opened; what() is a sentence that names its full path and the reason.
class CannotOpen : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a reader of the deck should know about one of its lines.
struct Remark {
  std::string file;      ///< as the deck names it
  std::size_t line = 0;  ///< from 1; 0: the file as a whole
  std::string reason;    ///< a whole sentence

  /// "edgeload.inp, line 12: …"
  [[nodiscard]] std::string text() const;
  bool operator==(const Remark&) const = default;
};

/// The bytes of a file; throws CannotOpen. The deck itself is asked for by the path given to
/// read(), an included file by the path as the deck writes it.
using OpenFile = std::function<std::string(const std::string& path)>;

struct File {
  std::string path;
  std::string text;
  /// The bytes of a file that is no UTF-8, from which the text was made; else empty.
  std::string original;

  [[nodiscard]] bool is_utf8() const { return original.empty(); }
  [[nodiscard]] const std::string& bytes() const { return is_utf8() ? text : original; }
};

/// A line of a file. The solver reads long lines in pieces, each of which is a line here too.
struct Line {
  const char* bytes = nullptr;
  std::uint32_t size = 0;    ///< with the end of the line
  std::uint32_t file = 0;    ///< index into Deck::files
  std::uint32_t number = 0;  ///< from 1
  bool is_data = false;      ///< a data line: no keyword, no comment, not empty

  /// The line without its end.
  [[nodiscard]] std::string_view text() const;
};

struct Parameter {
  std::string name;   ///< in capitals, without blanks
  std::string value;  ///< likewise; empty if there is none
};

/// A keyword line and what follows it up to the next keyword line.
struct Card {
  std::string keyword;  ///< in capitals, without asterisk and blanks: "ENDSTEP"
  std::vector<Parameter> parameters;
  std::size_t first = 0;  ///< the keyword line, index into Deck::lines
  std::size_t end = 0;    ///< one past its last line
  int step = 0;           ///< 0: the model part; between two steps the number of the last one
  bool within_step = false;

  /// The value of a parameter, or nothing if the card does not have it.
  [[nodiscard]] const std::string* find(std::string_view name) const;
  /// Whether the keyword begins so; the solver compares no more of most keywords.
  [[nodiscard]] bool is(std::string_view keyword_start) const;
};

/// The nodes of a set in the order of the deck. A node that is listed twice stands twice.
struct NodeSet {
  std::vector<std::int32_t> nodes;
  std::string doubt;  ///< why nobody should rely on it, as a sentence; empty if all is well
};

/// A card *TRANSFORM: a system of coordinates for the degrees of freedom of some nodes.
struct Transform {
  std::size_t line = 0;  ///< index into Deck::lines
  std::string set;
  content::System system;
};

/// A step, whose number is its place from 1.
struct Step {
  std::size_t line = 0;   ///< where it begins, index into Deck::lines
  std::string procedure;  ///< keyword of the card that says what is solved: "STATIC"; may be empty
};

/// A card *AMPLITUDE; the first that has the name.
struct Amplitude {
  std::size_t line = 0;  ///< index into Deck::lines
  std::string name;      ///< in capitals
};

/// A deck: its lines, and what they mean. Moving it keeps the lines valid, copying does not.
struct Deck {
  Deck() = default;
  Deck(Deck&&) noexcept = default;
  Deck& operator=(Deck&&) noexcept = default;
  Deck(const Deck&) = delete;
  Deck& operator=(const Deck&) = delete;

  std::vector<std::unique_ptr<File>> files;  ///< the first is the deck, then what it includes
  std::vector<Line> lines;                   ///< of all files, in the order of the solver
  std::vector<Card> cards;

  mesh::Mesh mesh;
  mesh::NodeIndex index_of_node;  ///< into the nodes of the mesh
  std::int32_t highest_node = 0;
  std::unordered_set<std::int32_t> network_nodes;  ///< of network and flow elements
  std::unordered_map<std::string, NodeSet> sets;   ///< names in capitals
  std::vector<Amplitude> amplitudes;               ///< records count them from 2
  std::vector<Transform> transforms;               ///< the first is number 1
  std::unordered_map<std::int32_t, std::int32_t> transform_of_node;  ///< numbers of transforms
  std::vector<Step> steps;

  std::vector<Remark> remarks;  ///< what was noticed while reading

  /// SHA-256 of the bytes of all files one after the other, in hexadecimal digits. For a deck that
  /// includes nothing it is the digest of the file.
  [[nodiscard]] std::string checksum() const;
  [[nodiscard]] int step_count() const { return static_cast<int>(steps.size()); }
  /// The number by which records know an amplitude; 0 if the deck does not have it.
  [[nodiscard]] content::Key number_of_amplitude(std::string_view name) const;
  /// The number of a line in its file, from 1.
  [[nodiscard]] std::int32_t number_of_line(std::size_t line) const {
    return static_cast<std::int32_t>(lines[line].number);
  }
  [[nodiscard]] Remark remark_at(std::size_t line, std::string reason) const;
};

/// Reads a deck with all that it includes. Throws Error.
Deck read(const std::string& path, const OpenFile& open);
Deck read(const std::string& path);

}  // namespace deck

#include "tools/deck/export.h"

#include <algorithm>
#include <map>
#include <unordered_map>

#include "tools/content/record_name.h"
#include "tools/deck/alignment.h"
#include "tools/deck/carried.h"
#include "tools/deck/encoding.h"
#include "tools/deck/fields.h"
#include "tools/deck/record_rows.h"

namespace deck {
namespace {

/// What becomes of a line of the deck.
struct Edit {
  bool is_replaced = false;  ///< by `text`, which may be nothing
  std::vector<std::string> before;
  std::vector<std::string> text;
  std::vector<std::string> after;
};

class Exporter {
 public:
  Exporter(const Deck& deck, const content::Content& content, const content::Source& source,
           const ExportOptions& options)
      : deck_(deck), content_(content), source_(source), options_(options) {}

  Exported run() {
    check_deck();
    // What else does not fit follows from that.
    if (!result_.refusals.empty()) return std::move(result_);
    note_nodes();
    const Carried carried = read_cards(deck_);
    records_ = rows_of(deck_, carried, content_, source_);
    append(result_.refusals, records_.refusals);
    append(result_.remarks, records_.remarks);
    for (const CarriedCard& card : carried.cards) cards_[card.place.key()].push_back(&card);
    for (const auto& [key, cards] : cards_) write_place(key, cards);
    for (const std::string& key : records_.keys) {
      if (!cards_.contains(key)) write_new_place(records_.places.at(key));
    }
    if (result_.refusals.empty()) put_together();
    return std::move(result_);
  }

 private:
  using Cards = std::vector<const CarriedCard*>;

  static void append(std::vector<std::string>& texts, const std::vector<std::string>& more) {
    texts.insert(texts.end(), more.begin(), more.end());
  }

  void check_deck() {
    if (options_.other_deck) return;
    const std::string& name = deck_.files.front()->path;
    if (source_.deck.empty()) {
      result_.refusals.push_back(
          "The model does not come from a deck, so that nothing tells which "
          "cards of " +
          name + " its records replace.");
    } else if (source_.checksum != deck_.checksum()) {
      result_.refusals.push_back("The model comes from " + source_.deck + ", and " + name +
                                 " is another deck or was changed since: the checksum of its bytes "
                                 "differs. Pass that deck, or ask for another one (orv export "
                                 "--other-deck).");
    }
  }

  /// Nodes stay as the deck has them.
  void note_nodes() {
    const content::Vertices& vertices = content_.vertices;
    std::size_t known = 0;
    std::size_t moved = 0;
    std::string first_moved;
    std::string first_unknown;
    for (std::size_t i = 0; i < vertices.ids.size(); ++i) {
      const std::uint32_t place = deck_.index_of_node.of(vertices.ids[i]);
      if (place == mesh::NodeIndex::none) {
        if (first_unknown.empty()) first_unknown = std::to_string(vertices.ids[i]);
        continue;
      }
      ++known;
      if (vertices.coordinates[i] == deck_.mesh.coordinates[place]) continue;
      if (moved++ == 0) first_moved = std::to_string(vertices.ids[i]);
    }
    note_count(moved, "have other coordinates in the model than in the deck, which keeps its own",
               first_moved);
    note_count(vertices.ids.size() - known, "are not in the deck, and not written", first_unknown);
    note_count(deck_.mesh.node_ids.size() - known, "are not in the model, and stay in the deck",
               {});
  }

  void note_count(std::size_t nodes, const std::string& what, const std::string& first) {
    if (nodes == 0) return;
    result_.remarks.push_back("Nodes that " + what + ": " + std::to_string(nodes) +
                              (first.empty() ? "." : "; the first is " + first + "."));
  }

  // --- Places that the deck has ---

  void write_place(const std::string& key, const Cards& cards) {
    const auto found = records_.places.find(key);
    if (found == records_.places.end()) {
      for (const CarriedCard* card : cards) remove(*card);
      return;
    }
    std::map<const CarriedCard*, std::size_t> rows_left;
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
      write_kind(static_cast<Kind>(kind), cards, found->second.rows[kind], rows_left);
    }
    for (const CarriedCard* card : cards) {
      // What is left of OP=NEW ends the loads of earlier steps; other cards without rows are noise.
      const bool is_emptied = !card->rows.empty() && rows_left[card] == 0;
      const std::string* op = card->card->find("OP");
      if (is_emptied && (op == nullptr || *op != "NEW"))
        edits_[card->card->first].is_replaced = true;
    }
  }

  void remove(const CarriedCard& card) {
    edits_[card.card->first].is_replaced = true;
    for (const CarriedLine& line : card.lines) edits_[line.line].is_replaced = true;
  }

  /// The lines of one kind among the cards of a place.
  void write_kind(Kind kind, const Cards& cards, const std::vector<RecordRow>& rows,
                  std::map<const CarriedCard*, std::size_t>& rows_left) {
    struct Span {
      const CarriedCard* card;
      const CarriedLine* line;
    };
    std::vector<Span> spans;
    std::vector<const Row*> deck_rows;
    for (const CarriedCard* card : cards) {
      for (const CarriedLine& line : card->lines) {
        if (line.kind != kind) continue;
        spans.push_back({card, &line});
        for (std::size_t row = line.begin; row < line.end; ++row) {
          deck_rows.push_back(&card->rows[row]);
        }
      }
    }
    const Alignment alignment = align(deck_rows, rows);
    auto added = alignment.added.begin();
    const auto added_at = [&](std::size_t place, std::vector<std::string>& texts) {
      std::size_t count = 0;
      for (; added != alignment.added.end() && added->first == place; ++added, ++count) {
        texts.push_back(new_row_text(rows[added->second]));
      }
      return count;
    };

    std::size_t at = 0;
    for (const Span& span : spans) {
      std::size_t& left = rows_left[span.card];
      const std::size_t end = at + span.line->end - span.line->begin;
      if (added != alignment.added.end() && added->first == at) {
        left += added_at(at, edits_[span.line->line].before);
      }
      const bool is_split = added != alignment.added.end() && added->first < end;
      const auto first = alignment.matched.begin() + static_cast<std::ptrdiff_t>(at);
      const auto last = alignment.matched.begin() + static_cast<std::ptrdiff_t>(end);
      const bool is_whole = !is_split && std::find(first, last, Alignment::kGone) == last;
      if (is_whole) {
        left += end - at;
        if (at == end) ++left;  // a line on an empty set
        write_whole_line(*span.line, span.card->rows, rows, alignment.matched.data() + at);
      } else {
        Edit& edit = edits_[span.line->line];
        edit.is_replaced = true;
        for (std::size_t row = at; row < end; ++row) {
          if (row > at) left += added_at(row, edit.text);
          if (alignment.matched[row] == Alignment::kGone) continue;
          edit.text.push_back(row_text(rows[alignment.matched[row]]));
          ++left;
        }
      }
      at = end;
    }
    if (added == alignment.added.end()) return;
    const CarriedCard& card = *cards.back();
    const std::size_t last_line = card.lines.empty() ? card.card->first : card.lines.back().line;
    rows_left[&card] += added_at(at, edits_[last_line].after);
  }

  /// All rows of the line are there: it keeps its text, or its node or set with another value.
  void write_whole_line(const CarriedLine& line, const std::vector<Row>& deck_rows,
                        const std::vector<RecordRow>& rows, const std::size_t* matched) {
    const std::size_t count = line.end - line.begin;
    bool is_same = true;
    bool is_uniform = true;
    for (std::size_t i = 0; i < count; ++i) {
      const double value = rows[matched[i]].row.value;
      is_same &= value == deck_rows[line.begin + i].value;
      is_uniform &= value == rows[matched[0]].row.value;
    }
    if (count == 0 || (is_same && !options_.every_row)) return;
    Edit& edit = edits_[line.line];
    edit.is_replaced = true;
    if (!is_uniform || options_.every_row) {
      for (std::size_t i = 0; i < count; ++i) edit.text.push_back(row_text(rows[matched[i]]));
      return;
    }
    const std::string_view text = deck_.lines[line.line].text();
    RecordRow row = rows[matched[0]];
    for (std::size_t i = line.begin; i < line.end; ++i) {
      row.row.last = std::max(row.row.last, deck_rows[i].last);
    }
    edit.text.push_back(row_text(row, compact(text.substr(0, text.find(',')))));
  }

  // --- Places that the deck does not have ---

  void write_new_place(const PlaceRows& place) {
    std::vector<std::string> lines;
    for (const auto& rows : place.rows) {
      for (const RecordRow& row : rows) lines.push_back(new_row_text(row));
    }
    if (lines.empty()) return;
    lines.insert(lines.begin(), place.place.keyword_line());
    if (place.place.step == 0) {
      add_to_model_part(lines);
    } else {
      add_to_step(place.place.step, lines);
    }
  }

  void add_to_model_part(const std::vector<std::string>& lines) {
    const auto step = std::find_if(deck_.cards.begin(), deck_.cards.end(),
                                   [](const Card& card) { return card.step > 0; });
    if (step == deck_.cards.end()) {
      append(end_, lines);
    } else {
      add_before(*step, lines);
    }
  }

  void add_to_step(int step, const std::vector<std::string>& lines) {
    const auto end = std::find_if(deck_.cards.begin(), deck_.cards.end(), [step](const Card& card) {
      return card.step == step && card.is("ENDSTEP");
    });
    if (end != deck_.cards.end()) {
      add_before(*end, lines);
    } else if (step == deck_.step_count()) {
      append(end_, lines);
    } else {
      result_.refusals.push_back("Step " + std::to_string(step) +
                                 " of the deck has no *END STEP, before which " + lines.front() +
                                 " could be written.");
    }
  }

  void add_before(const Card& card, const std::vector<std::string>& lines) {
    if (deck_.lines[card.first].file != 0) {
      result_.refusals.push_back(
          deck_
              .remark_at(card.first, "Before this line " + lines.front() +
                                         " would have to be written, and included files are left "
                                         "alone.")
              .text());
      return;
    }
    append(edits_[card.first].before, lines);
  }

  // --- Texts ---

  std::string number(const RecordRow& row) {
    const NumberText text = number_text(row.row.value);
    if (!text.is_exact) {
      result_.rounded.push_back(
          {content::name_of(*row.table, row.record), row.row.value, text.text});
    }
    return text.text;
  }

  std::string row_text(const RecordRow& row) { return row_text(row, std::to_string(row.row.node)); }

  /// The data line of a row; `nodes` is its node or a set.
  std::string row_text(const RecordRow& record_row, const std::string& nodes) {
    const Row& row = record_row.row;
    const std::string first = std::to_string(row.first);
    const std::string last = std::to_string(row.last);
    switch (row.kind) {
      case Kind::kSupport:
        return nodes + "," + first + (row.last == row.first ? "" : "," + last);
      case Kind::kDisplacement:
      case Kind::kAppliedTemperature:
        return nodes + "," + first + "," + last + "," + number(record_row);
      case Kind::kTemperature:
        return nodes + "," + number(record_row);
      default:
        return nodes + "," + first + "," + number(record_row);
    }
  }

  /// The same for a row that the deck did not have, which must make sense on its node.
  std::string new_row_text(const RecordRow& row) {
    const std::int32_t node = row.row.node;
    const std::string name = content::name_of(*row.table, row.record);
    const bool is_thermal = row.row.kind == Kind::kTemperature ||
                            row.row.kind == Kind::kAppliedTemperature ||
                            row.row.kind == Kind::kHeatSource;
    if (!deck_.index_of_node.contains(node)) {
      result_.refusals.push_back(name + " is on node " + std::to_string(node) +
                                 ", which the deck does not have.");
    } else if (!is_thermal && deck_.network_nodes.contains(node)) {
      result_.refusals.push_back(name + " is on node " + std::to_string(node) +
                                 " of a network or flow element, where the degrees of freedom are "
                                 "flows and pressures.");
    }
    return row_text(row);
  }

  void put_together() {
    std::string& text = result_.text;
    const File& file = *deck_.files.front();
    text.reserve(file.text.size());
    const std::size_t first_end = file.text.find('\n');
    const bool has_returns =
        first_end != std::string::npos && first_end > 0 && file.text[first_end - 1] == '\r';
    const std::string_view line_end = has_returns ? "\r\n" : "\n";
    const auto put = [&](const std::vector<std::string>& lines) {
      for (const std::string& line : lines) {
        if (!text.empty() && text.back() != '\n') text += line_end;
        text.append(line).append(line_end);
      }
    };
    for (std::size_t i = 0; i < deck_.lines.size(); ++i) {
      const Line& line = deck_.lines[i];
      if (line.file != 0) continue;
      const auto edit = edits_.find(i);
      if (edit != edits_.end()) put(edit->second.before);
      if (edit == edits_.end() || !edit->second.is_replaced) text.append(line.bytes, line.size);
      if (edit == edits_.end()) continue;
      put(edit->second.text);
      put(edit->second.after);
    }
    put(end_);
    if (!file.is_utf8()) text = to_windows_1252(text);
  }

  const Deck& deck_;
  const content::Content& content_;
  const content::Source& source_;
  const ExportOptions options_;
  Exported result_;
  RecordRows records_;
  std::map<std::string, Cards> cards_;  ///< by Place::key()
  std::unordered_map<std::size_t, Edit> edits_;
  std::vector<std::string> end_;
};

}  // namespace

Exported write(const Deck& deck, const content::Content& content, const content::Source& source,
               const ExportOptions& options) {
  return Exporter(deck, content, source, options).run();
}

}  // namespace deck

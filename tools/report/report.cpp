#include "tools/report/report.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <ranges>
#include <string_view>

#include "tools/content/shown_text.h"
#include "tools/picture/svg.h"
#include "tools/report/style.h"

namespace report {
namespace {

using checks::Severity;
using svg::escaped;

std::string paragraph(const std::string& text, const std::string& attributes = "") {
  return "<p" + attributes + '>' + escaped(text) + "</p>\n";
}

std::string counted(std::size_t count, const std::string& noun) {
  return svg::count(count) + ' ' + noun + (count == 1 ? "" : "s");
}

// Findings and sets beyond are counted: a page that is too long to read helps nobody.
constexpr std::size_t kMost = 100;

// The names of sets by the names of their tables and their keys.
using SetNames = std::map<std::pair<std::string, content::Key>, std::string>;

SetNames names_of_sets(const content::Content& content) {
  SetNames names;
  for (const content::SetTable& table : content.set_tables) {
    for (const content::Set& set : table.sets) names[{table.name, set.id}] = set.name;
  }
  return names;
}

// What a column says when it is not 0; empty, if it has a number. The names of these columns mean
// the same in all kinds.
std::string_view word_of(std::string_view column) {
  constexpr std::array<std::string_view, 9> kHeld = {"Tx", "Ty",     "Tz",     "Rx",    "Ry",
                                                     "Rz", "FixedX", "FixedY", "FixedZ"};
  constexpr std::array<std::string_view, 7> kTrue = {
      "UseX", "UseY", "UseZ", "UseMassUnits", "IsRotation", "IsTimeVarying", "SeparateWindow"};
  if (std::ranges::find(kHeld, column) != kHeld.end()) return "held";
  return std::ranges::find(kTrue, column) != kTrue.end() ? "yes" : "";
}

class Page {
 public:
  Page(const mesh::Mesh& mesh, const content::Content& content, const Options& options)
      : mesh_(mesh), content_(content), options_(options), set_names_(names_of_sets(content)) {}

  std::string write() {
    head();
    picture();
    findings();
    resultants();
    sets();
    tables();
    text_ += "</body>\n</html>\n";
    return std::move(text_);
  }

 private:
  void head() {
    text_ +=
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
        escaped(options_.title) + "</title>\n<style>" + style + "</style>\n</head>\n<body>\n<h1>" +
        escaped(options_.title) + "</h1>\n";
    if (!options_.subtitle.empty()) text_ += paragraph(options_.subtitle, " class=\"quiet\"");
    std::size_t elements = 0;
    for (const mesh::Block& block : mesh_.blocks) elements += block.ids.size();
    std::size_t records = 0;
    for (const content::Table& table : content_.tables) records += table.size();
    const std::size_t nodes =
        mesh_.node_ids.empty() ? content_.vertices.ids.size() : mesh_.node_ids.size();
    text_ += paragraph(counted(nodes, "node") + ", " + counted(elements, "element") + ", " +
                       counted(records, "record") + " of loads and constraints.");
  }

  void picture() {
    picture::Options options = options_.picture;
    options.has_legend = false;
    options.title.clear();
    const picture::Picture picture = picture::draw(mesh_, content_, options);
    text_ += "<h2>Picture</h2>\n<div class=\"picture\">\n" + picture.svg +
             "</div>\n<ul class=\"legend\">\n";
    for (const picture::LegendEntry& entry : picture.legend) add(entry);
    text_ += "</ul>\n";
    for (const std::string& note : picture.notes) text_ += paragraph(note, " class=\"quiet\"");
  }

  void add(const picture::LegendEntry& entry) {
    std::string count = svg::count(entry.records);
    if (entry.drawn < entry.records) count += " (" + svg::count(entry.drawn) + " drawn)";
    if (!entry.range.empty()) count += ": " + entry.range;
    text_ += "<li><svg width=\"40\" height=\"28\" viewBox=\"-20 -14 40 28\" color=\"" +
             entry.color + "\">" + entry.sample + "</svg><span>" + escaped(entry.name) + "<small>" +
             escaped(count) + "</small></span></li>\n";
  }

  void findings() {
    text_ += "<h2>Findings</h2>\n";
    if (options_.findings.empty()) text_ += paragraph("Nothing was found.");
    auto findings = options_.findings;
    std::ranges::stable_sort(findings, std::ranges::greater(), &checks::Finding::severity);
    for (const checks::Finding& finding : findings | std::views::take(kMost)) {
      constexpr std::array<const char*, 3> names = {"note", "warning", "error"};
      const std::string name = names.at(static_cast<std::size_t>(finding.severity));
      text_ += "<div class=\"finding " + name + "\"><b>" + name + "</b> <code>" +
               escaped(finding.code) + "</code>\n" + paragraph(finding.what);
      if (!finding.where.empty()) text_ += paragraph(finding.where, " class=\"quiet\"");
      if (!finding.advice.empty()) text_ += paragraph(finding.advice);
      text_ += "</div>\n";
    }
    tell_of_rest(findings.size(), "findings, the worst first; orv check prints all.");
  }

  void tell_of_rest(std::size_t count, const std::string& what) {
    if (count <= kMost) return;
    text_ += paragraph("The first " + svg::count(kMost) + " of " + svg::count(count) + ' ' + what,
                       " class=\"quiet\"");
  }

  void resultants() {
    if (options_.resultants.empty()) return;
    text_ += "<h2>Resultants</h2>\n";
    const auto& point = options_.resultants.front().point;
    text_ += paragraph("Moments about (" + svg::readable(point[0]) + ", " +
                           svg::readable(point[1]) + ", " + svg::readable(point[2]) + ").",
                       " class=\"quiet\"");
    begin_table({"Of", "Loads", "Fx", "Fy", "Fz", "Mx", "My", "Mz"}, 1, 8);
    // Steps stand behind the sets, which may be many.
    const auto is_step = [](const checks::Resultant& sum) { return sum.step > 0; };
    const auto sets = std::ranges::count_if(options_.resultants, std::not_fn(is_step));
    std::size_t told = 0;
    for (const checks::Resultant& sum : options_.resultants) {
      if (!is_step(sum) && ++told > kMost) continue;
      text_ += "<tr>";
      name_cell(sum.of);
      cell(svg::count(sum.records), "number");
      for (const double value : sum.rounded_force()) cell(svg::readable(value), "number");
      for (const double value : sum.rounded_moment()) cell(svg::readable(value), "number");
      text_ += "</tr>\n";
    }
    end_table();
    tell_of_rest(static_cast<std::size_t>(sets), "sets with forces, and the steps.");
    for (const checks::Resultant& sum : options_.resultants | std::views::take(kMost)) {
      if (sum.left_out > 0) {
        text_ +=
            paragraph(content::shown_name(sum.of) + ": without " + counted(sum.left_out, "record") +
                          ", of which no coordinates, axes or finite numbers are known.",
                      " class=\"quiet\"");
      }
      if (sum.with_amplitude > 0) {
        text_ +=
            paragraph(content::shown_name(sum.of) + ": " + counted(sum.with_amplitude, "record") +
                          " with an amplitude, which counts as 1.",
                      " class=\"quiet\"");
      }
    }
  }

  void sets() {
    std::map<std::pair<std::string, content::Key>, std::map<std::string, std::size_t>> counts;
    for (const content::Table& table : content_.tables) {
      for (const auto& ids : table.set_ids) {
        for (const content::Key id : ids) ++counts[{table.sets, id}][table.name];
      }
    }
    if (set_names_.empty() && counts.empty()) return;
    text_ += "<h2>Sets</h2>\n";
    begin_table({"Table", "Key", "Name", "Records"}, 1, 2);
    for (const auto& [set, name] : set_names_ | std::views::take(kMost)) {
      text_ += "<tr>";
      cell(set.first, "");
      cell(std::to_string(set.second), "number");
      name_cell(name);
      std::string records;
      for (const auto& [table, count] : counts[set]) {
        records += (records.empty() ? "" : ", ") + svg::count(count) + ' ' + table;
      }
      cell(records.empty() ? "none" : records, "text");
      text_ += "</tr>\n";
    }
    end_table();
    tell_of_rest(set_names_.size(), "sets.");
  }

  void tables() {
    bool has_records = false;
    for (const content::Table& table : content_.tables) {
      if (table.size() == 0) continue;
      if (!has_records) text_ += "<h2>Records</h2>\n";
      has_records = true;
      add(table);
    }
  }

  void add(const content::Table& table) {
    text_ += "<h3>" + escaped(table.name) + "</h3>\n";
    // Records that come straight from a deck have no keys, and most have no description.
    has_keys_ = std::ranges::any_of(table.ids, [](content::Key id) { return id != 0; });
    has_descriptions_ =
        std::ranges::any_of(table.descriptions, [](const auto& d) { return !d.empty(); });
    std::vector<std::string> names;
    if (has_keys_) names.emplace_back("Key");
    names.emplace_back("Node");
    names.insert(names.end(), table.columns.begin(), table.columns.end());
    const std::size_t numbers = names.size();
    names.emplace_back("Sets");
    if (has_descriptions_) names.emplace_back("Description");
    begin_table(names, 0, numbers);
    const std::size_t rows = std::min(table.size(), options_.rows);
    for (std::size_t record = 0; record < rows; ++record) add(table, record);
    end_table();
    if (rows < table.size()) {
      text_ += paragraph(
          "The first " + svg::count(rows) + " of " + svg::count(table.size()) + " records.",
          " class=\"quiet\"");
    }
  }

  void add(const content::Table& table, std::size_t record) {
    text_ += "<tr>";
    if (has_keys_) {
      cell(table.ids[record] == 0 ? "" : std::to_string(table.ids[record]), "number");
    }
    cell(std::to_string(table.vertices[record]), "number");
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
      const double value = table.values[record * table.columns.size() + column];
      if (const auto word = word_of(table.columns[column]); !word.empty()) {
        cell(value == 0 ? "" : std::string(word), "number");  // below the column's name
      } else {
        cell(svg::exact(value), "number");
      }
    }
    std::string sets;
    for (const content::Key id : table.set_ids[record]) {
      const auto name = set_names_.find({table.sets, id});
      sets += (sets.empty() ? "" : "; ") +
              (name != set_names_.end() ? content::shown_name(name->second) : std::to_string(id));
    }
    cell(sets, "text");
    if (has_descriptions_) name_cell(table.descriptions[record]);
    text_ += "</tr>\n";
  }

  // The columns from `first` to before `end` are numbers.
  void begin_table(const std::vector<std::string>& names, std::size_t first, std::size_t end) {
    text_ += "<div class=\"wide\"><table><thead><tr>";
    for (std::size_t i = 0; i < names.size(); ++i) {
      text_ +=
          (first <= i && i < end ? "<th class=\"number\">" : "<th>") + escaped(names[i]) + "</th>";
    }
    text_ += "</tr></thead><tbody>\n";
  }

  void end_table() { text_ += "</tbody></table></div>\n"; }

  // Pages of one name would help nobody.
  void name_cell(const std::string& name) { cell(content::shown_name(name), "text"); }

  void cell(const std::string& text, const std::string& kind) {
    text_ += (kind.empty() ? "<td>" : "<td class=\"" + kind + "\">") + escaped(text) + "</td>";
  }

  const mesh::Mesh& mesh_;
  const content::Content& content_;
  const Options& options_;
  SetNames set_names_;
  std::string text_;
  bool has_keys_ = false;  // of the table that is being written
  bool has_descriptions_ = false;
};

}  // namespace

std::string html(const mesh::Mesh& mesh, const content::Content& content, const Options& options) {
  return Page(mesh, content, options).write();
}

}  // namespace report

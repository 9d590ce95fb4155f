// Brings decks into records and writes them back, without a model database in between.
//
//   deck_roundtrip FROM TO [--rows] [--scale FACTOR] [--empty] < NAMES
//
// FROM and TO are folders, and NAMES are names of decks, one a line. --rows writes every record as
// a row, --scale multiplies forces and moments, --empty deletes all records. Prints "NAME: records
// N", "NAME: stays LINE" for each line about which there is a remark, and "NAME: error TEXT".

#include <cwchar>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "tools/deck/deck.h"
#include "tools/deck/export.h"
#include "tools/deck/import.h"

namespace {

struct Options {
  std::filesystem::path from;
  std::filesystem::path to;
  bool every_row = false;
  bool is_empty = false;
  double factor = 1;
};

void scale(content::Table& table, double factor) {
  if (table.name != "NodalForces" && table.name != "NodalMoments") return;
  const std::size_t width = table.columns.size();
  for (std::size_t i = 1; i < table.values.size(); i += width) table.values[i] *= factor;
}

void clear(content::Table& table) {
  table.ids.clear();
  table.vertices.clear();
  table.values.clear();
  table.set_ids.clear();
}

std::string utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

void bring(const Options& options, const std::string& name) {
  const deck::Deck deck = deck::read(utf8(options.from / name));
  deck::Imported imported = deck::import(deck);
  std::size_t records = 0;
  for (content::Table& table : imported.content.tables) {
    records += table.size();
    scale(table, options.factor);
    if (options.is_empty) clear(table);
  }
  std::cout << name << ": records " << records << "\n";
  for (const deck::Remark& remark : imported.remarks) {
    if (remark.file != deck.files.front()->path) continue;
    std::cout << name << ": stays " << remark.line << "\n";
  }
  const deck::Exported exported =
      deck::write(deck, imported.content, imported.source, {.every_row = options.every_row});
  for (const std::string& refusal : exported.refusals) {
    std::cout << name << ": error " << refusal << "\n";
  }
  std::ofstream(options.to / name, std::ios::binary) << exported.text;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count < 3) return 2;
  Options options{arguments[1], arguments[2]};
  for (int i = 3; i < count; ++i) {
    const std::wstring argument = arguments[i];
    if (argument == L"--rows") options.every_row = true;
    if (argument == L"--empty") options.is_empty = true;
    if (argument == L"--scale" && i + 1 < count)
      options.factor = std::wcstod(arguments[++i], nullptr);
  }
  for (std::string name; std::getline(std::cin, name);) {
    while (!name.empty() && name.back() == '\r') name.pop_back();
    try {
      bring(options, name);
    } catch (const deck::Error& error) {
      std::cout << name << ": error " << error.what() << "\n";
    }
  }
  return 0;
}

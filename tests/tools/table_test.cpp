#include "tools/orv/table.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tools/content/shown_text.h"

namespace {

orv::Table forces() {
  orv::Table table({"NodalForceID", "Description", "Magnitude", "Vz", "LoadSets"});
  const auto add = [&table](const char* key, const char* description, const char* magnitude) {
    table.add_number(key);
    table.add_text(description);
    table.add_number(magnitude);
    table.add_number("0");
    table.add_text("Step 1, CLOAD, AMPLITUDE=RAMP");
  };
  add("9", "B\u00f6e \u98a8\u529b", "1250.5");  // two characters of two columns each
  add("10", "e\u0301\n\x1b[2J", "-3");          // an accent of its own, and what clears a screen
  return table;
}

std::vector<std::string> lines(orv::Table table, std::optional<std::size_t> terminal) {
  std::stringstream out;
  table.write(out, terminal);
  std::vector<std::string> lines;
  for (std::string line; std::getline(out, line);) lines.push_back(line);
  return lines;
}

TEST(Table, ColumnsAreAlignedAsATerminalShowsThem) {
  orv::Table table = forces();
  EXPECT_EQ(std::vector<std::string>{"Vz"}, table.take_zeros());
  EXPECT_EQ((std::vector<std::string>{
                "NodalForceID  Description  Magnitude  LoadSets",
                "           9  B\u00f6e \u98a8\u529b        1250.5  Step 1, CLOAD, AMPLITUDE=RAMP",
                "          10  e\u0301\\n\\x1B[2J        -3    Step 1, CLOAD, AMPLITUDE=RAMP",
            }),
            lines(table, std::nullopt));
}

TEST(ShownText, WhatWouldSteerATerminalIsShownAsItsNumber) {
  EXPECT_EQ("no file\n\"\\x1B[2J\"", content::without_controls("no file\n\"\x1b[2J\""));
}

TEST(Table, NoLineIsLongerThanTheTerminalAndNothingIsLost) {
  for (const std::size_t terminal : {40U, 60U, 80U, 200U}) {
    SCOPED_TRACE(terminal);
    std::string all;
    for (const std::string& line : lines(forces(), terminal)) {
      EXPECT_LE(content::columns_of(line), terminal) << line;
      all += line + "\n";
    }
    for (const char* part : {"Description", "Magnitude", "Vz", "LoadSets", "1250.5", "Step 1, C"}) {
      EXPECT_NE(std::string::npos, all.find(part)) << part;
    }
  }
}

}  // namespace

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/deck/fuzz.h"

TEST(DeckCorpus, WhatTheFuzzerFoundIsStillRead) {
  int decks = 0;
  for (const auto& entry : std::filesystem::directory_iterator(u8"" ORV_CORPUS)) {
    SCOPED_TRACE(entry.path().filename().string());
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    try_reading(bytes);
    try_round_trip(bytes);
    ++decks;
  }
  EXPECT_GT(decks, 0);
}

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/deck/fuzz.h"

TEST(DeckCorpus, WhatTheFuzzerFoundIsStillRead) {
  int decks = 0;
  for (const auto& entry : std::filesystem::directory_iterator(u8"" ORV_CORPUS)) {
    SCOPED_TRACE(entry.path().filename().string());
    std::ifstream file(entry.path(), std::ios::binary);
    try_deck({std::istreambuf_iterator<char>(file), {}});
    ++decks;
  }
  EXPECT_GT(decks, 0);
}

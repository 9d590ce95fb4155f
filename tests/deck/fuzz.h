#pragma once

#include <string>

/// Reads a deck, writes it back unchanged, row by row and with other loads, and ends the program
/// where that contradicts what was read.
void try_deck(const std::string& bytes);

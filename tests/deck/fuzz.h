#pragma once

#include <string>

// Both end the program where what comes out contradicts what went in.

/// Reads a deck and makes records of it.
void try_reading(const std::string& bytes);
/// Writes what was read back: unchanged, row by row, and with other loads.
void try_round_trip(const std::string& bytes);

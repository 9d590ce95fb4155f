#pragma once

#include <string>
#include <string_view>

namespace deck {

// Decks say nothing of their encoding, and the solver compares bytes. A file that is no UTF-8 is
// taken for Windows code page 1252, in which every byte is a character.

std::string from_windows_1252(std::string_view bytes);
/// The bytes of a text; '?' for a character that the code page does not have.
std::string to_windows_1252(std::string_view utf8);

}  // namespace deck

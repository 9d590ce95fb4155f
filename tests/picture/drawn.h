#pragma once

#include <map>
#include <string>

namespace tests {

/// What a picture holds, read from its text.
struct Drawn {
  std::map<std::string, int> records;                ///< how often "NodalForce 12" is drawn
  std::map<std::string, std::string> definition_of;  ///< of records whose glyph is a common one
  double left = 1e9, top = 1e9, right = -1e9, bottom = -1e9;  ///< of everything but texts
};

Drawn read_picture(const std::string& svg);

}  // namespace tests

#pragma once

#include <string>

namespace orv {

/// The sentence with the full paths that stand in quotation marks as the system has them that the
/// user types on: under Wine "Z:\home\ann\a.inp" is "/home/ann/a.inp".
std::string with_system_paths(const std::string& sentence);

}  // namespace orv

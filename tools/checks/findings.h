#pragma once

#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "tools/checks/codes.h"
#include "tools/checks/finding.h"

namespace checks {

/// Collects what the checks find, and puts it into words.
class Findings {
 public:
  /// A record with a fault, and the set and step where it shows, if it does in one. A record that
  /// is added twice running counts once.
  void add(Code code, const content::Table& table, std::size_t record, std::string_view set = {},
           int step = -1);
  void add_set(Code code, Severity severity, const std::string& table, const content::Set& set);
  void add_step(Code code, Severity severity, int step);

  /// The worst first, and otherwise in the order of the codes. Nothing is left here.
  std::vector<Finding> finish();

 private:
  struct Entry {
    Severity severity = Severity::note;
    const content::Table* table = nullptr;
    std::vector<std::size_t> records;
    std::vector<content::Set> sets;
  };
  using Spot = std::tuple<Code, std::string, std::string, int>;  ///< code, table, set, step

  static Finding told(const Spot& spot, const Entry& entry);

  std::map<Spot, Entry> entries_;
};

}  // namespace checks

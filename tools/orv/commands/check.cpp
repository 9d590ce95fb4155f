// orv check: what there is to say of a model before it is solved.

#include "tools/checks/check.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tools/checks/json.h"
#include "tools/checks/resultants.h"
#include "tools/checks/text.h"
#include "tools/model/subject.h"
#include "tools/orv/command.h"
#include "tools/orv/exit_status.h"
#include "tools/orv/model_file.h"
#include "tools/orv/progress.h"
#include "tools/orv/table.h"
#include "tools/orv/terminal.h"

namespace orv {
namespace {

struct Options {
  std::string model;
  std::vector<double> about{0, 0, 0};
  bool json = false;
};

std::string remark_on(const checks::Resultant& sum) {
  std::string remark;
  if (sum.left_out > 0) remark = "without " + std::to_string(sum.left_out) + " more";
  if (sum.with_amplitude == 0) return remark;
  return remark + (remark.empty() ? "" : "; ") + "amplitudes count as 1";
}

void print(const std::vector<checks::Resultant>& resultants) {
  if (resultants.empty()) return;
  const auto& point = resultants.front().point;
  std::cout << "Resultants, moments about (" << checks::number_text(point[0]) << ", "
            << checks::number_text(point[1]) << ", " << checks::number_text(point[2]) << ")\n";
  const bool has_remarks = std::ranges::any_of(
      resultants, [](const checks::Resultant& sum) { return !remark_on(sum).empty(); });
  std::vector<std::string> names{"of", "records", "Fx", "Fy", "Fz", "Mx", "My", "Mz"};
  if (has_remarks) names.emplace_back("remark");
  Table table(names);
  for (const checks::Resultant& sum : resultants) {
    table.add_text(sum.of);
    table.add_number(std::to_string(sum.records));
    for (const double component : sum.rounded_force()) {
      table.add_number(checks::number_text(component));
    }
    for (const double component : sum.rounded_moment()) {
      table.add_number(checks::number_text(component));
    }
    if (has_remarks) table.add_text(remark_on(sum));
  }
  table.write(std::cout, terminal_width());
}

void run(const Options& options) {
  const ModelFile file = ModelFile::open(options.model);
  model::Database database = file.database();
  std::vector<checks::Finding> findings;
  std::vector<checks::Resultant> resultants;
  {
    const Progress progress("Checking " + options.model);
    const model::CheckedModel checked(database);
    findings = checks::check(checked.subject());
    resultants = checks::resultants_of(checked.subject(),
                                       {options.about[0], options.about[1], options.about[2]});
  }
  if (options.json) {
    std::cout << checks::json(findings, resultants);
  } else {
    std::cout << (findings.empty() ? "Nothing was found.\n" : checks::text(findings)) << '\n';
    print(resultants);
  }
  const bool is_alarming = std::ranges::any_of(findings, [](const checks::Finding& finding) {
    return finding.severity != checks::Severity::note;
  });
  if (is_alarming) throw EndWith{kFindings};
}

const Command command(40, [](CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const check = program.add_subcommand(
      "check", "Tells what does not fit in a model, and what its loads add up to");
  check->add_option("MODEL", options->model, "The model")->required();
  check
      ->add_option("--about", options->about,
                   "The point about which moments are taken, such as 0,0,1.5; the origin unless "
                   "told")
      ->delimiter(',')
      ->expected(3);
  check->add_flag("--json", options->json, "A JSON object, for programs");
  add_example(check,
              "orv check plate.orvdb --about 0,0,1.5\n"
              "The exit status is 3 when an error or a warning was found.");
  check->callback([options] { run(*options); });
});

}  // namespace
}  // namespace orv

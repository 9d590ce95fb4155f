#include "tools/report/report.h"

#include <gmock/gmock.h>

#include "tests/geometry/meshes.h"
#include "tests/picture/models.h"

namespace report {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::string page(const Options& options) {
  content::Content content = tests::all_kinds();
  content.set_tables.push_back({"LoadSets", {{1, "Wind & <snow>"}, {2, "Empty"}}});
  for (content::Table& table : content.tables) {
    if (table.name == "NodalForces") table.set_ids[0] = {1};
  }
  return html(tests::box("C3D8", {1, 1, 1}), content, options);
}

// Every tag that is opened is closed in its turn, but for those that HTML leaves open.
std::string first_unbalanced(const std::string& html) {
  std::vector<std::string> open;
  for (std::size_t at = html.find('<'); at != std::string::npos; at = html.find('<', at + 1)) {
    const std::size_t end = html.find('>', at);
    const std::string tag = html.substr(at + 1, end - at - 1);
    if (tag[0] == '!' || tag.back() == '/' || tag.starts_with("meta")) continue;
    const std::string name = tag.substr(0, tag.find_first_of(" \n"));
    if (name[0] != '/') {
      open.push_back(name);
    } else if (open.empty() || open.back() != name.substr(1)) {
      return tag;
    } else {
      open.pop_back();
    }
  }
  return open.empty() ? "" : open.back();
}

TEST(Html, IsOnePageWithoutScriptsOrAnythingFromElsewhere) {
  const std::string text = page({});
  EXPECT_EQ(first_unbalanced(text), "");
  for (const char* outside : {"<script", "<link", "src=", "@import", "url(", " href=", "onload"}) {
    EXPECT_THAT(text, Not(HasSubstr(outside)));
  }
}

TEST(Html, TellsFindingsWithTheWorstFirstResultantsSetsAndRecords) {
  Options options;
  options.title = "Bridge <2> & more";
  options.findings = {
      {"empty-set", checks::Severity::note, "A set has no records.", "Empty", ""},
      {"no-support", checks::Severity::error, "Nothing is held.", "Step 1", "Add a support."}};
  checks::Resultant sum;
  sum.of = "Wind & <snow>";
  sum.add_force({0, 0, -250}, {2, 0, 0});
  sum.left_out = 2;
  options.resultants = {sum};
  const std::string text = page(options);
  EXPECT_THAT(text, HasSubstr("<h1>Bridge &lt;2&gt; &amp; more</h1>"));
  EXPECT_LT(text.find("Nothing is held."), text.find("A set has no records."));
  EXPECT_THAT(text, HasSubstr("Add a support."));
  EXPECT_THAT(text, HasSubstr("without 2 records, of which no coordinates"));
  EXPECT_THAT(text, HasSubstr("<td class=\"number\">-250</td><td class=\"number\">0</td>"
                              "<td class=\"number\">500</td>"));
  EXPECT_THAT(text, HasSubstr("<td class=\"text\">Wind &amp; &lt;snow&gt;</td>"
                              "<td class=\"text\">1 NodalForces</td>"));
  EXPECT_THAT(text, HasSubstr("<td class=\"text\">Empty</td><td class=\"text\">none</td>"));
  EXPECT_THAT(text, HasSubstr("<h3>NodalPrescribedInOutlets</h3>"));
  // A rigid support of x and z, and one that turns.
  EXPECT_THAT(text, HasSubstr("<td class=\"number\">held</td><td class=\"number\"></td>"
                              "<td class=\"number\">held</td><td class=\"number\">1e+10</td>"));
  EXPECT_THAT(text, HasSubstr("<td class=\"number\">1e+10</td><td class=\"number\">yes</td>"));
  EXPECT_EQ(text, page(options));
}

TEST(Html, LongTablesAreCutAndSaySo) {
  Options options;
  for (int i = 0; i < 101; ++i) {
    options.findings.push_back({.code = "no-set", .what = "Finding " + std::to_string(i)});
    checks::Resultant sum;
    sum.of = "Set " + std::to_string(i);
    options.resultants.push_back(sum);
  }
  options.resultants.push_back(options.resultants.front());
  options.resultants.back().of = "Step 1";
  options.resultants.back().step = 1;
  options.rows = 1;
  const std::string text = page(options);
  EXPECT_THAT(text, HasSubstr("The first 1 of 4 records."));
  EXPECT_THAT(text, Not(HasSubstr("The first 1 of 1 ")));
  EXPECT_THAT(text, HasSubstr("The first 100 of 101 findings"));
  EXPECT_THAT(text, Not(HasSubstr("Set 100")));
  EXPECT_THAT(text, HasSubstr("<td class=\"text\">Step 1</td>"));
}

}  // namespace
}  // namespace report

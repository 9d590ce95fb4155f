#include "tools/checks/step_actions.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tools/checks/acting.h"
#include "tools/checks/text.h"
#include "tools/content/record_name.h"
#include "tools/content/shown_text.h"

namespace checks {
namespace {

const char* name_of(Effect effect) {
  switch (effect) {
    case Effect::force:
      return "force";
    case Effect::heat:
      return "heat";
    case Effect::held:
      return "held";
    case Effect::moved:
      return "moved";
    case Effect::temperature:
      return "temperature";
    default:
      return "other";
  }
}

std::string amplitude_name(const Subject& subject, content::Key number) {
  if (number == 0) return "";
  const auto found =
      std::ranges::find(subject.source.amplitudes, number, &content::Numbered::number);
  return found == subject.source.amplitudes.end() ? std::to_string(number) : found->name;
}

}  // namespace

void each_action(const Subject& subject, int step,
                 const std::function<void(const StepAction&)>& use) {
  const Schedule schedule = schedule_of(subject);
  Acting acting(subject, schedule);
  acting.enter(step);
  acting.each([&](const Action& action) {
    const Statement& what = action.what;
    StepAction told{.node = what.node,
                    .freedom = what.freedom,
                    .what = name_of(what.effect),
                    .has_value = what.effect != Effect::held && what.effect != Effect::other,
                    .value = what.value,
                    .system = what.system,
                    .amplitude = amplitude_name(subject, what.multiplier),
                    .load_case = action.load_case,
                    .step = action.step,
                    .records = {}};
    for (const Origin& from : action.from) {
      const content::Table& table = *from.batch->table;
      told.records.push_back({.table = table.name,
                              .id = table.ids[from.record],
                              .name = content::shown_name(content::name_of(table, from.record)),
                              .set = from.batch->set_name});
    }
    use(told);
  });
}

std::string sentence_of(const StepAction& action) {
  std::string text = "node " + std::to_string(action.node);
  if (action.freedom != 0) text += ", freedom " + std::to_string(action.freedom);
  text.append(": ").append(action.what);
  if (action.has_value) text += " " + number_text(action.value);
  text += action.step == 0 ? ", said before the first step"
                           : ", said in step " + std::to_string(action.step);
  for (const ActingRecord& record : action.records) {
    text += (&record == action.records.data() ? " by " : ", ") + record.name;
    if (!record.set.empty()) text += " in \"" + record.set + "\"";
  }
  return text;
}

std::string actions_json(const Subject& subject, int step) {
  using Json = nlohmann::ordered_json;
  std::string text;
  each_action(subject, step, [&](const StepAction& action) {
    Json from = Json::array();
    for (const ActingRecord& record : action.records) {
      from.push_back({{"table", record.table}, {"record", record.id}, {"set", record.set}});
    }
    const Json json{{"node", action.node},
                    {"freedom", action.freedom},
                    {"what", action.what},
                    {"value", action.value},
                    {"system", action.system},
                    {"amplitude", action.amplitude},
                    {"load_case", action.load_case},
                    {"step", action.step},
                    {"from", from}};
    text += text.empty() ? "[\n" : ",\n";
    text += json.dump(-1, ' ', false, Json::error_handler_t::replace);
  });
  return text.empty() ? "[]\n" : text + "\n]\n";
}

}  // namespace checks

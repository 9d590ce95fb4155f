#include "tools/orv/step_states.h"

#include <ranges>
#include <vector>

#include "com/bstr.h"
#include "tools/text/utf8.h"

namespace orv {

StepStates::StepStates(const ModelFile& model) {
  com::Ptr<IHistory> history;
  com::check(model.object()->get_History(history.put()), model.object());
  long count = 0;
  com::check(history->get_Count(&count), history);
  for (long index = 0; index < count; ++index) {
    com::Ptr<IHistoryStep> step;
    com::check(history->Item(static_cast<int>(index), step.put()), history);
    long number = 0;
    com::Bstr name;
    VARIANT_BOOL is_undone = VARIANT_FALSE;
    com::check(step->get_Number(&number), step);
    com::check(step->get_Name(name.put()), step);
    com::check(step->get_IsUndone(&is_undone), step);
    states_.emplace(number, State{text::to_utf8(name.view()), is_undone != VARIANT_FALSE});
  }
}

void StepStates::print_changes(std::ostream& out, const StepStates& before) const {
  std::vector<std::string> undone;
  for (const auto& [number, state] : states_) {
    if (before.states_.at(number).is_undone == state.is_undone) continue;
    const std::string words = " step " + std::to_string(number) + ": " + state.name + "\n";
    if (state.is_undone) {
      undone.push_back("Undone" + words);
    } else {
      out << "Redone" + words;
    }
  }
  for (const std::string& line : undone | std::views::reverse) out << line;
}

}  // namespace orv

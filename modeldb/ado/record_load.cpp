#include "modeldb/ado/record_load.h"

#include <utility>

namespace modeldb {
namespace {

enum class Stage { kNone, kHasConnection, kHasSets };
thread_local Stage stage = Stage::kNone;

}  // namespace

void RecordLoad::connection_asked_for() { stage = Stage::kHasConnection; }

void RecordLoad::sets_created() {
  stage = stage == Stage::kHasConnection ? Stage::kHasSets : Stage::kNone;
}

bool RecordLoad::takes_recordset() { return std::exchange(stage, Stage::kNone) == Stage::kHasSets; }

void RecordLoad::forget() { stage = Stage::kNone; }

}  // namespace modeldb

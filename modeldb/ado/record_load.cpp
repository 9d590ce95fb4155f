#include "modeldb/ado/record_load.h"

#include "com/thread_value.h"

namespace modeldb {
namespace {

enum Stage : std::intptr_t { kNone, kHasConnection, kHasSets };
com::ThreadValue stage;

}  // namespace

void RecordLoad::connection_asked_for() { stage.set(kHasConnection); }

void RecordLoad::sets_created() { stage.set(stage.get() == kHasConnection ? kHasSets : kNone); }

bool RecordLoad::takes_recordset() {
  const bool takes = stage.get() == kHasSets;
  forget();
  return takes;
}

void RecordLoad::forget() {
  if (stage.get() != kNone) stage.set(kNone);
}

}  // namespace modeldb

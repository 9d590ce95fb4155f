#include "modeldb/store/refusal.h"

#include <optional>

#include "modeldb/base/failure.h"
#include "modeldb/schema/vertex_guard.h"

namespace modeldb {
namespace {

template <class Interface>
com::Ptr<Interface> query(IDispatch* object, REFIID iid) {
  com::Ptr<Interface> found;
  if (object) object->QueryInterface(iid, found.put_void());
  return found;
}

/// The ID of the record's first set that the model does not have; nothing when it has them all.
std::optional<long> missing_set(Database& database, const Table& sets, const Record& record) {
  const auto collection =
      query<IPersistentCollection>(record.sets().get(), sets.kind().collection_interface);
  long size = 0;
  if (!collection || FAILED(collection->get_Count(&size))) return std::nullopt;
  for (long index = 0; index < size; ++index) {
    com::Ptr<IDispatch> object;
    if (FAILED(collection->Item(static_cast<int>(index), object.put()))) continue;
    const auto set = query<IPersistentObject>(object.get(), sets.kind().object_interface);
    long id = 0;
    if (!set || FAILED(set->get_ID(&id))) continue;
    if (id == 0 || !sets.find(database, id)) return id;
  }
  return std::nullopt;
}

}  // namespace

void fail_to_delete(const com::Error& error, Database& database, const Catalogue& catalogue,
                    const Record& record) {
  if (error.result() != kIntegrityViolation || !database.is_open()) throw error;
  const std::wstring records = records_on_vertex(database, catalogue, record.id());
  if (records.empty()) throw error;
  fail(error.result(), record.name() + L" cannot be deleted, because records stand on it: " +
                           records + L". Delete them, or put them on another vertex, first.");
}

void fail_to_link(const com::Error& error, Database& database, const Catalogue& catalogue,
                  const Record& record) {
  const Table* const sets = catalogue.find(record.kind().sets);
  if (error.result() != kIntegrityViolation || !sets || !database.is_open()) throw error;
  const auto id = missing_set(database, *sets, record);
  if (!id) throw error;
  const std::wstring& set = sets->kind().object;
  fail(error.result(),
       record.name() + L" cannot be saved: it belongs to " +
           (*id == 0 ? L"a new " + set + L" that was not saved"
                     : set + L" " + std::to_wstring(*id) + L", which the model does not have") +
           L". Save its " + record.kind().sets + L" first, or with it (vCascadeUp).");
}

}  // namespace modeldb

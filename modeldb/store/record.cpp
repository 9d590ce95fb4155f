#include "modeldb/store/record.h"

#include <charconv>

#include "com/variant.h"
#include "modeldb/base/failure.h"

namespace modeldb {
namespace {

const wchar_t* doing(host::FileOp operation) {
  switch (operation) {
    case host::FileOp::kBeforeSave:
      return L"saving its vertex";
    case host::FileOp::kAfterSave:
      return L"saving its sets";
    case host::FileOp::kDelete:
      return L"deleting its links to sets";
  }
  return L"";
}

std::wstring hexadecimal(HRESULT result) {
  char digits[8];
  char* const end =
      std::to_chars(digits, std::end(digits), static_cast<unsigned long>(result), 16).ptr;
  return L"0x" + std::wstring(digits, end);
}

// Flags as arguments. They are there beforehand: one that was just written is slow to pass, since
// it is read in other pieces than it was written.
const com::Variant kYes = com::Variant::boolean(true);
const com::Variant kNo = com::Variant::boolean(false);

const VARIANT& argument(bool flag) { return flag ? kYes : kNo; }

/// Every interface of a persistent object begins with the members of IPersistentObject.
com::Ptr<IPersistentObject> query(IDispatch* object, const Kind& kind) {
  com::Ptr<IPersistentObject> found;
  object->QueryInterface(kind.object_interface, found.put_void());
  return found;
}

}  // namespace

Record::Record(const Table& table, com::Ptr<IPersistentObject> object)
    : table_(&table), object_(std::move(object)) {
  id_ = current_id();
}

long Record::current_id() const {
  long id = 0;
  check(object_->get_ID(&id), L"telling its ID");
  return id;
}

void Record::check(HRESULT result, const wchar_t* doing) const {
  if (SUCCEEDED(result)) return;
  try {
    com::raise_from(result, object_.get(), kind().object_interface);
  } catch (const com::Error& error) {
    if (error.info()) throw;
  }
  fail(result, name() + L" failed with error " + hexadecimal(result) + L" while " + doing + L".");
}

void Record::set_id(long id) const { check(object_->put_ID(id), L"taking its ID"); }

long Record::dirty() const {
  long dirty = 0;
  check(object_->get_IsDirty(&dirty), L"telling whether it has unsaved changes");
  return dirty;
}

void Record::set_dirty(long dirty) const {
  check(object_->put_IsDirty(dirty), L"being marked as saved");
}

com::Bstr Record::description() const {
  com::Bstr text;
  check(object_->get_Description(text.put()), L"telling its description");
  return text;
}

long Record::event_type() const {
  long type = 0;
  check(object_->get_EventObjectType(&type), L"telling its event type");
  return type;
}

com::Bstr Record::text(host::SqlPiece piece) const {
  com::Bstr text;
  const HRESULT result = object_->get_SqlString(static_cast<long>(piece), text.put());
  check(result, L"telling the values of its row");
  return text;
}

void Record::file_operation(IModelDatabase* database, host::FileOp operation, bool cascade_down,
                            bool cascade_up) const {
  const HRESULT result = object_->FileOpHelper(database, static_cast<long>(operation),
                                               argument(cascade_down), argument(cascade_up));
  // By the contract a record that lacks its vertex or its sets answers E_POINTER, and one that
  // holds some other object in their place E_NOINTERFACE, both without words.
  if (result == E_POINTER || result == E_NOINTERFACE) {
    const std::wstring fault =
        name() + (result == E_POINTER ? L" has no " : L" has some other object as its ");
    if (operation == host::FileOp::kBeforeSave) {
      fail(result, fault + L"vertex. Set its Vertex before it is saved.");
    }
    if (operation == host::FileOp::kAfterSave && !kind().sets.empty()) {
      fail(result, fault + kind().sets + L". Set its " + kind().sets +
                       L", to an empty collection if need be, before it is saved.");
    }
  }
  check(result, doing(operation));
}

com::Ptr<IDispatch> Record::sets() const {
  com::Bstr name(kind().sets);
  BSTR text = name.get();
  DISPID member = DISPID_UNKNOWN;
  DISPPARAMS none{};
  com::Variant sets;
  if (FAILED(object_->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &member)) ||
      FAILED(object_->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                             sets.put(), nullptr, nullptr)) ||
      sets.type() != VT_DISPATCH) {
    return nullptr;
  }
  return com::Ptr<IDispatch>(sets.get().pdispVal);
}

std::wstring Record::name() const {
  if (id_ == 0) return L"The new " + kind().object;
  return kind().object + L" " + std::to_wstring(id_);
}

Record RecordFinder::find(IDispatch* object) {
  if (!object) fail(E_POINTER, L"No record was passed. Pass one such as an Orv_Node.NodalForce.");
  for (const Table* const table : last_) {
    if (!table) continue;
    if (auto found = query(object, table->kind())) return {*table, std::move(found)};
  }
  for (const Table& table : catalogue_.tables()) {
    if (auto found = query(object, table.kind())) {
      last_ = {&table, last_.front()};
      return {table, std::move(found)};
    }
  }
  fail(E_NOINTERFACE,
       L"What was passed is no record: the model has "
       L"no table for it. Pass a record such as an Orv_Node.NodalForce.");
}

}  // namespace modeldb

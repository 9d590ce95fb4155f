#include "records/host.h"

namespace orv {
namespace {

// A text to run whose rows, if any, nobody wants.
constexpr LONG kRunOnly = static_cast<LONG>(adCmdText) | static_cast<LONG>(adExecuteNoRecords);

}  // namespace

// The two steps of CoCreateInstance, which by itself looks into the registry for a substitute of
// the class at every call. Beside a host that registers its class objects with the process, that
// takes a hundred times as long as the creation.
com::Ptr<IUnknown> create_object(REFCLSID clsid) {
  com::Ptr<IClassFactory> class_object;
  com::Ptr<IUnknown> object;
  if (FAILED(CoGetClassObject(clsid, CLSCTX_ALL, nullptr, __uuidof(IClassFactory),
                              class_object.put_void())) ||
      FAILED(class_object->CreateInstance(nullptr, __uuidof(IUnknown), object.put_void())) ||
      FAILED(OleRun(object.get()))) {
    return nullptr;
  }
  return object;
}

com::Ptr<IModelDatabase> model_database(IDispatch* argument) {
  com::require(argument);
  com::Ptr<IModelDatabase> database;
  const HRESULT result = argument->QueryInterface(__uuidof(IModelDatabase), database.put_void());
  if (result != E_NOINTERFACE) com::check(result);
  return com::require(std::move(database));
}

com::Ptr<IRecordStore> record_store(const com::Ptr<IModelDatabase>& database) {
  com::Ptr<IRecordStore> store;
  com::check(database->get_RecordStore(store.put()), database);
  return com::require(std::move(store));
}

FileOperation::FileOperation(IDispatch* database, const VARIANT& cascade_down,
                             const VARIANT& cascade_up)
    : cascade_down_(com::OptionalFlag(cascade_down).value) {
  const com::OptionalFlag up(cascade_up);
  cascade_up_ = up.value;
  base_result_ = up.status;

  database_ = model_database(database);
  com::Ptr<IDispatch> command;
  com::check(database_->get_Command(command.put()), database_);
  com::Ptr<IDispatch> connection;
  com::check(database_->get_Connection(connection.put()), database_);
  if (command) command_ = require_interface<Command15>(command.get());
}

void FileOperation::execute(std::wstring_view statement) const {
  com::require(command_);
  com::ArgumentBstr text(statement);
  com::check(command_->put_CommandText(text.get()), command_);
  com::Ptr<_Recordset> ignored;
  com::check(command_->Execute(nullptr, nullptr, kRunOnly, ignored.put()), command_);
  database_->SetModified(1);
}

}  // namespace orv

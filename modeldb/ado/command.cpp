#include "modeldb/ado/command.h"

#include "com/bstr.h"
#include "com/variant.h"
#include "modeldb/ado/connection.h"
#include "modeldb/ado/execution.h"
#include "modeldb/ado/factories.h"
#include "modeldb/ado/model_call.h"
#include "modeldb/base/failure.h"

namespace modeldb {
namespace {

void require_no_parameters(const VARIANT* parameters) {
  if (!parameters || parameters->vt == VT_EMPTY || com::is_omitted(*parameters)) return;
  fail(kFeatureNotAvailable,
       L"A command of a model database takes no parameters. Write the values "
       L"into its text.");
}

}  // namespace

STDMETHODIMP AdoCommand::get_CommandText(BSTR* str) {
  return model_call(database_->turns(), [&] { *str = com::Bstr(text_).detach(); });
}

STDMETHODIMP AdoCommand::put_CommandText(BSTR str) {
  return model_call(database_->turns(), [&] { text_ = com::Bstr::view(str); });
}

STDMETHODIMP AdoCommand::get_CommandType(CommandTypeEnum* cmd_type) {
  *cmd_type = type_;
  return S_OK;
}

STDMETHODIMP AdoCommand::put_CommandType(CommandTypeEnum cmd_type) {
  type_ = cmd_type;
  return S_OK;
}

STDMETHODIMP AdoCommand::Execute(VARIANT* records_affected, VARIANT* parameters, LONG options,
                                 _Recordset** record_set) {
  return model_call(database_->turns(), [&] {
    require_no_parameters(parameters);
    if (options == adOptionUnspecified) options = type_;
    if (options == adExecuteNoRecords) options |= type_;
    execute(*database_, text_, records_affected, options, time_limit_, record_set);
  });
}

STDMETHODIMP AdoCommand::get_CommandTimeout(LONG* seconds) {
  *seconds = time_limit_;
  return S_OK;
}

STDMETHODIMP AdoCommand::put_CommandTimeout(LONG seconds) {
  return com::boundary([&] { time_limit_ = time_limit(seconds); });
}

STDMETHODIMP AdoCommand::get_ActiveConnection(_Connection** object) {
  return model_call(database_->turns(), [&] { *object = make_connection(database_).detach(); });
}

STDMETHODIMP AdoCommand::putref_ActiveConnection(_Connection* object) {
  return model_call(database_->turns(), [&] { require_own(object); });
}

STDMETHODIMP AdoCommand::put_ActiveConnection(VARIANT object) {
  return model_call(database_->turns(), [&] {
    com::Variant value;
    com::check(VariantCopyInd(value.put(), &object));
    require_own(value.type() == VT_DISPATCH ? value.get().pdispVal : nullptr);
  });
}

void AdoCommand::require_own(IDispatch* connection) const {
  if (database_of(connection) == database_) return;
  fail(kFeatureNotAvailable,
       L"The command belongs to the model database " + quoted(database_->location()) +
           L", whose records write their links with it. Use the Command or the Connection of the "
           L"other model.");
}

STDMETHODIMP AdoCommand::get_State(LONG* state) {
  *state = adStateClosed;
  return S_OK;
}

com::Ptr<_Command> make_command(std::shared_ptr<Database> database) {
  return com::Ptr<_Command>(com::make<AdoCommand>(std::move(database)).get());
}

}  // namespace modeldb

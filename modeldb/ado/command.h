#pragma once

#include <memory>
#include <string>

#include "modeldb/ado/unavailable_command.h"
#include "modeldb/engine/database.h"

namespace modeldb {

/// A text to be run on a model database.
class AdoCommand : public UnavailableCommand {
 public:
  explicit AdoCommand(std::shared_ptr<Database> database) : database_(std::move(database)) {}

  STDMETHODIMP get_CommandText(BSTR* str) override;
  STDMETHODIMP put_CommandText(BSTR str) override;
  STDMETHODIMP get_CommandType(CommandTypeEnum* cmd_type) override;
  STDMETHODIMP put_CommandType(CommandTypeEnum cmd_type) override;
  /// Options that tell no type of text leave it to CommandType. There are no parameters.
  STDMETHODIMP Execute(VARIANT* records_affected, VARIANT* parameters, LONG options,
                       _Recordset** record_set) override;

  /// In seconds, 30 unless told, whatever the connection's is; 0 for no limit.
  STDMETHODIMP get_CommandTimeout(LONG* seconds) override;
  STDMETHODIMP put_CommandTimeout(LONG seconds) override;

  STDMETHODIMP get_ActiveConnection(_Connection** object) override;
  /// The command stays with its model database: records write their links with it.
  STDMETHODIMP putref_ActiveConnection(_Connection* object) override;
  STDMETHODIMP put_ActiveConnection(VARIANT object) override;
  /// Closed: a text has always ended when its caller goes on.
  STDMETHODIMP get_State(LONG* state) override;

 private:
  /// kFeatureNotAvailable: the connection is that of another model database.
  void require_own(IDispatch* connection) const;

  std::shared_ptr<Database> database_;
  std::wstring text_;
  CommandTypeEnum type_ = adCmdUnknown;
  Seconds time_limit_ = kDefaultTimeLimit;
};

}  // namespace modeldb

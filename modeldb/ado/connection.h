#pragma once

#include <memory>

#include "com/aliased.h"
#include "modeldb/ado/unavailable_connection.h"
#include "modeldb/engine/database.h"

namespace modeldb {

/// Tells the module's own connections from others.
inline constexpr IID kOwnConnection = {
    0x5f0d6f6b, 0x8a55, 0x4d0a, {0x9c, 0x1e, 0x2a, 0x74, 0x30, 0x9b, 0xd1, 0x66}};

/// The connection of a model database: runs texts, begins and ends transactions.
class AdoConnection
    : public com::Aliased<UnavailableConnection, _Connection, com::OwnName<kOwnConnection>> {
 public:
  explicit AdoConnection(std::shared_ptr<Database> database) : database_(std::move(database)) {}

  [[nodiscard]] const std::shared_ptr<Database>& database() const { return database_; }

  STDMETHODIMP Execute(BSTR command, VARIANT* records_affected, LONG options,
                       _Recordset** record_set) override;
  /// The level is 1 for the outermost, 2 for one within it, and so on.
  STDMETHODIMP BeginTrans(LONG* transaction_level) override;
  STDMETHODIMP CommitTrans() override;
  STDMETHODIMP RollbackTrans() override;

  /// In seconds, 30 unless told; 0 for no limit. Holds for Load and Query of the model, too.
  STDMETHODIMP get_CommandTimeout(LONG* seconds) override;
  STDMETHODIMP put_CommandTimeout(LONG seconds) override;

  STDMETHODIMP get_State(LONG* state) override;
  /// The path of the model database's file.
  STDMETHODIMP get_ConnectionString(BSTR* str) override;
  STDMETHODIMP get_DefaultDatabase(BSTR* str) override { return get_ConnectionString(str); }
  STDMETHODIMP get_Provider(BSTR* str) override;
  STDMETHODIMP get_Version(BSTR* str) override;
  STDMETHODIMP get_Mode(ConnectModeEnum* mode) override;
  STDMETHODIMP get_CursorLocation(CursorLocationEnum* cursor_loc) override;

 private:
  std::shared_ptr<Database> database_;
};

/// The database behind a connection of this module. kInvalidConnection: it is another's.
std::shared_ptr<Database> database_of(IDispatch* connection);

}  // namespace modeldb

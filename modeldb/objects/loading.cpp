#include "modeldb/objects/loading.h"

#include "com/sentence.h"
#include "com/variant.h"
#include "modeldb/ado/argument.h"
#include "modeldb/ado/factories.h"
#include "modeldb/engine/failure.h"
#include "modeldb/objects/column_reader.h"

namespace modeldb {
namespace {

std::wstring list_of_tables(const Catalogue& catalogue) {
  std::wstring list;
  for (const Table& table : catalogue.tables()) {
    if (!table.kind().has_collection()) continue;
    list += (list.empty() ? L"" : L", ") + table.kind().table;
  }
  return list;
}

/// A condition that is a whole expression can stand in any place for one. A text that closes the
/// parenthesis around it to go on with something else fails in the second place; one that makes
/// use of the second place fails in the first.
void require_condition(const Model& model, const Kind& kind, const std::wstring& condition) {
  const std::wstring from = L" FROM " + kind.table;
  for (const auto& text : {L"SELECT 1" + from + L" WHERE (" + condition + L")",
                           L"SELECT CASE WHEN " + condition + L" THEN 1 END" + from}) {
    try {
      (void)model.database()->execute_text(text, Trust::kRead);
    } catch (const com::Error& error) {
      fail(error.result(), L"The condition " + quoted(condition) + L" on the table " + kind.table +
                               L" cannot be used: it must be one expression over the table's "
                               L"columns, such as \"VertexID = 12\". " +
                               sentence_of(error));
    }
  }
}

com::Ptr<_Recordset> open_rows(const Model& model, const Kind& kind,
                               const std::wstring& condition) {
  std::wstring query = L"SELECT * FROM " + kind.table;
  if (!condition.empty()) {
    require_condition(model, kind, condition);
    query += L" WHERE (" + condition + L")";
  }
  return make_recordset(model.database(), query + L" ORDER BY " + kind.key);
}

com::Ptr<IClassFactory> class_object(REFCLSID clsid) {
  com::Ptr<IClassFactory> factory;
  com::check(CoGetClassObject(clsid, CLSCTX_INPROC_SERVER, nullptr, __uuidof(IClassFactory),
                              factory.put_void()));
  return factory;
}

template <class Interface>
com::Ptr<Interface> create(const com::Ptr<IClassFactory>& factory, REFIID iid) {
  com::Ptr<Interface> object;
  com::check(factory->CreateInstance(nullptr, iid, object.put_void()));
  return object;
}

VARTYPE automation_type(ColumnType type) {
  switch (type) {
    case ColumnType::kInteger:
      return VT_I4;
    case ColumnType::kReal:
      return VT_R8;
    case ColumnType::kText:
      return VT_BSTR;
  }
  return VT_EMPTY;
}

/// What keeps a record from reading the column; empty when nothing does.
std::wstring fault_of(const ColumnReader& row, const Column& column) {
  const VARTYPE type = automation_type(column.type);
  try {
    if (row.try_read(column.name, type)) return {};
    const com::Variant value = row.read(column.name);
    if (value.type() == VT_NULL) return L"Its " + column.name + L" is empty.";
    const com::Variant text = value.as(VT_BSTR);
    return L"Its " + column.name + L" is " + quoted(com::Bstr::view(text.get().bstrVal)) +
           (type == VT_I4 ? L", which is no whole number up to 2147483647."
                          : L", which is no number.");
  } catch (const com::Error& error) {
    return error.info() ? sentence_of(error) : L"Its " + column.name + L" cannot be read.";
  }
}

std::wstring fault_of(const ColumnReader& row, const Kind& kind) {
  std::wstring fault = fault_of(row, {kind.key, ColumnType::kInteger});
  for (auto column = kind.columns.begin(); fault.empty() && column != kind.columns.end();
       ++column) {
    fault = fault_of(row, *column);
  }
  return fault;
}

/// "NodalForce 12", by the key that stands in the row, of whatever size.
std::wstring name_of(const ColumnReader& row, const Kind& kind) {
  const auto key = row.try_read(kind.key, VT_BSTR);
  return key ? kind.object + L" " + std::wstring(com::Bstr::view(key->get().bstrVal)) : kind.object;
}

void load_record(IPersistentObject& record, const Kind& kind, IModelDatabase* database,
                 const com::Ptr<_Recordset>& rows) {
  const HRESULT result = record.LoadFromCurrentRecordsetPosition(database, rows.get(), nullptr);
  if (SUCCEEDED(result)) return;
  try {
    com::raise_from(result, &record, kind.object_interface);
  } catch (const com::Error& error) {
    const ColumnReader row(rows.get());
    const std::wstring fault = fault_of(row, kind);
    fail(result, name_of(row, kind) + L" in the table " + kind.table + L" cannot be loaded. " +
                     (fault.empty() ? sentence_of(error) : fault) + L" Correct the row.");
  }
}

}  // namespace

const Kind& loadable_kind(const Catalogue& catalogue, std::wstring_view name) {
  const Table* const table = catalogue.find(name);
  if (!table || !table->kind().has_collection()) {
    fail(kItemNotFound, L"There is no collection for a table " + quoted(name) +
                            L". The tables that can be loaded are " + list_of_tables(catalogue) +
                            L".");
  }
  return table->kind();
}

std::wstring condition_of(const VARIANT& argument) {
  if (com::is_omitted(argument) || argument.vt == VT_EMPTY) return {};
  const com::Variant text =
      argument_as(VT_BSTR, argument,
                  L"The condition that Load was given is no text. Pass one such as "
                  L"\"VertexID = 12\", or leave it out.");
  return std::wstring(com::Bstr::view(text.get().bstrVal));
}

com::Ptr<IDispatch> load_collection(const Model& model, IModelDatabase* database, const Kind& kind,
                                    const std::wstring& condition) {
  const auto rows = open_rows(model, kind, condition);
  const auto collection =
      create<IPersistentCollection>(class_object(kind.collection_class), kind.collection_interface);
  const auto records = class_object(kind.object_class);
  VARIANT_BOOL at_end = VARIANT_FALSE;
  for (;;) {
    com::check(rows->get_EOF(&at_end), rows);
    if (at_end) break;
    const auto record = create<IPersistentObject>(records, kind.object_interface);
    load_record(*record, kind, database, rows);
    com::check(collection->Add(record.get()), collection);
    com::check(rows->MoveNext(), rows);
  }
  com::check(rows->Close(), rows);
  return collection;
}

}  // namespace modeldb

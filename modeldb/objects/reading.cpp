#include "modeldb/objects/reading.h"

#include <array>
#include <span>
#include <vector>

#include "com/sentence.h"
#include "com/variant.h"
#include "modeldb/ado/argument.h"
#include "modeldb/ado/recordset.h"
#include "modeldb/base/ascii.h"
#include "modeldb/base/failure.h"
#include "modeldb/objects/column_reader.h"
#include "modeldb/schema/definition.h"
#include "modeldb/schema/host_kinds.h"
#include "modeldb/schema/nearest_column.h"

namespace modeldb {
namespace {

std::wstring list_of_tables(const Catalogue& catalogue) {
  std::wstring list;
  for (const Table& table : catalogue.tables()) {
    list += (list.empty() ? L"" : L", ") + table.kind().table;
  }
  return list;
}

/// The name of the column that the model does not have, when that is what is wrong: as it stands
/// behind the name of the table, or all of it for a property of a property, such as Vertex.ID.
std::wstring missing_column(const Kind& kind, const TextError& error) {
  std::wstring own = error.fault().missing_column;
  const auto dot = own.rfind(L'.');
  if (dot == std::wstring::npos) return own;
  return same_name(own.substr(0, dot), kind.table) ? own.substr(dot + 1) : own.erase(dot, 1);
}

std::wstring advice(const Kind& kind, const TextError& error, std::wstring_view otherwise) {
  const std::wstring name = missing_column(kind, error);
  const std::wstring column = name.empty() ? L"" : nearest_column(kind, name);
  return column.empty() ? std::wstring(otherwise) : L"Use the column " + column + L".";
}

/// What a client gives to become part of a query. It is sound when each of some queries in which it
/// stands in different surroundings can be run: what closes the parenthesis around it, to go on
/// with something else, or makes use of what follows, fails in one of the others.
struct Part {
  std::wstring text;
  std::wstring subject;  // "The condition "Magnitude > 100" on the table NodalForces"
  std::wstring_view advice;
  std::vector<std::wstring> queries;
};

/// The clause of a failure, without a word that the client did not write: the engine names the one
/// at which it gave up, which stands behind the part when the part ends too early.
std::wstring clause_on(const Part& part, const TextError& error) {
  const std::wstring& word = error.fault().last_word;
  const bool is_theirs = word.empty() || part.text.find(word) != std::wstring::npos;
  return is_theirs ? error.clause() : L" is not complete.";
}

void require_sound(const Model& model, const Kind& kind, const Part& part) {
  for (const std::wstring& query : part.queries) {
    try {
      (void)model.database()->execute_text(query, Trust::kRead);
    } catch (const TextError& error) {
      fail(error.result(),
           part.subject + clause_on(part, error) + L" " + advice(kind, error, part.advice));
    }
  }
}

Part condition_part(const Kind& kind, const std::wstring& condition) {
  return {.text = condition,
          .subject = L"The condition " + quoted(condition) + L" on the table " + kind.table,
          .advice =
              L"A condition is one expression over the table's columns, such as "
              L"\"VertexID = 12\".",
          .queries = {L"SELECT 1 FROM " + kind.table + L" WHERE (" + condition + L")",
                      L"SELECT CASE WHEN " + condition + L" THEN 1 END FROM " + kind.table}};
}

Part order_part(const Kind& kind, const std::wstring& order) {
  return {.text = order,
          .subject = L"The order " + quoted(order) + L" of the table " + kind.table,
          .advice =
              L"An order is a list of the table's columns, such as \"VertexID, Magnitude "
              L"DESC\".",
          .queries = {L"SELECT row_number() OVER (ORDER BY " + order + L") FROM " + kind.table,
                      L"SELECT 1 FROM " + kind.table + L" ORDER BY " + order + L", " + kind.key}};
}

/// What a client has written of a query; empty when it has not.
std::wstring subject_of(const Kind& kind, const Selection& selection) {
  if (selection.condition.empty() && selection.order.empty()) return {};
  if (selection.order.empty()) return condition_part(kind, selection.condition).subject;
  const Part order = order_part(kind, selection.order);
  if (selection.condition.empty()) return order.subject;
  return L"The condition " + quoted(selection.condition) + L" with the order " +
         quoted(selection.order) + L" on the table " + kind.table;
}

std::wstring selected_rows(const Kind& kind, const Selection& selection) {
  std::wstring query = L"SELECT * FROM " + kind.table;
  if (!selection.condition.empty()) query += L" WHERE (" + selection.condition + L")";
  query += L" ORDER BY ";
  if (!selection.order.empty()) query += selection.order + L", ";
  return query + kind.key;
}

StatementLease query_rows(const Model& model, const Kind& kind, const Selection& selection,
                          const std::wstring& text) {
  if (!selection.condition.empty()) {
    require_sound(model, kind, condition_part(kind, selection.condition));
  }
  if (!selection.order.empty()) require_sound(model, kind, order_part(kind, selection.order));
  return model.database()->execute_text(text, Trust::kRead).query;
}

/// Tells an engine far away which vertices and sets records will ask for.
class Hints {
 public:
  explicit Hints(const Model& model) : ahead_(model.database()->engine().fetch_ahead()) {}
  Hints(const Hints&) = delete;
  Hints& operator=(const Hints&) = delete;
  ~Hints() {
    if (ahead_) ahead_->end();
  }

  /// The records are those of the query's rows.
  void give(const Kind& kind, const Selection& selection, Statement& query) {
    if (!ahead_) return;
    const std::array<std::wstring_view, 2> keys{kind.key, vertex_kind().key};
    ahead_->expect(query, subject_of(kind, selection),
                   std::span(keys).first(stands_on_vertex(kind) ? 2 : 1));
  }

 private:
  FetchAhead* ahead_;
};

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

void read_record(IPersistentObject& record, const Kind& kind, IModelDatabase* database,
                 const com::Ptr<_Recordset>& rows) {
  const HRESULT result = record.LoadFromCurrentRecordsetPosition(database, rows.get(), nullptr);
  if (SUCCEEDED(result)) return;
  try {
    com::raise_from(result, &record, kind.object_interface);
  } catch (const com::Error& error) {
    if (result == kInvalidConnection) throw;  // and the row is none to be corrected
    const ColumnReader row(rows.get());
    const std::wstring fault = fault_of(row, kind);
    fail(result, name_of(row, kind) + L" in the table " + kind.table + L" cannot be loaded. " +
                     (fault.empty() ? sentence_of(error) : fault) + L" Correct the row.");
  }
}

void read_records(const Model& model, IModelDatabase* database, const Kind& kind,
                  const Selection& selection, IPersistentCollection& collection) {
  const std::wstring text = selected_rows(kind, selection);
  StatementLease query = query_rows(model, kind, selection, text);
  Hints hints(model);
  hints.give(kind, selection, *query);
  const auto rows = make_recordset(*model.database(), std::move(query), text);
  const auto records = class_object(kind.object_class);
  VARIANT_BOOL at_end = VARIANT_FALSE;
  for (;;) {
    com::check(rows->get_EOF(&at_end), rows);
    if (at_end) break;
    const auto record = create<IPersistentObject>(records, kind.object_interface);
    read_record(*record, kind, database, rows);
    if (model.seen_rows()) {
      long id = 0;
      com::check(record->get_ID(&id), record);
      model.seen_rows()->add(*model.catalogue().find(kind.table), id);
    }
    com::check(collection.Add(record.get()), &collection);
    com::check(rows->MoveNext(), rows);
  }
  com::check(rows->Close(), rows);
}

}  // namespace

const Kind& kind_of_table(const Catalogue& catalogue, std::wstring_view name) {
  const Table* const table = catalogue.find(name);
  if (!table) {
    fail(kItemNotFound, L"There is no collection for a table " + quoted(name) +
                            L". The tables that can be loaded are " + list_of_tables(catalogue) +
                            L".");
  }
  return table->kind();
}

Selection selection_of(const VARIANT& condition, const VARIANT& order) {
  const auto text_of = [](const VARIANT& argument, std::wstring_view sentence) -> std::wstring {
    if (com::is_omitted(argument) || argument.vt == VT_EMPTY) return {};
    // A number would be a condition that every row fulfils.
    const VARTYPE type = argument.vt & ~VT_BYREF;
    const bool may_be_text = type == VT_BSTR || type == VT_VARIANT || type == VT_DISPATCH;
    if (!may_be_text) fail(DISP_E_TYPEMISMATCH, sentence);
    const com::Variant text = argument_as(VT_BSTR, argument, sentence);
    return std::wstring(com::Bstr::view(text.get().bstrVal));
  };
  return {.condition = text_of(condition,
                               L"The condition that Load was given is no text. Pass one such as "
                               L"\"VertexID = 12\", or leave it out."),
          .order = text_of(order,
                           L"The order that Load was given is no text. Pass one such as "
                           L"\"VertexID, Magnitude DESC\", or leave it out.")};
}

com::Ptr<IDispatch> read_collection(const Model& model, IModelDatabase* database, const Kind& kind,
                                    const Selection& selection) {
  auto collection =
      create<IPersistentCollection>(class_object(kind.collection_class), kind.collection_interface);
  // A write-protected file may be older than the kind.
  if (!model.database()->engine().has_table(kind.table)) return collection;
  try {
    read_records(model, database, kind, selection, *collection);
  } catch (const com::Error& error) {
    if (error.result() != kTimeout) throw;
    fail(kTimeout, L"Loading the table " + kind.table +
                       (selection.condition.empty() ? L"" : L" by the condition ") +
                       (selection.condition.empty() ? L"" : quoted(selection.condition)) +
                       L" was ended, because it took longer than it may. Narrow it down, or give "
                       L"it more time by model.Connection.CommandTimeout (in seconds; 0 for no "
                       L"limit).");
  }
  return collection;
}

}  // namespace modeldb

#pragma once

#include <string_view>

#include "com/automation.h"
#include "com/bstr.h"
#include "host/protocol.h"
#include "records/description.h"
#include "records/field.h"
#include "records/host.h"
#include "records/library.h"
#include "records/row_reader.h"
#include "records/row_texts.h"
#include "records/set_membership.h"

namespace orv {

/// A record: one row of one table of the host's model database, attached to a vertex and to sets.
///
/// The kind `Self` supplies its names (`kNames`) and its list of columns (`columns()`); everything
/// that is said of the row follows from these: its texts, how it is loaded, and what is committed.
/// A record writes no SQL of its own row: the host's record store does, calling back for the texts
/// and for the work that only the record knows.
///
/// Interface is the type library's; Sets tells the membership.
template <class Self, class Interface, class Sets>
class COrvelDbRecord : public com::AutomationObject<Interface, kLibrary> {
 public:
  // Identity and state.
  STDMETHODIMP get_ID(long* pVal) override {
    *pVal = id_;
    return S_OK;
  }
  STDMETHODIMP put_ID(long newVal) override {
    id_ = newVal;
    return touch();
  }
  STDMETHODIMP get_IsDirty(long* pVal) override {
    *pVal = dirty_;
    return S_OK;
  }
  /// Any number is kept as it is.
  STDMETHODIMP put_IsDirty(long newVal) override {
    dirty_ = newVal;
    return S_OK;
  }
  STDMETHODIMP get_EventObjectType(long* pVal) override {
    *pVal = KindEventObjectType();
    return S_OK;
  }

  /// Trims what is held, then returns a copy.
  STDMETHODIMP get_Description(BSTR* pVal) override {
    return com::boundary([&] { *pVal = description_.trimmed_copy().detach(); });
  }
  STDMETHODIMP put_Description(BSTR newVal) override {
    return com::boundary([&] {
      description_.assign(newVal);
      return touch();
    });
  }

  /// E_POINTER: the record has no vertex.
  STDMETHODIMP get_Vertex(IDispatch** pVal) override {
    return com::boundary([&] { *pVal = com::require(vertex_).copy(); });
  }
  /// E_POINTER: `newVal` is null; the record is left without a vertex.
  STDMETHODIMP putref_Vertex(IDispatch* newVal) override {
    return com::boundary([&] {
      com::require(vertex_ = newVal);
      return touch();
    });
  }

  // Persistence: the client's side. The host's failures come back as they are, with its text.

  /// E_POINTER: no model database, or it has no record store.
  STDMETHODIMP Save(IDispatch* pModelDatabase, VARIANT vCascadeDown, VARIANT vCascadeUp) override {
    return com::boundary([&] {
      const com::Variant down(vCascadeDown);
      const com::Variant up(vCascadeUp);
      const auto store = record_store(model_database(pModelDatabase));
      return com::check(store->SaveRecord(interface_pointer(), down, up), store);
    });
  }
  STDMETHODIMP Delete(IDispatch* pModelDatabase) override {
    return com::boundary([&] {
      const auto store = record_store(model_database(pModelDatabase));
      return com::check(store->DeleteRecord(interface_pointer()), store);
    });
  }

  /// Reads the row at which `pRs` stands. A column or step that fails is passed over and its
  /// failure reported at the end, the last one when there are several.
  STDMETHODIMP LoadFromCurrentRecordsetPosition(IDispatch* pModelDatabase, IDispatch* pRs,
                                                BSTR bstrTableAlias) override {
    if (!pRs) return S_OK;
    return com::boundary([&] {
      const std::wstring_view qualifier =
          SysStringLen(bstrTableAlias) > 0 ? com::Bstr::view(bstrTableAlias) : KindTableName();
      const RowReader row(pRs, qualifier);
      com::Outcome outcome;
      load_common_columns(row, outcome);
      load_rest(pModelDatabase, pRs, row, outcome);
      return outcome.deliver();
    });
  }

  // Persistence: what the host's record store calls back.

  /// The piece of SQL that `ossType` (a host::SqlPiece) names; empty for any other number.
  /// E_POINTER: the texts of the current values need the vertex, and there is none.
  STDMETHODIMP get_SqlString(long ossType, BSTR* pVal) override {
    return com::boundary([&] {
      Text text;
      append_piece(text, static_cast<host::SqlPiece>(ossType));
      *pVal = text.str().detach();
    });
  }

  /// The part of saving or deleting that only the record knows; `fohType` is a host::FileOp.
  ///
  /// Before the row is written it saves the vertex, if `vCascadeDown` says so, and notes its ID.
  /// After, it saves the sets, if `vCascadeUp` says so, writes its link rows anew and takes the
  /// current values as the saved ones, failed links or not. Before the row is deleted it deletes
  /// the link rows. Any other number does nothing. An omitted flag counts as true.
  ///
  /// Returns the result of saving the vertex or the sets; where neither is saved, that of
  /// converting `vCascadeUp`: an omitted one gives DISP_E_TYPEMISMATCH although all is done. A link
  /// statement that fails costs its own row, and the last such failure is returned. E_POINTER:
  /// there is no model database, vertex or collection of sets where one is needed.
  STDMETHODIMP FileOpHelper(IDispatch* pModelDatabase, long fohType, VARIANT vCascadeDown,
                            VARIANT vCascadeUp) override {
    return com::boundary([&] {
      const FileOperation operation(pModelDatabase, vCascadeDown, vCascadeUp);
      com::Outcome outcome(operation.base_result());
      switch (static_cast<host::FileOp>(fohType)) {
        case host::FileOp::kBeforeSave:
          before_save(operation, outcome);
          break;
        case host::FileOp::kAfterSave:
          sets_.save(operation, KindObjectName(), id_, outcome);
          commit();
          break;
        case host::FileOp::kDelete:
          sets_.remove(operation, KindObjectName(), id_, outcome);
          break;
      }
      return outcome.deliver();
    });
  }

 protected:
  COrvelDbRecord() : vertex_(create_object<IVertex>(__uuidof(HostVertex))) {}

  // The four operations in which kinds differ; all follow from the kind's names and columns.
  static constexpr long KindEventObjectType() { return Self::kNames.record_event; }
  static constexpr std::wstring_view KindObjectName() { return Self::kNames.object; }
  static constexpr std::wstring_view KindTableName() { return Self::kNames.table; }
  void KindCommitFields() {
    for_each_column([](const auto&, auto& field) { field.commit(); });
  }

  // Property accessors of the kinds. A put takes any value and marks the record dirty even when
  // the value is the same.

  template <class T, class Value>
  static HRESULT get(const Field<T>& field, Value* value) {
    *value = static_cast<Value>(field.current);
    return S_OK;
  }
  /// A truth value as VARIANT_TRUE or VARIANT_FALSE, whatever number is held.
  template <class T>
  static HRESULT get_normalised(const Field<T>& field, VARIANT_BOOL* value) {
    *value = field.current != 0 ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  }
  template <class T, class Value>
  HRESULT put(Field<T>& field, Value value) {
    field.current = static_cast<T>(value);
    return touch();
  }

  HRESULT get_sets(IDispatch** value) const {
    return com::boundary([&] { *value = sets_.get(); });
  }
  HRESULT put_sets(IDispatch* value) {
    return com::boundary([&] {
      sets_.assign(value);
      return touch();
    });
  }

  /// After the common columns: the vertex, the sets, then the kind's own columns, which are read
  /// whatever failed before them.
  virtual void load_rest(IDispatch* database, IDispatch* recordset, const RowReader& row,
                         com::Outcome& outcome) {
    load_vertex(database, recordset, outcome);
    outcome.attempt([&] { sets_.load(database, KindObjectName(), id_); });
    mark_clean();
    load_kind_columns(row, outcome);
  }

  void load_vertex(IDispatch* database, IDispatch* recordset, com::Outcome& outcome) {
    outcome.attempt([&] {
      const auto node = vertex();
      com::check(node->LoadFromCurrentRecordsetPosition(database, recordset, nullptr), node);
    });
  }

  void load_kind_columns(const RowReader& row, com::Outcome& outcome) {
    for_each_column(
        [&](const auto& column, auto& field) { row.read(column.name, field, outcome); });
  }

  void mark_clean() { dirty_ = 0; }

 private:
  HRESULT touch() {
    dirty_ = 1;
    return S_OK;
  }

  IDispatch* interface_pointer() { return static_cast<Interface*>(this); }

  /// The vertex was taken as the client passed it, so that it is asked for its interface here.
  [[nodiscard]] com::Ptr<IVertex> vertex() const {
    return require_interface<IVertex>(vertex_.get());
  }

  [[nodiscard]] long current_vertex_id() const {
    const auto node = vertex();
    long id = 0;
    com::check(node->get_ID(&id), node);
    return id;
  }

  /// Calls `visit` with every column of the kind and its field.
  template <class Visit>
  void for_each_column(Visit&& visit) {
    static constexpr auto kColumns = Self::columns();
    for (const Column<Self>& column : kColumns) {
      std::visit([&](auto member) { visit(column, static_cast<Self*>(this)->*member); },
                 column.member);
    }
  }

  void load_common_columns(const RowReader& row, com::Outcome& outcome) {
    Text key;
    append_key_column(key);
    if (const auto id = row.read(key.view(), VT_I4, outcome)) id_ = id->get().lVal;
    if (const auto text = row.read(kDescriptionColumn, VT_BSTR, outcome)) {
      outcome.attempt([&] { description_.load(com::Bstr::view(text->get().bstrVal)); });
    }
    row.read(kVertexColumn, vertex_id_, outcome);
  }

  void before_save(const FileOperation& operation, com::Outcome& outcome) {
    if (operation.cascades_down()) {
      const auto node = vertex();
      outcome.set(com::check(node->Save(operation.database(), kCascadeOn, kCascadeOn), node));
    }
    vertex_id_.current = current_vertex_id();
  }

  void commit() {
    description_.commit();
    vertex_id_.commit();
    KindCommitFields();
  }

  /// Asked for at each insert.
  static std::wstring_view column_list() {
    static constexpr auto kList = orv::column_list([] { return Self::columns(); });
    return {kList.data(), kList.size()};
  }

  static void append_key_column(Text& text) { text << KindObjectName() << L"ID"; }

  void append_piece(Text& text, host::SqlPiece piece) {
    switch (piece) {
      case host::SqlPiece::kTable:
        text << KindTableName();
        break;
      case host::SqlPiece::kKeyColumn:
        append_key_column(text);
        break;
      case host::SqlPiece::kColumns:
        text << column_list();
        break;
      case host::SqlPiece::kValues:
        append_values(text, current_common(), values(kCurrent));
        break;
      case host::SqlPiece::kSavedValues:
        append_values(text, saved_common(), values(kSaved));
        break;
      case host::SqlPiece::kAssignments:
        append_assignments(text, current_common(), values(kCurrent));
        break;
      case host::SqlPiece::kSavedAssignments:
        append_assignments(text, saved_common(), values(kSaved));
        break;
    }
  }

  [[nodiscard]] CommonValues current_common() const {
    // The vertex first: it is the host's, which may change the description meanwhile.
    const long vertex_id = current_vertex_id();
    return {description_.current(), vertex_id};
  }
  [[nodiscard]] CommonValues saved_common() const {
    return {description_.saved(), vertex_id_.saved};
  }

  static constexpr auto kCurrent = [](const auto& field) { return field.current; };
  static constexpr auto kSaved = [](const auto& field) { return field.saved; };

  /// What calls its argument with every column of the kind and the value that `pick` takes.
  template <class Pick>
  auto values(Pick pick) {
    return [this, pick](auto&& visit) {
      for_each_column([&](const auto& column, auto& field) { visit(column, pick(field)); });
    };
  }

  long id_ = 0;
  long dirty_ = 0;
  Description description_;
  Integer vertex_id_;
  com::Ptr<IDispatch> vertex_;
  SetMembership<Sets> sets_;
};

}  // namespace orv

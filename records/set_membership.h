#pragma once

#include <string_view>

#include "com/boundary.h"
#include "records/host.h"
#include "records/text.h"

namespace orv {

/// What tells the three memberships apart: the host's objects, and what the database calls them.
/// `kSets` names the table of sets and ends the link table's name; `kSet` + "ID" is its key.
struct LoadSetTraits {
  using Collection = ILoadSets;
  using Item = ILoadSet;
  using CollectionClass = HostLoadSets;
  using ItemClass = HostLoadSet;
  static constexpr std::wstring_view kSets = L"LoadSets";
  static constexpr std::wstring_view kSet = L"LoadSet";
};

struct ConstraintSetTraits {
  using Collection = IConstraintSets;
  using Item = IConstraintSet;
  using CollectionClass = HostConstraintSets;
  using ItemClass = HostConstraintSet;
  static constexpr std::wstring_view kSets = L"ConstraintSets";
  static constexpr std::wstring_view kSet = L"ConstraintSet";
};

struct DesignScenarioTraits {
  using Collection = IDesignScenarios;
  using Item = IDesignScenario;
  using CollectionClass = HostDesignScenarios;
  using ItemClass = HostDesignScenario;
  static constexpr std::wstring_view kSets = L"DesignScenarios";
  static constexpr std::wstring_view kSet = L"DesignScenario";
};

/// The sets that a record belongs to: a collection of the host's, shared with whoever else holds
/// it, and the record's rows in the kind's link table.
///
/// A record is named by its kind's object name and its identifier, which is not checked.
template <class Traits>
class SetMembership {
 public:
  /// Begins with a new collection of the host's; with none when the host's class is not there.
  SetMembership() : sets_(new_collection()) {}

  /// The collection, with a reference for the caller. E_POINTER: there is none.
  [[nodiscard]] IDispatch* get() const { return com::require(sets_).copy(); }

  /// Holds `sets` from now on, as it is. E_POINTER: it is null, and the record is left with none.
  void assign(IDispatch* sets) { com::require(sets_ = sets); }

  /// Makes a new collection of the sets that the link table names. It is held from the start, so
  /// that a failure leaves the sets read until then and never those of an earlier row.
  void load(IDispatch* database_argument, std::wstring_view object, long id) {
    const auto database = model_database(database_argument);
    com::Ptr<IDispatch> connection;
    com::check(database->get_Connection(connection.put()), database);

    const auto sets = com::require(new_collection());
    sets_ = sets;

    const auto rows = com::require(create_object<_Recordset>(CLSID_Recordset));
    Text query;
    append_query(query, object, id);
    com::ArgumentBstr source(query.view());
    com::check(rows->Open(source.variant(), com::Variant(com::require(connection).get()),
                          adOpenForwardOnly, adLockReadOnly, adCmdText),
               rows);
    com::check(rows->MoveFirst(), rows);
    while (!at_end(rows)) {
      add_from_row(database_argument, rows, sets);
      com::check(rows->MoveNext(), rows);
    }
    com::check(rows->Close(), rows);
  }

  /// Saves the sets if the operation cascades up, then replaces the record's link rows by one for
  /// each set. A failing link statement or set costs only its own row.
  void save(const FileOperation& operation, std::wstring_view object, long id,
            com::Outcome& outcome) const {
    if (operation.cascades_up()) {
      const auto sets = collection();
      outcome.set(com::check(sets->Save(operation.database(), kCascadeOn, kCascadeOn), sets));
    }
    remove(operation, object, id, outcome);
    // The count is asked for again each time: a set may change its collection.
    for (long index = 0; index < count(); ++index) {
      outcome.attempt([&] { add_link(operation, object, id, index); });
    }
  }

  /// Deletes the record's link rows.
  void remove(const FileOperation& operation, std::wstring_view object, long id,
              com::Outcome& outcome) const {
    outcome.attempt([&] {
      operation.execute((Text() << L"DELETE FROM " << object << Traits::kSets << L" WHERE "
                                << object << L"ID = " << id)
                            .view());
    });
  }

 private:
  using Collection = typename Traits::Collection;
  using Item = typename Traits::Item;

  static com::Ptr<Collection> new_collection() {
    return create_object<Collection>(__uuidof(typename Traits::CollectionClass));
  }

  static void append_query(Text& text, std::wstring_view object, long id) {
    constexpr auto sets = Traits::kSets;
    constexpr auto set = Traits::kSet;
    text << L"SELECT " << sets << L".* FROM " << sets << L" INNER JOIN " << object << sets
         << L" ON " << sets << L"." << set << L"ID = " << object << sets << L"." << set
         << L"ID WHERE " << object << sets << L"." << object << L"ID = " << id;
  }

  static bool at_end(const com::Ptr<_Recordset>& rows) {
    VARIANT_BOOL end = VARIANT_TRUE;
    com::check(rows->get_EOF(&end), rows);
    return end != VARIANT_FALSE;
  }

  static void add_from_row(IDispatch* database, const com::Ptr<_Recordset>& rows,
                           const com::Ptr<Collection>& sets) {
    const auto set = com::require(create_object<Item>(__uuidof(typename Traits::ItemClass)));
    com::check(set->LoadFromCurrentRecordsetPosition(database, rows.get(), nullptr), set);
    com::check(sets->Add(set.get()), sets);
  }

  /// What is held was taken as it is, so that it is asked for its interface when it is used.
  [[nodiscard]] com::Ptr<Collection> collection() const {
    return require_interface<Collection>(sets_.get());
  }

  [[nodiscard]] long count() const {
    const auto sets = collection();
    long number = 0;
    com::check(sets->get_Count(&number), sets);
    return number;
  }

  void add_link(const FileOperation& operation, std::wstring_view object, long id,
                long index) const {
    const auto sets = collection();
    com::Ptr<Item> set;
    com::check(sets->Item(static_cast<int>(index), set.put()), sets);
    com::require(set);
    long set_id = 0;
    com::check(set->get_ID(&set_id), set);
    operation.execute((Text() << L"INSERT INTO " << object << Traits::kSets << L" (" << Traits::kSet
                              << L"ID, " << object << L"ID) VALUES (" << set_id << L", " << id
                              << L")")
                          .view());
  }

  com::Ptr<IDispatch> sets_;
};

}  // namespace orv

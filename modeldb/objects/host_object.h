#pragma once

#include <memory>
#include <string>
#include <type_traits>

#include "com/automation.h"
#include "com/free_threaded.h"
#include "modeldb/base/failure.h"
#include "modeldb/base/library.h"
#include "modeldb/objects/column_reader.h"
#include "modeldb/objects/model_access.h"
#include "modeldb/objects/row_image.h"
#include "modeldb/store/record.h"

namespace modeldb {

/// Whether the number of an object means the same in every model.
enum class Identity { kByNumber, kInOneModel };

/// An object that the model owns: a vertex or a set. It is saved and deleted by the record store
/// under the same protocol as a record, but has neither vertex nor sets of its own. A store of this
/// module alone sees its row without the texts.
///
/// Self supplies the codes of its kind's events and its table (kEventType, table()) and reads
/// itself from rows (load_row).
template <class Self, class Interface, Identity identity>
class HostObject : public com::FreeThreaded<com::DispatchObject<Interface, kLibrary>> {
 public:
  STDMETHODIMP get_ID(long* pVal) override {
    *pVal = id_;
    return S_OK;
  }

  /// Another ID makes the object stand for another row, whose values it does not know yet; values
  /// that were put stay put. 0 makes it new, with the values that it has.
  STDMETHODIMP put_ID(long newVal) override {
    return com::boundary([&] {
      if (newVal != id_) {
        image_.change_row(newVal == 0);
        home_ = {};
      }
      id_ = newVal;
      dirty_ = 1;
    });
  }

  STDMETHODIMP get_IsDirty(long* pVal) override {
    *pVal = dirty_;
    return S_OK;
  }
  STDMETHODIMP put_IsDirty(long newVal) override {
    dirty_ = newVal;
    return S_OK;
  }

  STDMETHODIMP LoadFromCurrentRecordsetPosition(IDispatch* pModelDatabase, IDispatch* pRs,
                                                BSTR) override {
    return com::boundary([&] {
      if (!pRs) return;
      const ColumnReader row(pRs);
      id_ = row.read(Self::table().kind().key, VT_I4).get().lVal;
      image_.forget();
      self().load_row(pModelDatabase, row);
      if constexpr (identity == Identity::kInOneModel) remember(own_store(pModelDatabase).get());
      dirty_ = 0;
    });
  }

  /// Writes the row, unless the model has it already as it is.
  STDMETHODIMP Save(IDispatch* pModelDatabase, VARIANT vCascadeDown, VARIANT vCascadeUp) override {
    return com::boundary([&] {
      if (const auto store = own_store(pModelDatabase)) {
        if (complete(*store)) {
          if (dirty_ != 0) keep_for_undo(*store);
          dirty_ = 0;
        } else {
          store->save_own(this, Row(*this), vCascadeDown, vCascadeUp);
        }
        return S_OK;
      }
      const auto store = record_store(pModelDatabase);
      return com::check(store->SaveRecord(this, vCascadeDown, vCascadeUp), store);
    });
  }

  STDMETHODIMP Delete(IDispatch* pModelDatabase) override {
    return com::boundary([&] {
      const auto store = record_store(pModelDatabase);
      return com::check(store->DeleteRecord(this), store);
    });
  }

  STDMETHODIMP get_SqlString(long ossType, BSTR* pVal) override {
    return com::boundary([&] { *pVal = image_.text(ossType).detach(); });
  }

  STDMETHODIMP FileOpHelper(IDispatch* pModelDatabase, long fohType, VARIANT, VARIANT) override {
    return com::boundary(
        [&] { take_part(own_store(pModelDatabase).get(), static_cast<host::FileOp>(fohType)); });
  }

  STDMETHODIMP get_EventObjectType(long* pVal) override {
    *pVal = Self::kEventType;
    return S_OK;
  }

  STDMETHODIMP get_Description(BSTR* pVal) override {
    return com::boundary([&] { *pVal = com::Bstr(image_.description()).detach(); });
  }
  STDMETHODIMP put_Description(BSTR newVal) override {
    return com::boundary([&] {
      image_.put_description(com::Bstr::view(newVal));
      dirty_ = 1;
    });
  }

 protected:
  HostObject() : image_(Self::table()) {}

  [[nodiscard]] RowImage& image() { return image_; }
  void touch() { dirty_ = 1; }

  /// Takes what was not put from the stored row. True when the row says all that the object does;
  /// false also when there is no such row, or no model of this module to look it up in.
  bool complete(IDispatch* model_database) {
    if (id_ == 0) return false;
    const auto store = own_store(model_database);
    return store && complete(*store);
  }

 private:
  class Row final : public OwnRow {
   public:
    explicit Row(HostObject& object) : object_(object) {}
    void take_part(RecordStore& store, host::FileOp operation) const override {
      object_.take_part(&store, operation);
    }
    void append_values(std::vector<Literal>& out) const override {
      object_.image_.append_values(out);
    }

   private:
    HostObject& object_;
  };

  Self& self() { return static_cast<Self&>(*this); }

  bool complete(RecordStore& store) {
    if (id_ == 0) return false;
    const Turn turn(store.turns());
    const auto row = stored_row(store);
    if (!row) {
      if constexpr (identity == Identity::kInOneModel) require_not_deleted(store);
      return false;
    }
    const bool same = image_.complete(*row);
    remember(&store);
    return same;
  }

  /// `store` is null when it is that of another module.
  void take_part(RecordStore* store, host::FileOp operation) {
    switch (operation) {
      case host::FileOp::kBeforeSave:
        if (store) complete(*store);
        break;
      case host::FileOp::kAfterSave:
        if (store) keep_for_undo(*store);
        image_.commit();
        remember(store);
        break;
      case host::FileOp::kDelete:
        if (!store) break;
        const Turn turn(store->turns());
        (void)stored_row(*store);
        if constexpr (identity == Identity::kInOneModel) {
          keep_for_undo(*store);
          home_.is_deleted = true;
        }
        break;
    }
  }

  /// The object's row; empty when there is none. Raises, with a sentence, when the row is that of
  /// another object.
  StatementLease stored_row(const RecordStore& store) {
    if (id_ == 0) return {};
    const auto database = store.model()->database();
    StatementLease row = Self::table().find(*database, id_);
    if constexpr (identity == Identity::kInOneModel) {
      if (row) require_same_object(database->location(), *row);
    }
    return row;
  }

  /// An object that was stored in one model may be saved in another under its number, unless that
  /// stands for something else there.
  void require_same_object(const std::wstring& model, const Statement& row) const {
    if (!home_.model || *home_.model == model || image_.was_stored_as(row)) return;
    const std::wstring object = Self::table().kind().object + L" " + std::to_wstring(id_);
    fail(kIllegalOperation, object + L" of the model " + quoted(*home_.model) + L" is " +
                                quoted(image_.stored_description()) + L", but in the model " +
                                quoted(model) + L" " + object + L" is " + quoted(row.text(0)) +
                                L". Set its ID to 0 to save it there as a new one, or take the one "
                                L"that this model has.");
  }

  /// An object that has no row any more would come back with each record that is saved with it.
  void require_not_deleted(const RecordStore& store) const {
    const auto model = store.model();
    const bool was_stored_here = home_.model && *home_.model == *model->shared_location() &&
                                 !home_.is_deleted && dirty_ == 0;
    if (!was_stored_here || !model->database()->engine().is_shared() || store.overwrites()) return;
    const std::wstring object = Self::table().kind().object + L" " + std::to_wstring(id_);
    fail(kChangedByOthers,
         object + L" " + quoted(image_.stored_description()) +
             L" has been deleted since. Take it from the sets of the record, load the record anew, "
             L"or set Overwrite of the model database to True to bring the set back.");
  }

  /// What is about to be taken for stored is not, should it be rolled back.
  void keep_for_undo(RecordStore& store) {
    store.keep_for_undo([object = com::Ptr<Self>(&self()), before = image_.before(), home = home_,
                         dirty = dirty_] { object->take_back(before, home, dirty); });
  }

  struct InOneModel {
    std::shared_ptr<const std::wstring> model;  // its path; null when none has the stored values
    bool is_deleted = false;                    // there, by this object itself
  };
  // A vertex needs none, and a model has as many of these as it has records.
  struct NoHome {};
  using Home = std::conditional_t<identity == Identity::kInOneModel, InOneModel, NoHome>;

  void take_back(const RowImage::Before& before, const Home& home, long dirty) {
    image_.take_back(before);
    home_ = home;
    dirty_ = dirty;
  }

  /// The model of the store; null for one of another module.
  void remember(RecordStore* store) {
    if constexpr (identity == Identity::kInOneModel) {
      if (!store) {
        home_ = {};
        return;
      }
      const Turn turn(store->turns());
      const auto model = store->model();
      if (home_.model != model->shared_location()) home_.model = model->shared_location();
      home_.is_deleted = false;
    }
  }

  long id_ = 0;
  long dirty_ = 0;
  RowImage image_;
  [[no_unique_address]] Home home_;
};

}  // namespace modeldb

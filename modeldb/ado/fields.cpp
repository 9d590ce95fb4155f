#include "modeldb/ado/fields.h"

#include <string>

#include "com/bstr.h"
#include "com/variant.h"
#include "modeldb/ado/argument.h"
#include "modeldb/ado/model_call.h"
#include "modeldb/base/failure.h"

namespace modeldb {
namespace {

/// Walks the fields for For Each.
class FieldEnumerator : public com::FreeThreaded<com::Object<IEnumVARIANT>> {
 public:
  FieldEnumerator(com::Ptr<::Fields> fields, LONG position)
      : fields_(std::move(fields)), position_(position) {}

  STDMETHODIMP Next(ULONG wanted, VARIANT* items, ULONG* fetched) override {
    if (fetched) *fetched = 0;
    return com::boundary([&] {
      LONG count = 0;
      com::check(fields_->get_Count(&count), fields_);
      ULONG done = 0;
      for (; done < wanted && position_ < count; ++done, ++position_) {
        com::Ptr<::Field> field;
        com::check(fields_->get_Item(com::Variant(position_), field.put()), fields_);
        items[done].vt = VT_DISPATCH;
        items[done].pdispVal = field.detach();
        if (fetched) *fetched = done + 1;
      }
      return done == wanted ? S_OK : S_FALSE;
    });
  }

  STDMETHODIMP Skip(ULONG number) override {
    return com::boundary([&] {
      LONG count = 0;
      com::check(fields_->get_Count(&count), fields_);
      const auto left = static_cast<ULONG>(count > position_ ? count - position_ : 0);
      position_ += static_cast<LONG>(std::min(number, left));
      return number <= left ? S_OK : S_FALSE;
    });
  }

  STDMETHODIMP Reset() override {
    position_ = 0;
    return S_OK;
  }

  STDMETHODIMP Clone(IEnumVARIANT** out) override {
    return com::boundary([&] {
      *out = com::Ptr<IEnumVARIANT>(com::make<FieldEnumerator>(fields_, position_).get()).detach();
    });
  }

 private:
  com::Ptr<::Fields> fields_;
  LONG position_;
};

/// The argument itself, where a script passes a variable.
const VARIANT& dereferenced(const VARIANT& value) {
  return value.vt == (VT_BYREF | VT_VARIANT) ? *value.pvarVal : value;
}

}  // namespace

STDMETHODIMP AdoFields::get_Count(LONG* number) {
  return model_call(cursor_.turns(), [&] { *number = count(); });
}

STDMETHODIMP AdoFields::_NewEnum(IUnknown** object) {
  return model_call(cursor_.turns(), [&] {
    const auto enumerator = com::make<FieldEnumerator>(com::Ptr<::Fields>(this), 0);
    *object = com::Ptr<IUnknown>(enumerator.get()).detach();
  });
}

STDMETHODIMP AdoFields::get_Item(VARIANT index, ::Field** object) {
  return model_call(cursor_.turns(), [&] {
    *object = nullptr;
    *object = com::Ptr<::Field>(field(find(index))).detach();
  });
}

int AdoFields::find(const VARIANT& index) const {
  const VARIANT& key = dereferenced(index);
  const auto columns = [&]() -> const Columns& { return cursor_.query().columns(); };
  if (key.vt == VT_BSTR) return columns().find(com::Bstr::view(key.bstrVal));
  if (key.vt == (VT_BSTR | VT_BYREF)) return columns().find(com::Bstr::view(*key.pbstrVal));
  // The columns are looked at after the conversion: the value of an object is whatever its code
  // gives, which may close the recordset.
  const com::Variant position = argument_as(
      VT_I4, key,
      L"A field was asked for by something that is neither a name nor a number. Use one.");
  const LONG number = position.get().lVal;
  if (number < 0 || number >= columns().size()) {
    fail(kItemNotFound, L"The recordset has no field number " + std::to_wstring(number) +
                            L". Its fields are numbered from 0 to " +
                            std::to_wstring(columns().size() - 1) + L".");
  }
  return number;
}

::Field* AdoFields::field(int column) {
  if (fields_.size() <= static_cast<std::size_t>(column)) fields_.resize(count());
  auto& field = fields_[column];
  if (!field) field = std::make_unique<com::Part<AdoField>>(owner_, cursor_, column);
  return field.get();
}

}  // namespace modeldb

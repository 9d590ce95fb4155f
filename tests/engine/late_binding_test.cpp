#include <gmock/gmock.h>

#include <vector>

#include "modeldb/engine/failure.h"
#include "tests/engine/ado_fixture.h"

namespace modeldb {
namespace {

using com::Bstr;
using com::Ptr;
using com::Variant;
using testing::HasSubstr;

/// What VBScript does, member by member.
class LateBound : public Ado {
 protected:
  static HRESULT call(IDispatch* object, const wchar_t* name, WORD kind,
                      std::vector<Variant> arguments, Variant& result,
                      std::wstring* message = nullptr) {
    auto* text = const_cast<LPOLESTR>(name);
    DISPID member = 0;
    HRESULT found = object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &member);
    return FAILED(found) ? found
                         : invoke(object, member, kind, std::move(arguments), result, message);
  }

  static HRESULT invoke(IDispatch* object, DISPID member, WORD kind, std::vector<Variant> arguments,
                        Variant& result, std::wstring* message = nullptr) {
    std::vector<VARIANT> reversed;
    for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
      reversed.push_back(argument->get());
    }
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    EXCEPINFO exception{};
    const HRESULT called = object->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                                          result.put(), &exception, nullptr);
    const Bstr description = Bstr::adopt(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrHelpFile);
    if (message) *message = description.view();
    return called == DISP_E_EXCEPTION ? exception.scode : called;
  }

  static constexpr WORD kGet = DISPATCH_PROPERTYGET | DISPATCH_METHOD;
};

TEST_F(LateBound, ScriptsReadFieldsByTheDefaultMembers) {
  const auto rows = rows_of(L"SELECT * FROM Forces ORDER BY ForceID");
  Variant field;
  // rs("Magnitude")
  ASSERT_EQ(invoke(rows.get(), DISPID_VALUE, kGet, {Variant(Bstr(L"Magnitude"))}, field), S_OK);
  ASSERT_EQ(field.type(), VT_DISPATCH);
  Variant value;
  ASSERT_EQ(invoke(field.get().pdispVal, DISPID_VALUE, kGet, {}, value), S_OK);
  EXPECT_EQ(value.get().dblVal, 2.5);
  ASSERT_EQ(call(field.get().pdispVal, L"Name", kGet, {}, value), S_OK);
  EXPECT_EQ(Bstr::view(value.get().bstrVal), L"Magnitude");
  ASSERT_EQ(call(rows.get(), L"MoveNext", kGet, {}, value), S_OK);
  ASSERT_EQ(call(rows.get(), L"EOF", kGet, {}, value), S_OK);
  EXPECT_EQ(value.get().boolVal, VARIANT_FALSE);
}

TEST_F(LateBound, ScriptsLearnTheSentenceOfAFailure) {
  const auto rows = rows_of(L"SELECT * FROM Forces");
  Variant result;
  std::wstring message;
  EXPECT_EQ(invoke(rows.get(), DISPID_VALUE, kGet, {Variant(Bstr(L"Nothing"))}, result, &message),
            kItemNotFound);
  EXPECT_THAT(message, HasSubstr(L"no field \"Nothing\", only ForceID, Description, Magnitude"));
}

TEST_F(LateBound, ForEachWalksTheFields) {
  const auto rows = rows_of(L"SELECT * FROM Forces");
  Ptr<Fields> fields;
  rows->get_Fields(fields.put());
  Variant enumerator;
  ASSERT_EQ(invoke(fields.get(), DISPID_NEWENUM, kGet, {}, enumerator), S_OK);
  const auto items = Ptr<IUnknown>(enumerator.get().punkVal).query<IEnumVARIANT>();
  ASSERT_TRUE(items);
  std::wstring names;
  Variant item;
  while (items->Next(1, item.put(), nullptr) == S_OK) {
    Variant name;
    ASSERT_EQ(call(item.get().pdispVal, L"Name", kGet, {}, name), S_OK);
    names.append(Bstr::view(name.get().bstrVal)).append(L" ");
  }
  EXPECT_EQ(names, L"ForceID Description Magnitude ");
  EXPECT_EQ(items->Skip(1), S_FALSE);
  items->Reset();
  EXPECT_EQ(items->Skip(3), S_OK);
}

TEST_F(LateBound, ScriptsExecuteWithOptionalArgumentsLeftOut) {
  Variant result;
  ASSERT_EQ(call(connection_.get(), L"Execute", DISPATCH_METHOD,
                 {Variant(Bstr(L"SELECT Description FROM Forces WHERE ForceID = 1"))}, result),
            S_OK);
  ASSERT_EQ(result.type(), VT_DISPATCH);
  Variant description;
  ASSERT_EQ(call(result.get().pdispVal, L"Collect", kGet, {Variant(0)}, description), S_OK);
  EXPECT_EQ(Bstr::view(description.get().bstrVal), L"Tip load");

  const auto rows = new_recordset();
  EXPECT_EQ(call(rows.get(), L"Open", DISPATCH_METHOD,
                 {Variant(Bstr(L"Forces")), Variant(connection_.get())}, result),
            S_OK);
  EXPECT_FALSE(at_end(rows));
}

}  // namespace
}  // namespace modeldb

#include <gmock/gmock.h>

#include <functional>

#include "com/object.h"
#include "com/type_info.h"
#include "com/variant.h"
#include "modeldb/ado/factories.h"
#include "modeldb/base/failure.h"
#include "tests/engine/support.h"

namespace modeldb {
namespace {

using com::Bstr;
using com::Ptr;
using com::Variant;
using testing::HasSubstr;

/// As the server executes the statements of its link tables.
constexpr LONG kTextWithoutRecords = LONG{adCmdText} | adExecuteNoRecords;

/// ADO's objects over a database with two forces.
class Ado : public WithDatabase {
 protected:
  Ado() {
    write(L"INSERT INTO Forces VALUES (1, 'Tip load', 2.5)");
    write(L"INSERT INTO Forces VALUES (2, 'Bob''s', NULL)");
  }

  /// A recordset made as a client makes one, by its class.
  static Ptr<_Recordset> new_recordset() {
    Ptr<_Recordset> rows;
    EXPECT_EQ(create_recordset(nullptr, __uuidof(_Recordset), rows.put_void()), S_OK);
    return rows;
  }

  [[nodiscard]] HRESULT open(const Ptr<_Recordset>& rows, std::wstring_view text,
                             LONG options = adCmdText) const {
    return rows->Open(Variant(Bstr(text)), Variant(connection_.get()), adOpenForwardOnly,
                      adLockReadOnly, options);
  }

  [[nodiscard]] Ptr<_Recordset> rows_of(std::wstring_view text) const {
    const auto rows = new_recordset();
    EXPECT_EQ(open(rows, text), S_OK);
    return rows;
  }

  static bool at_end(const Ptr<_Recordset>& rows) {
    VARIANT_BOOL end = 0;
    EXPECT_EQ(rows->get_EOF(&end), S_OK);
    return end != VARIANT_FALSE;
  }

  static Ptr<Field> field(const Ptr<_Recordset>& rows, const Variant& index) {
    Ptr<Fields> fields;
    EXPECT_EQ(rows->get_Fields(fields.put()), S_OK);
    Ptr<Field> field;
    EXPECT_EQ(fields->get_Item(index, field.put()), S_OK);
    return field;
  }

  static Variant value(const Ptr<_Recordset>& rows, std::wstring_view name) {
    Variant value;
    EXPECT_EQ(field(rows, Variant(Bstr(name)))->get_Value(value.put()), S_OK);
    return value;
  }

  HRESULT execute(std::wstring_view text, LONG options = kTextWithoutRecords) {
    Ptr<_Recordset> rows;
    return connection_->Execute(Bstr(text).get(), nullptr, options, rows.put());
  }

  Ptr<_Connection> connection_ = make_connection(database_);
};

TEST_F(Ado, MoveFirstAfterMovingReadsTheRowsAnew) {
  const auto rows = rows_of(L"SELECT * FROM Forces WHERE ForceID > 0 ORDER BY ForceID");
  while (!at_end(rows)) rows->MoveNext();
  execute(L"UPDATE Forces SET Magnitude = 7 WHERE ForceID = 1");
  EXPECT_EQ(rows->MoveFirst(), S_OK);
  EXPECT_EQ(value(rows, L"ForceID").get().lVal, 1);
  EXPECT_EQ(value(rows, L"Magnitude").get().dblVal, 7);
}

TEST_F(Ado, FieldsAreFoundByNameNumberAndTable) {
  const auto rows =
      rows_of(L"SELECT F.*, L.* FROM Forces F LEFT JOIN ForceLoadSets L ON F.ForceID = L.ForceID");
  EXPECT_EQ(value(rows, L"F.ForceID").get().lVal, 1);
  EXPECT_EQ(value(rows, L"L.ForceID").type(), VT_NULL);
  Variant magnitude;
  EXPECT_EQ(field(rows, Variant(2))->get_Value(magnitude.put()), S_OK);
  EXPECT_EQ(magnitude.get().dblVal, 2.5);

  Ptr<Fields> fields;
  rows->get_Fields(fields.put());
  for (const auto& index :
       {Variant(Bstr(L"ForceID")), Variant(Bstr(L"Nothing")), Variant(5), Variant(-1)}) {
    Ptr<Field> none;
    EXPECT_EQ(fields->get_Item(index, none.put()), kItemNotFound);
    EXPECT_FALSE(last_sentence().empty());
    EXPECT_FALSE(none);
  }
}

TEST_F(Ado, AFieldIsALiveViewAndMayOutliveEverythingElse) {
  auto rows = rows_of(L"SELECT Description FROM Forces ORDER BY ForceID");
  const auto description = field(rows, Variant(0));
  EXPECT_EQ(field(rows, Variant(0)).get(), description.get());
  rows->MoveNext();
  Variant text;
  EXPECT_EQ(description->get_Value(text.put()), S_OK);
  EXPECT_EQ(Bstr::view(text.get().bstrVal), L"Bob's");
  rows.reset();
  connection_.reset();
  EXPECT_EQ(description->get_Value(text.put()), S_OK);
}

/// An object whose default property closes a recordset before it tells a number.
class ClosesTheRows : public com::Object<IDispatch> {
 public:
  explicit ClosesTheRows(Ptr<_Recordset> rows) : rows_(std::move(rows)) {}

  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                      UINT*) override {
    rows_->Close();
    *result = Variant(1).detach();
    return S_OK;
  }

 private:
  Ptr<_Recordset> rows_;
};

TEST_F(Ado, AnIndexThatClosesTheRecordsetFindsItClosed) {
  const auto rows = rows_of(L"SELECT * FROM Forces");
  const auto object = com::make<ClosesTheRows>(rows);
  const Variant index(static_cast<IDispatch*>(object.get()));
  Ptr<Fields> fields;
  rows->get_Fields(fields.put());
  Ptr<Field> field;
  EXPECT_EQ(fields->get_Item(index, field.put()), kObjectClosed);
  ASSERT_EQ(open(rows, L"SELECT * FROM Forces"), S_OK);
  Variant value;
  EXPECT_EQ(rows->get_Collect(index, value.put()), kObjectClosed);
}

TEST_F(Ado, ValuesComeInTypesThatScriptsComputeWith) {
  const auto rows = rows_of(
      L"SELECT 2147483647 AS a, -2147483649 AS b, 9007199254740993 AS c, "
      L"x'01ff' AS d, '' AS e, 1e300 AS f");
  EXPECT_EQ(value(rows, L"a").type(), VT_I4);
  EXPECT_EQ(value(rows, L"b").get().dblVal, -2147483649.0);
  const auto exact = value(rows, L"c");
  EXPECT_EQ(exact.type(), VT_DECIMAL);
  EXPECT_EQ(Bstr::view(exact.as(VT_BSTR).get().bstrVal), L"9007199254740993");
  EXPECT_EQ(value(rows, L"d").type(), VT_ARRAY | VT_UI1);
  EXPECT_EQ(value(rows, L"e").type(), VT_BSTR);
  EXPECT_EQ(value(rows, L"f").get().dblVal, 1e300);
}

TEST_F(Ado, OpenRefusesWhatItCannotUse) {
  const auto rows = new_recordset();
  const Variant query{Bstr(L"SELECT * FROM Forces")};
  const auto open_with = [&](const Variant& connection) {
    return rows->Open(query, connection, adOpenForwardOnly, adLockReadOnly, adCmdText);
  };
  EXPECT_EQ(open_with(Variant::omitted()), kInvalidConnection);
  EXPECT_EQ(open_with(Variant(Bstr(L"Provider=x"))), kInvalidConnection);
  EXPECT_EQ(open_with(Variant(rows.get())), kInvalidConnection);
  EXPECT_THAT(last_sentence(), HasSubstr(L"Pass the Connection"));
  EXPECT_EQ(open(rows, L"SELECT * FROM Nothing"), kErrorsInCommand);
  EXPECT_EQ(open(rows, L"SELECT * FROM Forces", adCmdStoredProc), kFeatureNotAvailable);

  ASSERT_EQ(open_with(Variant(connection_.get())), S_OK);
  EXPECT_EQ(open_with(Variant(connection_.get())), kObjectOpen);
}

TEST_F(Ado, TransactionsWorkByTextAndByMember) {
  EXPECT_EQ(execute(L"BEGIN TRANSACTION", adExecuteNoRecords), S_OK);
  EXPECT_EQ(execute(L"DELETE FROM Forces"), S_OK);
  EXPECT_EQ(connection_->RollbackTrans(), S_OK);
  EXPECT_EQ(count(L"Forces"), 2);
  LONG level = 0;
  EXPECT_EQ(connection_->BeginTrans(&level), S_OK);
  EXPECT_EQ(level, 1);
  EXPECT_EQ(execute(L"COMMIT", adOptionUnspecified), S_OK);
  EXPECT_EQ(connection_->CommitTrans(), kInvalidTransaction);
}

TEST_F(Ado, EverythingFailsWithASentenceOnceTheDatabaseIsClosed) {
  const auto rows = rows_of(L"SELECT * FROM Forces");
  const auto magnitude = field(rows, Variant(2));
  const auto command = make_command(database_);
  command->put_CommandText(Bstr(L"SELECT * FROM Forces").get());
  database_->close();

  Variant ignored;
  VARIANT_BOOL end = 0;
  LONG level = 0;
  Ptr<_Recordset> other;
  const std::function<HRESULT()> uses[] = {
      [&] { return magnitude->get_Value(ignored.put()); },
      [&] { return rows->get_EOF(&end); },
      [&] { return rows->MoveFirst(); },
      [&] { return rows->MoveNext(); },
      [&] { return execute(L"SELECT * FROM Forces"); },
      [&] { return connection_->BeginTrans(&level); },
      [&] { return command->Execute(nullptr, nullptr, adCmdText, other.put()); },
      [&] { return open(new_recordset(), L"SELECT * FROM Forces"); }};
  for (const auto& use : uses) {
    EXPECT_EQ(use(), kObjectClosed);
    EXPECT_THAT(last_sentence(), HasSubstr(L"is closed. Open it again"));
  }
  LONG state = adStateOpen;
  EXPECT_EQ(rows->get_State(&state), S_OK);
  EXPECT_EQ(state, adStateClosed);
  EXPECT_EQ(rows->Close(), S_OK);
  database_->close();
  EXPECT_TRUE(std::filesystem::remove(file_.path()));
}

TEST_F(Ado, ObjectsAnswerTheInterfacesOfAdoAndKeepTheirIdentity) {
  const auto rows = rows_of(L"SELECT * FROM Forces");
  Ptr<Fields> fields;
  rows->get_Fields(fields.put());
  const auto first = field(rows, Variant(0));
  EXPECT_TRUE(rows.query<Recordset15>() && rows.query<Recordset21>() && rows.query<IDispatch>());
  EXPECT_TRUE(fields.query<Fields15>() && fields.query<Fields20>());
  EXPECT_TRUE(first.query<Field20>() && connection_.query<Connection15>());
  EXPECT_FALSE(rows.query<Fields15>());
  const auto command = make_command(database_);
  const auto answers = [](const auto& object, const wchar_t* identifier) {
    IID iid{};
    IIDFromString(identifier, &iid);
    Ptr<IUnknown> same;
    const auto support = object.template query<ISupportErrorInfo>();
    return SUCCEEDED(object->QueryInterface(iid, same.put_void())) &&
           support->InterfaceSupportsErrorInfo(iid) == S_OK;
  };
  // The identifiers of ADO 6.1.
  for (const wchar_t* const identifier :
       {L"{0000150E-0000-0010-8000-00AA006D2EA4}", L"{0000154F-0000-0010-8000-00AA006D2EA4}",
        L"{00001555-0000-0010-8000-00AA006D2EA4}", L"{00001556-0000-0010-8000-00AA006D2EA4}"}) {
    EXPECT_TRUE(answers(rows, identifier)) << identifier;
    EXPECT_FALSE(answers(fields, identifier)) << identifier;
  }
  EXPECT_TRUE(answers(connection_, L"{00001515-0000-0010-8000-00AA006D2EA4}"));
  EXPECT_TRUE(answers(connection_, L"{00001550-0000-0010-8000-00AA006D2EA4}"));
  EXPECT_TRUE(answers(command, L"{00001508-0000-0010-8000-00AA006D2EA4}"));
  EXPECT_TRUE(answers(command, L"{0000154E-0000-0010-8000-00AA006D2EA4}"));
  EXPECT_TRUE(answers(command, L"{986761E8-7269-4890-AA65-AD7C03697A6D}"));
  EXPECT_TRUE(answers(fields, L"{00001506-0000-0010-8000-00AA006D2EA4}"));
  EXPECT_TRUE(answers(fields, L"{0000154D-0000-0010-8000-00AA006D2EA4}"));
  EXPECT_TRUE(answers(fields, L"{00001564-0000-0010-8000-00AA006D2EA4}"));
  EXPECT_TRUE(answers(first, L"{0000154C-0000-0010-8000-00AA006D2EA4}"));
  EXPECT_TRUE(answers(first, L"{00001569-0000-0010-8000-00AA006D2EA4}"));
  EXPECT_EQ(first.query<IDispatch>().query<IUnknown>().get(), first.query<IUnknown>().get());
  EXPECT_NE(first.query<IUnknown>().get(), fields.query<IUnknown>().get());
  EXPECT_NE(rows.query<IUnknown>().get(), fields.query<IUnknown>().get());
}

/// What a machine without ADO 2.8 finds: the library's own identifier is registered nowhere.
constexpr GUID kSuccessor = {
    0x2A75196C, 0xD9EB, 0x4129, {0xB8, 0x03, 0x93, 0x13, 0x27, 0xF7, 0x2D, 0x5C}};
const com::TypeLibrary kNotRegistered{
    {0x2A75196C, 0, 0, {}}, 2, 8, LOCALE_NEUTRAL, {&kSuccessor, 2, 8, [](REFGUID iid) {
                                                     return IsEqualIID(iid, __uuidof(Field20))
                                                                ? __uuidof(Field)
                                                                : iid;
                                                   }}};

TEST(AdoTypeInfo, ComesFromASuccessorOfTheLibraryWhereThatAloneIsRegistered) {
  com::TypeInfo info(kNotRegistered, __uuidof(Field20));
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(info.get(LOCALE_NEUTRAL)->GetTypeAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->guid, __uuidof(Field));
  info.get(LOCALE_NEUTRAL)->ReleaseTypeAttr(attributes);
  com::TypeInfo::release_all();
}

}  // namespace
}  // namespace modeldb

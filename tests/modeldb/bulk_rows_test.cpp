// Rows appended from arrays, and queries read into arrays.

#include <vector>

#include "tests/modeldb/model_test.h"

namespace {

using model_test::bstr;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

com::Variant text(std::wstring_view characters) { return com::Variant(com::Bstr(characters)); }

/// A two-dimensional array of `type` with these lower bounds, filled by put(row, column).
template <class Put>
com::Variant table(VARTYPE type, ULONG rows, ULONG columns, LONG lower, Put put) {
  SAFEARRAYBOUND bounds[] = {{rows, lower}, {columns, lower}};
  com::Variant result;
  VARIANT* const array = result.put();
  array->parray = SafeArrayCreate(type, 2, bounds);
  array->vt = static_cast<VARTYPE>(VT_ARRAY | type);
  for (ULONG row = 0; row < rows; ++row) {
    for (ULONG column = 0; column < columns; ++column) {
      LONG index[] = {lower + static_cast<LONG>(row), lower + static_cast<LONG>(column)};
      put(index, row, column, array->parray);
    }
  }
  return result;
}

using Row = std::vector<com::Variant>;

/// A range of cells as a spreadsheet gives it: variants, counted from 1.
com::Variant range(const std::vector<Row>& rows) {
  const auto width = static_cast<ULONG>(rows.front().size());
  return table(VT_VARIANT, static_cast<ULONG>(rows.size()), width, 1,
               [&](LONG* index, ULONG row, ULONG column, SAFEARRAY* array) {
                 SafeArrayPutElement(array, index, com::mutable_address(rows[row][column]));
               });
}

class BulkRowsTest : public model_test::ModelTest {
 protected:
  HRESULT append(const wchar_t* table, const wchar_t* columns, const com::Variant& rows) {
    return database->AppendRows(bstr(table).get(), text(columns), rows, keys.put());
  }
  std::vector<long> appended() {
    std::vector<long> numbers;
    long last = -1;
    SafeArrayGetUBound(keys.get().parray, 1, &last);
    for (long index = 0; index <= last; ++index) {
      com::Variant key;
      SafeArrayGetElement(keys.get().parray, &index, key.put());
      EXPECT_EQ(key.type(), VT_I4);
      numbers.push_back(key.get().lVal);
    }
    return numbers;
  }

  com::Variant keys;
};

TEST_F(BulkRowsTest, ArraysOfAnyTypeAndBoundsAreTheSameRows) {
  const auto typed = [](auto number, VARTYPE type, LONG lower) {
    return table(type, 2, 2, lower, [=](LONG* index, ULONG row, ULONG column, SAFEARRAY* array) {
      auto value = static_cast<decltype(number)>(10 * (row + 1) + column);
      SafeArrayPutElement(array, index, &value);
    });
  };
  for (const com::Variant& rows :
       {typed(double{}, VT_R8, 0), typed(double{}, VT_R8, -3), typed(float{}, VT_R4, 1),
        typed(long{}, VT_I4, 7), typed(short{}, VT_I2, 0), typed(BYTE{}, VT_UI1, 1),
        range({{com::Variant(10), text(L" 11 ")}, {com::Variant(20.0), text(L"2.1e1")}})}) {
    SCOPED_TRACE(rows.type());
    ASSERT_EQ(append(L"NodalForces", L"VertexID, magnitude", rows), S_OK)
        << model_test::last_sentence();
    EXPECT_EQ(value(L"SELECT group_concat(VertexID || ':' || CAST(Magnitude AS INTEGER)) "
                    L"FROM NodalForces"),
              "10:11,20:21");
    ASSERT_EQ(execute(L"DELETE FROM NodalForces"), S_OK);
  }
  // By reference, as the variables of scripts come.
  com::Variant rows = typed(double{}, VT_R8, 0);
  VARIANT by_reference;
  by_reference.vt = VT_BYREF | VT_VARIANT;
  by_reference.pvarVal = com::mutable_address(rows);
  EXPECT_EQ(database->AppendRows(bstr(L"NodalForces").get(), text(L"VertexID,Magnitude"),
                                 by_reference, keys.put()),
            S_OK);
  EXPECT_EQ(appended().size(), 2u);
}

TEST_F(BulkRowsTest, VerticesAndSetsAreThoseOfTheModel) {
  ASSERT_EQ(append(L"Vertices", L"VertexID,X", range({{com::Variant(12), com::Variant(4.5)}})),
            S_OK);
  ASSERT_EQ(append(L"LoadSets", L"Description", range({{text(L"Wind")}, {text(L"Snow")}})), S_OK);
  EXPECT_THAT(appended(), ElementsAre(1, 2));
  const com::Variant empty;
  ASSERT_EQ(
      append(L"NodalForces", L"NodalForceID,VertexID,LoadSets,LoadSets,LoadSetID",
             range({{empty, com::Variant(12), text(L"Wind"), text(L" Snow "), empty},
                    {com::Variant(40), com::Variant(15), empty, text(L"Snow"), com::Variant(2)},
                    {empty, empty, empty, empty, com::Variant(1)}})),
      S_OK)
      << model_test::last_sentence();
  EXPECT_THAT(appended(), ElementsAre(1, 40, 41));
  EXPECT_EQ(value(L"SELECT group_concat(NodalForceID || ':' || VertexID) FROM NodalForces"),
            "1:12,40:15,41:16");
  EXPECT_EQ(value(L"SELECT group_concat(NodalForceID || ':' || LoadSetID) FROM (SELECT * FROM "
                  L"NodalForceLoadSets ORDER BY NodalForceID, LoadSetID)"),
            "1:1,1:2,40:2,41:1");
  EXPECT_EQ(value(L"SELECT CAST(10 * X AS INTEGER) || ':' || CAST(10 * Z AS INTEGER) FROM Vertices "
                  L"WHERE VertexID = 12"),
            "45:0");
  EXPECT_EQ(value(L"SELECT group_concat(VertexID) FROM Vertices WHERE X IS NULL"), "15,16");

  com::Ptr<ILoadSet> blank_before;
  ASSERT_EQ(database->LoadSet(bstr(L" Wind").get(), blank_before.put()), S_OK);
  ASSERT_EQ(append(L"NodalForces", L"LoadSets", range({{text(L" Wind")}})), S_OK);
  EXPECT_EQ(value(L"SELECT max(LoadSetID) FROM NodalForceLoadSets"),
            std::to_string(id_of(blank_before)));
}

TEST_F(BulkRowsTest, RowThatCannotBeStoredAddsNothingAndIsNamed) {
  ASSERT_EQ(append(L"NodalForces", L"VertexID", range({{com::Variant(1)}})), S_OK);
  ASSERT_EQ(append(L"LoadSets", L"Description", range({{text(L"Twin")}, {text(L"Twin")}})), S_OK);
  com::Variant date;
  date.put()->vt = VT_DATE;
  com::Variant not_available;  // #N/A of a spreadsheet
  not_available.put()->vt = VT_ERROR;
  struct Fault {
    const wchar_t* column;
    com::Variant cell;
    const char* words;
  };
  const Fault faults[] = {
      {L"Magnitude", text(L"12,5"), "\"12,5\", which is no number: decimals follow a point"},
      {L"Magnitude", com::Variant(1e308 * 10), "finite number"},
      {L"Magnitude", com::Variant::boolean(true), "finite number"},
      {L"Magnitude", date, "a date"},
      {L"Magnitude", not_available, "an error value"},
      {L"Magnitude", range({{com::Variant(1)}}), "a list"},
      {L"VertexID", com::Variant(1.5), "whole number"},
      {L"VertexID", com::Variant(3e9), "whole number"},
      {L"VertexID", com::Variant(-5), "\"-5\", which is no number of a node"},
      {L"VertexID", com::Variant::boolean(true), "no number of a node"},
      {L"VertexID", com::Variant::boolean(false), "no number of a node"},
      {L"MultiplierTableID", text(L"-3000000000"), "whole number"},
      {L"NodalForceID", com::Variant(1), "has a NodalForce"},
      {L"NodalForceID", com::Variant(-1), "1 or more"},
      {L"LoadSets", text(L"wind"), "no LoadSet of that name"},
      {L"LoadSets", text(L"Twin"), "several LoadSets"},
      {L"LoadSetID", com::Variant(3), "no LoadSet of that number"},
      {L"Description", text({L"a\0b", 3}), "NUL"},
      {L"Description", date, "a date"},
      {L"Description", text(L"half a pair \xD800"), "Row 2"},
  };
  for (const Fault& fault : faults) {
    SCOPED_TRACE(fault.words);
    const auto rows = range({{com::Variant(5), com::Variant()}, {com::Variant(6), fault.cell}});
    const std::wstring columns = L"Vx," + std::wstring(fault.column);
    EXPECT_SENTENCE(append(L"NodalForces", columns.c_str(), rows), HasSubstr("Row 2"),
                    HasSubstr(fault.words), HasSubstr("Nothing was added."));
  }
  EXPECT_EQ(count(L"NodalForces"), "1");
  EXPECT_EQ(count(L"Vertices"), "1");
  // A support would lose such a flag when it is loaded: it has 16 bits there.
  EXPECT_SENTENCE(append(L"NodalBoundaryConditions", L"Tx", range({{com::Variant(65536)}})),
                  HasSubstr("no whole number of at most 32767"));
}

TEST_F(BulkRowsTest, ArgumentsThatAreNoTableAreRefused) {
  const auto row = range({{com::Variant(5), com::Variant(6)}});
  EXPECT_SENTENCE(append(L"NodalForce", L"Vx,Vy", row), HasSubstr("NodalForces"));
  EXPECT_SENTENCE(append(L"NodalForces", L"Vx,Vw", row), HasSubstr("\"Vw\""),
                  HasSubstr("LoadSetID"));
  EXPECT_SENTENCE(append(L"NodalForces", L"Vx,vx", row), HasSubstr("twice"));
  EXPECT_SENTENCE(append(L"NodalForces", L"Vx", row), HasSubstr("2 cells for 1 column"));
  EXPECT_SENTENCE(append(L"Vertices", L"X,LoadSets", row), HasSubstr("\"LoadSets\""));
  for (const com::Variant& rows : {com::Variant(), com::Variant(5), text(L"5"),
                                   com::Variant::array(std::vector<long>{5, 6})}) {
    EXPECT_SENTENCE(append(L"NodalForces", L"Vx,Vy", rows), HasSubstr("no table"));
  }
  EXPECT_EQ(count(L"NodalForces"), "0");
  ASSERT_EQ(append(L"NodalForces", L"Vx,Vy", com::Variant::array(std::vector<long>())), S_OK);
  EXPECT_THAT(appended(), IsEmpty());
}

TEST_F(BulkRowsTest, RolledBackWithTheClientsTransaction) {
  execute(L"BEGIN TRANSACTION");
  ASSERT_EQ(append(L"NodalForces", L"Vx", range({{com::Variant(1)}})), S_OK);
  EXPECT_SENTENCE(append(L"NodalForces", L"Vx", range({{com::Variant(1)}, {text(L"x")}})),
                  HasSubstr("Row 2"));
  EXPECT_EQ(count(L"NodalForces"), "1");
  execute(L"ROLLBACK TRANSACTION");
  EXPECT_EQ(count(L"NodalForces"), "0");
  EXPECT_EQ(count(L"Vertices"), "0");
}

TEST_F(BulkRowsTest, QueryComesRowByColumnWithItsNamesOnRequest) {
  execute(L"INSERT INTO Vertices (Description, X) VALUES ('a', 1.5)");
  execute(L"INSERT INTO Vertices (Description, X) VALUES ('b', NULL)");
  const auto rows = [&](const wchar_t* sql, const com::Variant& names) {
    com::Variant found;
    EXPECT_EQ(database->Rows(bstr(sql).get(), names, found.put()), S_OK);
    SAFEARRAY* const array = found.get().parray;
    std::string shown;
    LONG last[2] = {};
    for (UINT dimension : {1u, 2u}) SafeArrayGetUBound(array, dimension, &last[dimension - 1]);
    for (LONG row = 0; row <= last[0]; ++row) {
      for (LONG column = 0; column <= last[1]; ++column) {
        LONG index[] = {row, column};
        com::Variant cell;
        SafeArrayGetElement(array, index, cell.put());
        shown += cell.type() == VT_NULL
                     ? "NULL"
                     : model_test::narrow(com::Bstr::view(cell.as(VT_BSTR).get().bstrVal));
        shown += column == last[1] ? "\n" : " ";
      }
    }
    return shown;
  };
  const wchar_t* const all = L"SELECT VertexID AS Node, Description, X FROM Vertices";
  EXPECT_EQ(rows(all, com::Variant::omitted()), "1 a 1.5\n2 b NULL\n");
  EXPECT_EQ(rows(all, com::Variant::boolean(true)), "Node Description X\n1 a 1.5\n2 b NULL\n");
  EXPECT_EQ(rows(L"SELECT X FROM Vertices WHERE X > 2", com::Variant::boolean(false)), "");
  EXPECT_SENTENCE(
      database->Rows(bstr(L"DELETE FROM Vertices").get(), com::Variant::omitted(), keys.put()),
      HasSubstr("only a SELECT"));
  EXPECT_SENTENCE(database->Rows(bstr(all).get(), text(L"names"), keys.put()),
                  HasSubstr("True nor False"));
}

}  // namespace

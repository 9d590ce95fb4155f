// Rows in bulk: from an array against records saved one by one, and a query into an array against a
// recordset that is walked.

#include <msado15_backcompat.h>

#include <cstdlib>

#include "bench/model.h"
#include "bench/sections.h"

namespace bench {
namespace {

constexpr int kRounds = 5;
constexpr int kScriptRounds = 3;
/// What a script saves one by one in a second or so.
constexpr long kSavedByScript = 2'000;
constexpr wchar_t kColumns[] = L"Description, VertexID, Magnitude, Vx, Vy, Vz";
constexpr ULONG kWidth = 6;

void execute(const Model& model, const wchar_t* text) {
  com::Ptr<IDispatch> object;
  com::check(model->get_Connection(object.put()));
  const auto connection = object.query<Connection15>();
  com::Ptr<_Recordset> none;
  com::check(connection->Execute(com::Bstr(text).get(), nullptr, adExecuteNoRecords, none.put()),
             connection);
}

/// The cells of forces on vertices of their own, as a spreadsheet would hand them over.
com::Variant make_cells(long count) {
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(count), 1}, {kWidth, 1}};
  com::Variant cells;
  VARIANT* const array = cells.put();
  array->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  array->vt = VT_ARRAY | VT_VARIANT;
  auto* const elements = static_cast<VARIANT*>(array->parray->pvData);
  for (long row = 0; row < count; ++row) {
    const double number = static_cast<double>(row + 1);
    com::Variant values[kWidth] = {
        com::Variant(com::Bstr(L"Tip load")), com::Variant(number),
        com::Variant(0.1 * number),           com::Variant(0.57735026918962584),
        com::Variant(-0.40824829046386302),   com::Variant(0.70710678118654757)};
    for (ULONG column = 0; column < kWidth; ++column) {
      elements[row + column * count] = values[column].detach();
    }
  }
  return cells;
}

enum class Transactions { kOne, kOneEach };

/// Forces made and saved one after the other.
double time_one_by_one(long count, Transactions transactions) {
  const ScratchFile file;
  const Model model(file);
  const Factory<INodalForce> factory(__uuidof(NodalForce));
  return nanoseconds_each(count, [&] {
    if (transactions == Transactions::kOne) execute(model, L"BEGIN TRANSACTION");
    for (long number = 1; number <= count; ++number) {
      const auto force = factory.create();
      fill(*force.get());
      force->put_Magnitude(0.1 * static_cast<double>(number));
      vertex_of(*force.get())->put_ID(number);
      com::check(force->Save(model.argument(), com::Variant::omitted(), com::Variant::omitted()),
                 force);
    }
    if (transactions == Transactions::kOne) execute(model, L"COMMIT TRANSACTION");
  });
}

void append(const Model& model, long count) {
  com::Variant keys;
  com::check(model->AppendRows(com::Bstr(L"NodalForces").get(), com::Variant(com::Bstr(kColumns)),
                               make_cells(count), keys.put()));
}

double time_from_array(long count) {
  const ScratchFile file;
  const Model model(file);
  return nanoseconds_each(count, [&] { append(model, count); });
}

constexpr wchar_t kAllForces[] = L"SELECT * FROM NodalForces";

com::Ptr<Recordset15> query(const Model& model) {
  com::Ptr<IDispatch> rows;
  com::check(model->Query(com::Bstr(kAllForces).get(), rows.put()));
  return rows.query<Recordset15>();
}

/// Every value of every row, asked for field by field.
void walk(const Model& model) {
  const auto rows = query(model);
  com::Ptr<Fields> fields;
  com::check(rows->get_Fields(fields.put()), rows);
  long width = 0;
  com::check(fields->get_Count(&width), fields);
  VARIANT_BOOL at_end = VARIANT_FALSE;
  while (SUCCEEDED(rows->get_EOF(&at_end)) && !at_end) {
    for (long index = 0; index < width; ++index) {
      com::Ptr<Field> field;
      com::Variant value;
      com::check(fields->get_Item(com::Variant(index), field.put()), fields);
      com::check(field->get_Value(value.put()), field);
    }
    com::check(rows->MoveNext(), rows);
  }
}

void compare_reading(long count) {
  const ScratchFile file;
  const Model model(file);
  append(model, count);
  const auto timed = [&](auto work) -> Measurement {
    return [=, &model] { return nanoseconds_each(count, [&] { work(model); }); };
  };
  const auto read_array = timed([](const Model& opened) {
    com::Variant rows;
    com::check(opened->Rows(com::Bstr(kAllForces).get(), com::Variant::omitted(), rows.put()));
  });
  const auto get_rows = timed([](const Model& opened) {
    com::Variant rows;
    const auto found = query(opened);
    com::check(found->GetRows(-1, com::Variant::omitted(), com::Variant::omitted(), rows.put()),
               found);
  });
  compare("Rows / recordset, field by field", kNothingWanted, read_array, timed(walk), kRounds);
  compare("GetRows / recordset, field by field", kNothingWanted, get_rows, timed(walk), kRounds);
}

/// Has a script do both; returns the nanoseconds for each force from an array and one by one.
std::vector<double> run_script(long count) {
  const char* const source = std::getenv("ORV_SOURCE_DIR");
  const char* const folder = std::getenv("TEMP");
  const std::string models = std::string(folder ? folder : ".") + "\\orv_bench_";
  const auto delete_models = [&] {
    for (const char* const name : {"one_by_one", "from_array"}) {
      DeleteFileA((models + name + ".orvdb").c_str());
    }
  };
  delete_models();
  const std::string command = "cscript //nologo \"" + std::string(source ? source : ".") +
                              "\\bench\\bulk.vbs\" \"" + (folder ? folder : ".") + "\" " +
                              std::to_string(count) + " " + std::to_string(kSavedByScript);
  FILE* const output = _popen(command.c_str(), "r");
  double one_by_one = 0;
  double from_array = 0;
  const int read = output ? std::fscanf(output, "%lf %lf", &one_by_one, &from_array) : 0;
  if (output) _pclose(output);
  delete_models();
  if (read != 2) com::check(E_FAIL);
  constexpr double kNanoseconds = 1e9;
  return {from_array * kNanoseconds / static_cast<double>(count),
          one_by_one * kNanoseconds / static_cast<double>(kSavedByScript)};
}

}  // namespace

void run_bulk(const Options& options) {
  const long count = options.saved_forces;
  print_heading("Rows in bulk / one by one");
  constexpr double kTenth = 0.1;
  print_comparison("VBScript: array / saved in one transaction",
                   Samples("VBScript", kScriptRounds, [=] { return run_script(count); }), 1,
                   kTenth);
  constexpr long kSaved = 200;
  compare(
      "C++: array / saved, a transaction each", kTenth, [=] { return time_from_array(count); },
      [] { return time_one_by_one(kSaved, Transactions::kOneEach); }, kRounds);
  compare(
      "C++: array / saved in one transaction", kNothingWanted,
      [=] { return time_from_array(count); },
      [=] { return time_one_by_one(count, Transactions::kOne); }, kRounds);
  compare_reading(count);
}

}  // namespace bench

// SqlString: a record's texts against the C runtime's formatting of the same text.

#include <cwchar>
#include <vector>

#include "bench/model.h"
#include "bench/sections.h"

namespace bench {
namespace {

constexpr long kTexts = 10'000;  // a round

constexpr wchar_t kValuesFormat[] = L"'%ls', %i, %i, %.17g, %.17g, %.17g, %.17g, %i";
constexpr wchar_t kAssignmentsFormat[] =
    L"Description = '%ls', VertexID = %i, MultiplierTableID = %i, Magnitude = %.17g, Vx = %.17g, "
    L"Vy = %.17g, Vz = %.17g, CoordinateSystemID = %i";

int print(wchar_t* buffer, std::size_t size, const wchar_t* format, const ForceValues& values) {
  return _snwprintf(buffer, size, format, values.description.get(), values.vertex_id,
                    values.multiplier_id, values.magnitude, values.vx, values.vy, values.vz,
                    values.coordinate_system_id);
}

/// Formats twice, as an exactly sized buffer asks for: once to learn the length.
com::Bstr print_exactly_sized(const ForceValues& values, const wchar_t* format) {
  const int length = print(nullptr, 0, format, values);
  std::vector<wchar_t> buffer(static_cast<std::size_t>(length) + 1);
  print(buffer.data(), buffer.size(), format, values);
  return com::Bstr::adopt(SysAllocString(buffer.data()));
}

com::Bstr print_at_once(const ForceValues& values, const wchar_t* format) {
  wchar_t buffer[512];
  print(buffer, std::size(buffer), format, values);
  return com::Bstr::adopt(SysAllocString(buffer));
}

void compare_text(const std::string& name, INodalForce& force, long code, const wchar_t* format,
                  double wanted) {
  const ForceValues values(force);
  if (sql_string(force, code).view() != print_exactly_sized(values, format).view()) {
    throw com::Error(E_UNEXPECTED);  // nothing to compare: the texts differ
  }
  const Samples samples(name, 21,
                        {repeat(kTexts, [&] { sql_string(force, code); }),
                         repeat(kTexts, [&] { print_exactly_sized(values, format); }),
                         repeat(kTexts, [&] { print_at_once(values, format); })});
  print_comparison(name + " / _snwprintf, exact buffer", samples, 1, wanted);
  print_comparison(name + " / _snwprintf, large buffer", samples, 2);
}

}  // namespace

void run_text(const Options&) {
  const ScratchFile file;
  const Model model(file);
  const auto force = Factory<INodalForce>(__uuidof(NodalForce)).create();
  fill(*force.get());
  vertex_of(*force.get())->put_ID(4711);

  print_heading("Texts of a force");
  compare_text("SqlString 4 (values)", *force.get(), 4, kValuesFormat, 1.0 / 3);
  compare_text("SqlString 6 (assignments)", *force.get(), 6, kAssignmentsFormat, kNothingWanted);
}

}  // namespace bench

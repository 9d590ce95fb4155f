#include "modeldb/ado/ado61.h"

#include <msado15_backcompat.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace modeldb {
namespace {

/// ADO's family of identifiers, which differ in their first number.
constexpr IID identifier(unsigned long number) {
  return {number, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};
}

}  // namespace

IID ado61_identifier(REFIID iid) {
  static const std::pair<const IID&, IID> kIdentifiers[] = {
      {__uuidof(Recordset15), identifier(0x150E)},
      {__uuidof(Recordset20), identifier(0x154F)},
      {__uuidof(Recordset21), identifier(0x1555)},
      {__uuidof(_Recordset), identifier(0x1556)},
      {__uuidof(Connection15), identifier(0x1515)},
      {__uuidof(_Connection), identifier(0x1550)},
      {__uuidof(Command15), identifier(0x1508)},
      {__uuidof(Command25), identifier(0x154E)},
      {__uuidof(_Command),
       {0x986761E8, 0x7269, 0x4890, {0xAA, 0x65, 0xAD, 0x7C, 0x03, 0x69, 0x7A, 0x6D}}},
      {__uuidof(Fields15), identifier(0x1506)},
      {__uuidof(Fields20), identifier(0x154D)},
      {__uuidof(Fields), identifier(0x1564)},
      {__uuidof(Field20), identifier(0x154C)},
      {__uuidof(Field), identifier(0x1569)},
  };
  const auto found = std::ranges::find_if(
      kIdentifiers, [&](const auto& entry) { return IsEqualIID(entry.first, iid); });
  return found == std::end(kIdentifiers) ? iid : found->second;
}

}  // namespace modeldb

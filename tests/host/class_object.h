#pragma once

#include <oaidl.h>

#include <functional>
#include <string>

#include "tests/host/journal.h"

namespace fake {

/// A class that this process offers for as long as the value lives. Each creation is noted in the
/// journal as "new <name>", and fails when the journal says so.
class ClassObject {
 public:
  /// Makes an object that nobody holds yet.
  using Maker = std::function<IDispatch*()>;

  ClassObject(Journal& journal, REFCLSID clsid, std::string name, Maker make);
  ClassObject(ClassObject&& other) noexcept;
  ~ClassObject();

 private:
  DWORD registration_ = 0;
};

}  // namespace fake

#pragma once

#include <objbase.h>

#include "com/ptr.h"
#include "tools/text/failure.h"

namespace orv {

/// A new object of a class of the three modules. Raises, with a sentence, when it cannot be made.
template <class Class, class Interface>
com::Ptr<Interface> create() {
  com::Ptr<Interface> object;
  const HRESULT result = CoCreateInstance(__uuidof(Class), nullptr, CLSCTX_INPROC_SERVER,
                                          __uuidof(Interface), object.put_void());
  if (FAILED(result)) {
    text::fail(result,
               "The modules orv_node.dll, orv_modeldb.dll and orv_tools.dll cannot be used. They "
               "and their .manifest files belong into the folder of orv.exe.");
  }
  return object;
}

}  // namespace orv

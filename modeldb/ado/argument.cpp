#include "modeldb/ado/argument.h"

#include "modeldb/base/failure.h"

namespace modeldb {

com::Variant argument_as(VARTYPE type, const VARIANT& argument, std::wstring_view sentence) {
  try {
    return com::Variant(argument).as(type);
  } catch (const com::Error& error) {
    fail(error.result(), sentence);
  }
}

}  // namespace modeldb

#pragma once

#include <windows.h>

#include <concepts>
#include <new>
#include <type_traits>

#include "com/error.h"

namespace com {

/// Puts the error information of a failure where the client looks for it. Null clears it, so that
/// nobody takes the text of an earlier failure for this one's.
inline HRESULT deliver(HRESULT result, const Ptr<IErrorInfo>& info) {
  SetErrorInfo(0, info.get());
  return result;
}

/// The one place where a failure becomes a returned HRESULT. Every interface member that can fail
/// runs its body through it: clients are built with other compilers and no exception of ours may
/// reach them. `body` returns an HRESULT, or nothing for S_OK.
template <class Body>
HRESULT boundary(Body&& body) noexcept {
  try {
    if constexpr (std::is_void_v<std::invoke_result_t<Body>>) {
      body();
      return S_OK;
    } else {
      return body();
    }
  } catch (const Error& error) {
    return deliver(error.result(), error.info());
  } catch (const std::bad_alloc&) {
    return deliver(E_OUTOFMEMORY, nullptr);
  } catch (...) {
    return deliver(E_UNEXPECTED, nullptr);
  }
}

/// The result of an operation that carries on after a failed step and reports the last failure.
class Outcome {
 public:
  explicit Outcome(HRESULT initial = S_OK) : result_(initial) {}

  /// Runs one step. A COM error or a lack of memory in it becomes the result.
  template <class Step>
  void attempt(Step&& step) {
    try {
      step();
    } catch (const Error& error) {
      result_ = error.result();
      info_ = error.info();
    } catch (const std::bad_alloc&) {
      set(E_OUTOFMEMORY);
    }
  }

  /// Replaces the result by that of a step which succeeded or which returned its own status.
  void set(HRESULT result) {
    result_ = result;
    info_.reset();
  }

  /// The result to return; sets the error information of the failure that it reports.
  [[nodiscard]] HRESULT deliver() const {
    return FAILED(result_) ? com::deliver(result_, info_) : result_;
  }

 private:
  HRESULT result_;
  Ptr<IErrorInfo> info_;
};

}  // namespace com

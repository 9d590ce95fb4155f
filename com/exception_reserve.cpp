// A reserve of memory for exceptions, for when there is no other: without it a lack of memory could
// not be reported. The compiler's runtime has one as well, but guards it by a lock that takes
// memory when it is first used, and keeps a note for each thread, which takes memory at the
// thread's first exception; failing at either it never comes back or ends the process.
//
// Compiled into every module, which is linked with --wrap for the functions below.

#include <unwind.h>
#include <windows.h>

#include <atomic>
#include <cstddef>
#include <cstring>
#include <exception>
#include <iterator>
#include <mutex>

#include "com/module.h"

namespace {

/// Room for an exception, or for one of the things that the runtime notes for a thread.
struct alignas(std::max_align_t) Place {
  std::byte bytes[1024];
};

Place places[32];
std::atomic<bool> taken[std::size(places)];

com::Lock reserve_lock;
/// The thread that is allocating an exception; 0 when none is.
std::atomic<DWORD> thread_in_need = 0;

bool in_need() { return thread_in_need == GetCurrentThreadId(); }

bool is_place(const void* memory) {
  return memory >= std::begin(places) && memory < std::end(places);
}

void* take_place(std::size_t size) {
  if (size > sizeof(Place)) return nullptr;
  for (std::size_t index = 0; index < std::size(places); ++index) {
    if (!taken[index].exchange(true)) return std::memset(&places[index], 0, sizeof(Place));
  }
  return nullptr;
}

void give_back(void* memory) { taken[static_cast<Place*>(memory) - places] = false; }

#ifdef __i386__
/// Walks to the first frame and no further: in 32 bits the runtime makes a table of registers and
/// sorts the module's unwind information when it first looks at a frame, and takes memory for both,
/// unchecked.
void prepare_unwinding() {
  static std::atomic<bool> is_prepared = false;
  if (is_prepared) return;
  _Unwind_Backtrace([](_Unwind_Context*, void*) { return _URC_NORMAL_STOP; }, nullptr);
  is_prepared = true;
}
#else
void prepare_unwinding() {}
#endif

}  // namespace

extern "C" {

void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* memory, std::size_t size);
void __real_free(void* memory);
void* __real___cxa_allocate_exception(std::size_t size) noexcept;

void* __wrap_malloc(std::size_t size) {
  void* const memory = __real_malloc(size);
  return memory || !in_need() ? memory : take_place(size);
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
  void* const memory = __real_calloc(count, size);
  return memory || !in_need() || count > sizeof(Place) ? memory : take_place(count * size);
}

void __wrap_free(void* memory) { is_place(memory) ? give_back(memory) : __real_free(memory); }

void* __wrap_realloc(void* memory, std::size_t size) {
  if (!memory) return __wrap_malloc(size);
  if (!is_place(memory)) return __real_realloc(memory, size);
  if (size <= sizeof(Place)) return memory;
  void* const larger = __real_malloc(size);
  if (larger) {
    std::memcpy(larger, memory, sizeof(Place));
    give_back(memory);
  }
  return larger;
}

void* __wrap___cxa_allocate_exception(std::size_t size) noexcept {
  // An exception from inside: the runtime cannot say either that the reserve is used up.
  if (in_need()) std::terminate();
  const std::lock_guard lock(reserve_lock);
  thread_in_need = GetCurrentThreadId();
  void* const exception = __real___cxa_allocate_exception(size);
  static_cast<void>(std::current_exception());  // has the runtime make its note for the thread
  prepare_unwinding();
  thread_in_need = 0;
  return exception;
}

}  // extern "C"

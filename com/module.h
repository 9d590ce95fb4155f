#pragma once

#include <windows.h>

#include <atomic>
#include <mutex>
#include <string>

namespace com {

/// The platform's lock, for std::lock_guard. Unlike the toolchain's std::mutex it owns no memory,
/// which would stay behind when the module is unloaded.
class Lock {
 public:
  void lock() { AcquireSRWLockExclusive(&lock_); }
  void unlock() { ReleaseSRWLockExclusive(&lock_); }
  /// Gives the lock up until `condition` is signalled or the milliseconds have passed.
  void wait(CONDITION_VARIABLE& condition, DWORD milliseconds) {
    SleepConditionVariableSRW(&condition, &lock_, milliseconds, 0);
  }

 private:
  SRWLOCK lock_ = SRWLOCK_INIT;
};

/// The module that this code is linked into: its handle, what keeps it loaded, and its one lock.
class Module {
 public:
  static Module& instance();

  /// Called once from the module's entry point.
  void attach(HINSTANCE handle) { handle_ = handle; }
  /// Called once when the module leaves a process that goes on: gives back type information and
  /// what the language's runtime holds.
  void detach();
  [[nodiscard]] HINSTANCE handle() const { return handle_; }
  [[nodiscard]] bool is_attached() const { return handle_ != nullptr; }

  /// Full path of the module's file.
  [[nodiscard]] std::wstring path() const;

  /// Live objects, locked class objects and class objects in use: each counts once.
  void lock() { ++locks_; }
  void unlock() { --locks_; }
  [[nodiscard]] bool can_unload() const { return locks_ == 0; }

  /// Guards what is built lazily and shared by all threads: class objects and type information.
  [[nodiscard]] Lock& shared_state_lock() { return shared_state_lock_; }

 private:
  HINSTANCE handle_ = nullptr;
  std::atomic<long> locks_ = 0;
  Lock shared_state_lock_;
};

}  // namespace com

#pragma once

#include <windows.h>

#include <atomic>
#include <memory>

#include "com/module.h"

namespace modeldb {

/// Puts the threads that work on one model in line: one at a time, in the order in which they came.
/// The thread whose turn it is may begin further ones within it.
class Turns {
 public:
  /// How long a thread waits, in milliseconds: as long as ADO lets a command run by default. Two
  /// apartments that wait for each other come apart by it.
  static constexpr DWORD kPatience = 30'000;

  explicit Turns(DWORD patience = kPatience) : patience_(patience) {}
  Turns(const Turns&) = delete;
  Turns& operator=(const Turns&) = delete;

  /// Returns whether the turn is the thread's outermost.
  /// kLocked, with a sentence: another thread's turn did not end while this one waited.
  bool begin() { return begin(patience_); }
  /// Waits for however long it takes: for what must not fail, such as the release of an object.
  void begin_surely() noexcept { begin(INFINITE); }
  void end() noexcept;

 private:
  struct Waiting;

  bool begin(DWORD patience);
  void wait(DWORD thread, DWORD patience);
  /// Gives the turn, if nobody has it, to whoever has waited longest.
  void hand_over();

  const DWORD patience_;
  std::atomic<DWORD> thread_ = 0;  // whose turn it is
  int depth_ = 0;
  std::atomic<int> waiting_ = 0;
  com::Lock line_lock_;
  Waiting* line_ = nullptr;
};

/// A turn, for as long as this lives.
class Turn {
 public:
  explicit Turn(const std::shared_ptr<Turns>& turns) : turns_(*turns) {
    if (turns_.begin()) kept_ = turns;
  }
  ~Turn() { turns_.end(); }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  Turns& turns_;
  // Whoever owns the line may go within the outermost turn, and others do not outlast that.
  std::shared_ptr<Turns> kept_;
};

}  // namespace modeldb

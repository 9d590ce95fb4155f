#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace orv {

/// Tells on a terminal what goes on, and for how long already, once it has taken a second; says
/// nothing in a pipe. From its construction to the end of its life.
class Progress {
 public:
  explicit Progress(std::string what);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

 private:
  void show();

  std::string what_;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool is_over_ = false;
  std::thread thread_;
};

}  // namespace orv

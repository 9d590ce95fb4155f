#include "tools/orv/progress.h"

#include <chrono>
#include <iostream>

#include "tools/orv/terminal.h"

namespace orv {

Progress::Progress(std::string what) : what_(std::move(what)) {
  if (is_terminal(STD_ERROR_HANDLE)) thread_ = std::thread([this] { show(); });
}

Progress::~Progress() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    is_over_ = true;
  }
  ended_.notify_one();
  thread_.join();
}

void Progress::show() {
  std::unique_lock lock(mutex_);
  int seconds = 0;
  while (!ended_.wait_for(lock, std::chrono::seconds(1), [this] { return is_over_; })) {
    std::cerr << "\r" << what_ << " ... " << ++seconds << " s" << std::flush;
  }
  // The line is blank again.
  if (seconds > 0) std::cerr << "\r" << std::string(what_.size() + 16, ' ') << "\r" << std::flush;
}

}  // namespace orv

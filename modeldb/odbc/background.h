#pragma once

#include <windows.h>

#include <functional>
#include <utility>

namespace modeldb {

/// One piece of work at a time in a thread of the system's pool: to make a thread for each would
/// cost as much as loading a hundred records.
class Background {
 public:
  Background() = default;
  Background(const Background&) = delete;
  Background& operator=(const Background&) = delete;
  ~Background() {
    wait();
    if (pool_work_) CloseThreadpoolWork(pool_work_);
  }

  /// Begins, once what was begun before is done. `work` throws nothing. When the system has no
  /// thread to give, it is done here.
  void start(std::function<void()> work) noexcept {
    wait();
    work_ = std::move(work);
    if (!pool_work_) pool_work_ = CreateThreadpoolWork(run, this, nullptr);
    if (!pool_work_) return work_();
    is_running_ = true;
    SubmitThreadpoolWork(pool_work_);
  }
  void wait() noexcept {
    if (!std::exchange(is_running_, false)) return;
    WaitForThreadpoolWorkCallbacks(pool_work_, FALSE);
  }

 private:
  static void CALLBACK run(PTP_CALLBACK_INSTANCE /*instance*/, void* background,
                           PTP_WORK /*work*/) {
    static_cast<Background*>(background)->work_();
  }

  std::function<void()> work_;
  PTP_WORK pool_work_ = nullptr;
  bool is_running_ = false;
};

}  // namespace modeldb

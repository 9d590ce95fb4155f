#include "modeldb/engine/turns.h"

#include <functional>

#include "modeldb/base/failure.h"
#include "tests/engine/support.h"

namespace modeldb {
namespace {

DWORD WINAPI run(void* action) {
  (*static_cast<std::function<void()>*>(action))();
  return 0;
}

/// A thread that runs `action`, and is waited for at the end.
class Thread {
 public:
  explicit Thread(std::function<void()> action) : action_(std::move(action)) {
    handle_ = CreateThread(nullptr, 0, &run, &action_, 0, nullptr);
  }
  ~Thread() {
    WaitForSingleObject(handle_, INFINITE);
    CloseHandle(handle_);
  }

 private:
  std::function<void()> action_;
  HANDLE handle_;
};

TEST(Turns, OneThreadAtATimeWorks) {
  const auto turns = std::make_shared<Turns>(INFINITE);
  int number = 0;
  {
    const auto add = [&] {
      for (int i = 0; i < 20000; ++i) {
        const Turn turn(turns);
        const Turn nested(turns);
        ++number;
      }
    };
    const Thread first(add);
    const Thread second(add);
    const Thread third(add);
  }
  EXPECT_EQ(number, 60000);
}

TEST(Turns, AThreadThatWaitsTooLongIsRefusedWithASentenceAndLeavesTheLine) {
  const auto turns = std::make_shared<Turns>(1);
  {
    const Turn turn(turns);
    const Thread other([&] {
      const Failure failure = failure_of([&] { const Turn refused(turns); });
      EXPECT_EQ(failure.result, kLocked);
      EXPECT_NE(failure.sentence.find(L"in use by another thread"), std::wstring::npos);
    });
  }
  const Turn turn(turns);
}

}  // namespace
}  // namespace modeldb

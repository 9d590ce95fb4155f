#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace model_test {

/// Says to the process that waits for it that this one has got so far.
inline void signal(const wchar_t* event) { SetEvent(OpenEventW(EVENT_MODIFY_STATE, FALSE, event)); }

/// This program, started once more with arguments, from the moment at which it signals `event`. Its
/// end is waited for.
class ChildProcess {
 public:
  ChildProcess(const std::wstring& arguments, const wchar_t* event) {
    const HANDLE signalled = CreateEventW(nullptr, FALSE, FALSE, event);
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring line = L"\"" + std::wstring(program) + L"\" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    EXPECT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                               &startup, &process_));
    const HANDLE either[] = {signalled, process_.hProcess};
    EXPECT_EQ(WaitForMultipleObjects(2, either, FALSE, INFINITE), WAIT_OBJECT_0);
    CloseHandle(signalled);
  }
  ChildProcess(const ChildProcess&) = delete;
  ~ChildProcess() {
    wait(INFINITE);
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
  }

  void wait(DWORD milliseconds) const { WaitForSingleObject(process_.hProcess, milliseconds); }
  void kill() const { TerminateProcess(process_.hProcess, 1); }

 private:
  PROCESS_INFORMATION process_{};
};

}  // namespace model_test

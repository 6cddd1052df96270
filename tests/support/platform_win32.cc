#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>
#include <stdlib.h>
#include <time.h>

#include "tests/support/failing_memory.h"
#include "tests/support/platform.h"
#include "tests/support/user_registry.h"
#include "vosmere/platform/win32/com.h"

namespace vosmere::test {

const bool kSystemStringsFail = false;
const int kLevelsThatLoad = 200;
const LONG kZoneOfPlainNames = 3;

void SetVariable(const char* name, const char* value) {
  _putenv_s(name, value ? value : "");
}

bool RunsOnWine() {
  return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

void SetTimeZone(const char* zone) {
  SetVariable("TZ", zone);
  _tzset();
}

static DWORD WINAPI RunWork(void* work) {
  (*static_cast<std::function<void()>*>(work))();
  return 0;
}

void RunOnSmallStack(std::size_t bytes, std::function<void()> work) {
  const HANDLE thread =
      ::CreateThread(nullptr, bytes, RunWork, &work, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
  if (!thread) return;
  ::WaitForSingleObject(thread, INFINITE);
  ::CloseHandle(thread);
}

std::size_t PeakMemory(std::function<void()> work) {
  work();
  return 0;
}

UserRegistry::UserRegistry() = default;

UserRegistry::~UserRegistry() {
  ::RegDeleteTreeW(HKEY_CURRENT_USER, win32::Native(Key("").get()));
}

void UserRegistry::Set(const std::string& key, const std::string& name, const std::string& bytes) {
  ::RegSetKeyValueW(HKEY_CURRENT_USER, win32::Native(Key(key).get()), win32::Native(W(name).get()),
                    REG_BINARY, bytes.data(), static_cast<DWORD>(bytes.size()));
}

namespace {

// Documents load only on a thread that has initialised COM, which is the task of the program.
class Com : public testing::Environment {
 public:
  void SetUp() override { ASSERT_TRUE(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_MULTITHREADED))); }
  void TearDown() override { ::CoUninitialize(); }
};

[[maybe_unused]] testing::Environment* const com = testing::AddGlobalTestEnvironment(new Com);

}  // namespace
}  // namespace vosmere::test

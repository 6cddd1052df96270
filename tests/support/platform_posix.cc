#include <libxml/xmlmemory.h>
#include <malloc.h>
#include <pthread.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/failing_memory.h"
#include "tests/support/platform.h"
#include "tests/support/user_registry.h"
#include "vosmere/platform/registry.h"

namespace vosmere::test {

const bool kSystemStringsFail = true;
const int kLevelsThatLoad = 1000;
const LONG kZoneOfPlainNames = 1;

void SetVariable(const char* name, const char* value) {
  value ? setenv(name, value, 1) : unsetenv(name);
}

static std::size_t MostResident() {
  std::ifstream status("/proc/self/status");
  std::string word;
  std::size_t kibibytes = 0;
  while (status >> word && word != "VmHWM:") {
  }
  status >> kibibytes;
  return kibibytes * 1024;
}

std::size_t PeakMemory(std::function<void()> work) {
  malloc_trim(0);
  // Large blocks must come from the system and go back to it, so the heap is filled first.
  mallopt(M_MMAP_THRESHOLD, 128 * 1024);
  std::vector<std::unique_ptr<char[]>> heap(mallinfo2().fordblks >> 20);
  for (auto& block : heap) block.reset(new char[1 << 20]);
  std::ofstream("/proc/self/clear_refs") << 5;
  const std::size_t before = MostResident();
  work();
  return kSanitized ? 0 : std::max(MostResident(), before) - before;
}

bool RunsOnWine() {
  return false;
}

void SetTimeZone(const char* zone) {
  SetVariable("TZ", zone);
  tzset();
}

void RunOnSmallStack(std::size_t bytes, std::function<void()> work) {
  const auto run = [](void* argument) -> void* {
    (*static_cast<std::function<void()>*>(argument))();
    return nullptr;
  };
#if defined(__SANITIZE_THREAD__)
  bytes *= 2;  // the sanitizer keeps its own record of a thread on the thread's stack
#endif
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, bytes);
  pthread_t thread;
  if (pthread_create(&thread, &attributes, run, &work) == 0) pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

UserRegistry::UserRegistry() : exported_("\xEF\xBB\xBFWindows Registry Editor Version 5.00\r\n") {
  WriteBytes(folder_ / "user.reg", exported_);
  SetUserRegistry(W(folder_ / "user.reg"));
}

UserRegistry::~UserRegistry() {
  SetUserRegistry(nullptr);
}

void UserRegistry::Set(const std::string& key, const std::string& name, const std::string& bytes) {
  exported_ += "\r\n[HKEY_CURRENT_USER\\" + Path(key) + "]\r\n\"" + name + "\"=hex:";
  for (const char byte : bytes) {
    char digits[8];
    std::snprintf(digits, sizeof digits, "%02x,", static_cast<unsigned char>(byte));
    exported_ += digits;
  }
  WriteBytes(folder_ / "user.reg", exported_ + "\r\n");
}

namespace {

// A program that also uses the parser might replace its allocator like this. The blocks are not
// counted, because the parser keeps some as long as the thread lives.
[[maybe_unused]] const int parserMemoryFails = xmlMemSetup(
    std::free, [](std::size_t size) { return MayAllocate() ? std::malloc(size) : nullptr; },
    [](void* block, std::size_t size) {
      return MayAllocate() ? std::realloc(block, size) : nullptr;
    },
    [](const char* text) { return MayAllocate() ? strdup(text) : nullptr; });

}  // namespace
}  // namespace vosmere::test

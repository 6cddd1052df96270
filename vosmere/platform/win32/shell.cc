// The shell's services: the Favorites folder, and Internet shortcuts.
#include "vosmere/platform/internal/shell.h"

#include "vosmere/base/owned_text.h"
#include "vosmere/platform/win32/com.h"
// After windows.h, which they need.
#include <intshcut.h>
#include <shlobj.h>

namespace vosmere {
namespace {

constexpr GUID kShortcutClass = {
    0xFBF23B40, 0xE3F0, 0x101B, {0x84, 0x88, 0x00, 0xAA, 0x00, 0x3E, 0x56, 0xF8}};
constexpr GUID kLocatorInterface = {
    0xCABB0DA0, 0xDA57, 0x11CF, {0x99, 0x74, 0x00, 0x20, 0xAF, 0xD7, 0x97, 0x62}};

/// A request for the address in a shortcut file, and its result.
struct Question {
  const WChar* path;
  wchar_t* address = nullptr;
  HRESULT result = E_OUTOFMEMORY;
};

/// Reads the shortcut file, on a thread in a single-threaded apartment.
HRESULT AskInApartment(Question& question) {
  win32::Counted<IUniformResourceLocatorW> locator;
  win32::Counted<IPersistFile> file;
  HRESULT result = ::CoCreateInstance(kShortcutClass, nullptr, CLSCTX_INPROC_SERVER,
                                      kLocatorInterface, reinterpret_cast<void**>(locator.out()));
  if (SUCCEEDED(result))
    result = locator->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(file.out()));
  if (SUCCEEDED(result)) result = file->Load(win32::Native(question.path), STGM_READ);
  return SUCCEEDED(result) ? locator->GetURL(&question.address) : result;
}

/// Initialises COM as a single-threaded apartment and reads the shortcut file. Also the entry of a
/// thread.
DWORD WINAPI Ask(void* argument) {
  auto& question = *static_cast<Question*>(argument);
  question.result = ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  if (FAILED(question.result)) return 0;
  question.result = AskInApartment(question);
  ::CoUninitialize();
  return 0;
}

void AskOnAnotherThread(Question& question) {
  question.result = E_OUTOFMEMORY;
  const HANDLE thread = ::CreateThread(nullptr, 0, &Ask, &question, 0, nullptr);
  if (!thread) return;
  ::WaitForSingleObject(thread, INFINITE);
  ::CloseHandle(thread);
}

}  // namespace

static_assert(kShellPathLimit == MAX_PATH);

bool FavoritesFolder(WChar (&path)[kShellPathLimit]) {
  path[0] = 0;
  return ::SHGetSpecialFolderPathW(nullptr, win32::Native(path), CSIDL_FAVORITES, FALSE);
}

ShellAllocator::ShellAllocator() : allocator_(nullptr) {
  IMalloc* allocator = nullptr;
  if (SUCCEEDED(::SHGetMalloc(&allocator))) allocator_ = allocator;
}

ShellAllocator::~ShellAllocator() {
  if (allocator_) static_cast<IMalloc*>(allocator_)->Release();
}

void ShellAllocator::Free(WChar* text) const {
  if (allocator_) static_cast<IMalloc*>(allocator_)->Free(text);
}

// The shortcut object requires a single-threaded apartment. On a thread of another apartment, COM
// answers RPC_E_CHANGED_MODE, and a new thread does the work.
WChar* ShortcutAddress(const WChar* path) {
  Question question = {path};
  Ask(&question);
  if (question.result == RPC_E_CHANGED_MODE) AskOnAnotherThread(question);
  if (question.result == E_OUTOFMEMORY) detail::CountLostText();
  return SUCCEEDED(question.result) ? win32::Ours(question.address) : nullptr;
}

}  // namespace vosmere

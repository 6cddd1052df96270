#include "vosmere/platform/shell.h"

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

WChar* AddressInApartment(const WChar* path) {
  win32::Counted<IUniformResourceLocatorW> locator;
  win32::Counted<IPersistFile> file;
  if (FAILED(::CoCreateInstance(kShortcutClass, nullptr, CLSCTX_INPROC_SERVER, kLocatorInterface,
                                reinterpret_cast<void**>(locator.out()))) ||
      FAILED(locator->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(file.out()))) ||
      FAILED(file->Load(win32::Native(path), STGM_READ)))
    return nullptr;
  wchar_t* url = nullptr;
  return SUCCEEDED(locator->GetURL(&url)) ? win32::Ours(url) : nullptr;
}

WChar* AddressOnAnotherThread(const WChar* path) {
  struct Question {
    const WChar* path;
    WChar* address;
  } question = {path, nullptr};
  const LPTHREAD_START_ROUTINE ask = [](void* argument) -> DWORD {
    auto& asked = *static_cast<Question*>(argument);
    asked.address = ShortcutAddress(asked.path);
    return 0;
  };
  const HANDLE thread = ::CreateThread(nullptr, 0, ask, &question, 0, nullptr);
  if (!thread) return nullptr;
  ::WaitForSingleObject(thread, INFINITE);
  ::CloseHandle(thread);
  return question.address;
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

// The shortcut object lives in single-threaded apartments and cannot be called from another.
WChar* ShortcutAddress(const WChar* path) {
  const HRESULT entered = ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  if (entered == RPC_E_CHANGED_MODE) return AddressOnAnotherThread(path);
  if (FAILED(entered)) return nullptr;
  WChar* const address = AddressInApartment(path);
  ::CoUninitialize();
  return address;
}

}  // namespace vosmere

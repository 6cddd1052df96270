// FolderListing with FindFirstFile.
#include "vosmere/platform/internal/folder.h"

#include <algorithm>
#include <new>
#include <string>
#include <utility>

#include "vosmere/base/wide_view.h"
#include "vosmere/platform/win32/com.h"

namespace vosmere {
namespace {

bool IsDots(const wchar_t* name) {
  return std::wstring_view(name) == L"." || std::wstring_view(name) == L"..";
}

/// The result of a system call. Throws std::bad_alloc when the system ran out of memory, so that
/// this is not taken for a missing file.
bool Succeeded(bool succeeded) {
  const DWORD error = succeeded ? ERROR_SUCCESS : ::GetLastError();
  if (error == ERROR_NOT_ENOUGH_MEMORY || error == ERROR_OUTOFMEMORY ||
      error == ERROR_NO_SYSTEM_RESOURCES)
    throw std::bad_alloc();
  return succeeded;
}

}  // namespace

struct FolderListing::Search {
  explicit Search(const std::wstring& pattern)
      : handle(::FindFirstFileW(pattern.c_str(), &found)) {}
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;
  ~Search() {
    if (handle != INVALID_HANDLE_VALUE) ::FindClose(handle);
  }

  WIN32_FIND_DATAW found;
  HANDLE handle;
  bool atFirst = true;
};

FolderListing::FolderListing() = default;
FolderListing::~FolderListing() = default;

static_assert(FolderListing::kNameLimit == MAX_PATH);

bool FolderListing::Open(const WChar* path) {
  if (WideView(path).empty()) return false;
  std::wstring pattern(win32::Native(path), WideLength(path));
  if (!pattern.ends_with(L'\\') && !pattern.ends_with(L'/')) pattern += L'\\';
  search_ = std::make_unique<Search>(pattern + L"*.*");
  return Succeeded(search_->handle != INVALID_HANDLE_VALUE);
}

bool FolderListing::Next() {
  if (!search_ || search_->handle == INVALID_HANDLE_VALUE) return false;
  WIN32_FIND_DATAW& found = search_->found;
  do {
    const bool atFirst = std::exchange(search_->atFirst, false);
    if (!atFirst && !Succeeded(::FindNextFileW(search_->handle, &found))) {
      failed_ = ::GetLastError() != ERROR_NO_MORE_FILES;
      return false;
    }
  } while (IsDots(found.cFileName));
  std::copy_n(found.cFileName, kNameLimit, name_);
  isFolder_ = found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY;
  isLink_ = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) &&
            IsReparseTagNameSurrogate(found.dwReserved0);
  return true;
}

}  // namespace vosmere

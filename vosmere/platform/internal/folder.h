// FolderListing, which lists the entries of a folder.
#pragma once

#include <memory>

#include "vosmere/base/types.h"

namespace vosmere {

/// Lists a folder in the order of the file system, without "." and "..".
///
///   FolderListing listing;
///   if (!listing.Open(path)) return false;
///   while (listing.Next()) Use(listing.Name());
///
/// Paths follow the rules of File (file.h). Names can be used in paths as they are; on systems
/// where names are bytes they may contain unpaired surrogates (path.h).
class FolderListing {
 public:
  /// The longest name in code units, including the terminating null. Longer ones are left out.
  static constexpr int kNameLimit = 260;

  FolderListing();
  FolderListing(const FolderListing&) = delete;
  FolderListing& operator=(const FolderListing&) = delete;
  ~FolderListing();

  // Open and Next throw std::bad_alloc when memory runs out, here or in the system.

  /// Call once. False when the folder cannot be read.
  bool Open(const WChar* path);
  /// Moves to the first, then to the next entry. False at the end, and when reading fails.
  bool Next();
  /// Whether reading has failed, so that the listing is incomplete.
  bool Failed() const { return failed_; }

  /// The name of the current entry, valid until the next call of Next.
  const WChar* Name() const { return name_; }
  /// Whether the entry is a folder, or a link to one.
  bool IsFolder() const { return isFolder_; }
  /// Whether the entry is a link. Following links to folders may lead into endless cycles.
  bool IsLink() const { return isLink_; }

 private:
  struct Search;

  std::unique_ptr<Search> search_;
  WChar name_[kNameLimit] = {};
  bool isFolder_ = false;
  bool isLink_ = false;
  bool failed_ = false;
};

}  // namespace vosmere

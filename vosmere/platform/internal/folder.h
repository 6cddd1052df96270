// What is in a folder.
#pragma once

#include <memory>

#include "vosmere/base/types.h"

namespace vosmere {

/// Lists a folder in the file system's own order, without "." and "..".
///
///   FolderListing listing;
///   if (!listing.Open(path)) return false;
///   while (listing.Next()) Use(listing.Name());
///
/// Paths are read as File reads them (file.h), and names are such as lead to their files: where
/// they are bytes, they need not be well-formed text (path.h).
class FolderListing {
 public:
  /// Units of the longest name, its terminating zero included.
  static constexpr int kNameLimit = 260;

  FolderListing();
  FolderListing(const FolderListing&) = delete;
  FolderListing& operator=(const FolderListing&) = delete;
  ~FolderListing();

  // Without memory, the system's included, both throw std::bad_alloc.

  /// Once. False when the folder cannot be read.
  bool Open(const WChar* path);
  /// Steps to the first, then to the next entry; false at the end, and when reading fails.
  bool Next();
  /// Whether reading has failed, so that not everything was listed.
  bool Failed() const { return failed_; }

  /// Of the entry stepped to; lives until the next step.
  const WChar* Name() const { return name_; }
  /// Whether it is a folder, or a link to one.
  bool IsFolder() const { return isFolder_; }
  /// Whether its path leads elsewhere. Who follows such folders may go in circles.
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

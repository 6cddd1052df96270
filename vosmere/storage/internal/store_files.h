// The files in a store's folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vosmere/platform/internal/disk.h"
#include "vosmere/storage/internal/record_file.h"
#include "vosmere/storage/internal/safe_file.h"
#include "vosmere/storage/internal/stored_tree.h"

namespace vosmere {

class StoreFiles {
 public:
  explicit StoreFiles(const WChar* folder);

  /// Lists the files, and makes a relative path whole. False, with the system's error, when the
  /// folder cannot be read.
  bool List(ULONG* error);
  /// Rising.
  std::vector<std::uint64_t> checkpoints, logs;
  /// Whether there is no file of a store except for its lock.
  bool isEmpty = true;
  /// The highest number of any file, broken ones included.
  std::uint64_t highest = 0;

  const PathText& folder() const { return folder_; }
  PathText Path(FileKind kind, std::uint64_t number) const;
  PathText LockPath() const;

  /// Renames a broken file to a name with the time. False if that fails.
  bool SetAside(FileKind kind, std::uint64_t number) const;
  bool Flush() const { return FlushFolder(folder_.c_str()) == 0; }

 private:
  void SetFolder(const PathText& folder);

  PathText folder_;
};

/// The result of reading a checkpoint.
struct CheckpointState {
  FileHeader header;
  bool hasHeader = false;
  bool isGone = false;  // the file was not there
  std::string problem;  // empty if it was read completely
  unsigned char digest[16] = {};
};

/// Reads a checkpoint into `tree`; if that is null, only checks it.
CheckpointState ReadCheckpoint(DiskFile& file, StoredTree* tree);
CheckpointState ReadCheckpoint(const PathText& path, StoredTree* tree);

/// Writes a checkpoint of the tree to a new file, reads it back, and renames it to `path`.
bool WriteCheckpoint(const PathText& path, FileHeader header, StoredTree& tree,
                     DocumentError* error);

}  // namespace vosmere

// A lock file held open with other writers denied, as the company in-use lock is.
//
// On Windows that is the open itself: the holder opens the file allowing others only to
// read it, so no second holder can open it and nobody can delete it while it is held.
//
// Elsewhere the lock is an exclusive open-file-description lock (fcntl F_OFD_SETLK) on the whole
// file, taken without waiting. Such locks belong to one open of the file, so two
// LockFile objects exclude each other even inside one process, and the lock goes away
// when the holder closes the file or its process dies in any way.
//
// A file can be deleted or replaced while it is locked, which Windows would refuse. So after
// taking the lock the holder checks that the path still names the file it locked; if not,
// another process removed it in between, and the attempt starts again with the file now
// at the path. A holder that removes the file does so before it lets go of the lock.
//
// Readers (ReadContent, IsHeldByOther) never take the lock.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/file.h"

namespace nv {

enum class LockStatus {
  kAcquired,
  kHeldByOther,  // another open of the file holds the lock
  kError,        // the file cannot be created or opened, or kept changing under us
};

// Opens a file for one operation the way a Windows open with share modes does: for
// reading (kRead) others may read but not write; for writing (kOpenOrCreate) nobody else
// may open it. On Windows those are the share modes; elsewhere that is a shared or an exclusive
// open-file-description lock on the whole file, taken without waiting, and checked, as above, to be
// on the file the path names. An empty optional when the file cannot be opened or someone else's
// open excludes ours; *missing tells whether the file (or its folder) does not exist.
// REQUIRES: mode is File::Mode::kRead or File::Mode::kOpenOrCreate.
std::optional<File> OpenWithoutSharing(const std::string& path, File::Mode mode, bool* missing);

class LockFile {
 public:
  LockFile() = default;
  ~LockFile() { Release(); }
  LockFile(const LockFile&) = delete;
  LockFile& operator=(const LockFile&) = delete;
  LockFile(LockFile&& other) noexcept;
  LockFile& operator=(LockFile&& other) noexcept;

  // Creates the file if needed and takes the lock. REQUIRES: !held().
  [[nodiscard]] LockStatus TryAcquire(const std::string& path);
  bool held() const { return handle_ != File::kNoHandle; }
  const std::string& path() const { return path_; }

  // Replaces the file's content. REQUIRES: held().
  [[nodiscard]] bool WriteContent(std::string_view text);
  // True when the path no longer names the file this holder locked (someone deleted or
  // replaced it). REQUIRES: held().
  [[nodiscard]] bool IsStale() const;

  // Closes the file, which lets go of the lock. Nothing happens when not held.
  void Release();
  // Deletes the file while still holding the lock, then releases it.
  void ReleaseAndRemove();

  // The file's content, read without locking; nullopt when it cannot be read.
  static std::optional<std::string> ReadContent(const std::string& path);
  // True when some open of the file (in any process, this one included) holds the lock.
  [[nodiscard]] static bool IsHeldByOther(const std::string& path);

 private:
  File::NativeHandle handle_ = File::kNoHandle;
  std::string path_;
};

}  // namespace nv

#include "base/file_util.h"

#include <algorithm>

#include "base/ascii.h"
#include "base/file.h"
#include "base/path.h"

namespace nv {

std::optional<std::string> FindFileIgnoringCase(const std::string& folder, std::string_view name) {
  if (name.empty() || name.find_first_of(kPathSeparators) != std::string_view::npos) {
    return std::nullopt;
  }
  std::optional<std::string> found;
  for (std::string& entry : ListFolder(folder)) {
    if (entry == name) {
      found = std::move(entry);
      break;
    }
    if (!found && EqualIgnoringCase(entry, name)) found = std::move(entry);
  }
  if (!found) return std::nullopt;
  return JoinPath(folder, *found);
}

std::optional<std::string> ReadFileBytes(const std::string& path, bool* missing) {
  std::optional<File> file = File::Open(path, File::Mode::kRead, missing);
  if (!file) return std::nullopt;
  std::string out;
  char buf[65536];
  for (;;) {
    const int64_t n = file->ReadSomeAt(out.size(), buf, sizeof buf);
    if (n < 0) return std::nullopt;
    if (n == 0) break;
    out.append(buf, static_cast<size_t>(n));
  }
  return out;
}

bool WriteTextFile(const std::string& path, std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 16);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) out += '\r';
    out += text[i];
  }
  return WriteFileAtomically(path, out);
}

std::vector<std::string> SplitTextLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (end != std::string_view::npos && !line.empty() && line.back() == '\r') {
      line.remove_suffix(1);
    }
    lines.emplace_back(line);
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return lines;
}

std::optional<std::vector<std::string>> ReadTextLines(const std::string& path) {
  std::optional<std::string> bytes = ReadFileBytes(path);
  if (!bytes) return std::nullopt;
  return SplitTextLines(*bytes);
}

bool MakeDirectories(const std::string& path) {
  if (path.empty()) return false;
  if (PathExists(path)) return IsFolder(path);
  std::string trimmed = path;
  while (trimmed.size() > 1 && IsPathSeparator(trimmed.back())) trimmed.pop_back();
  const std::string parent = ParentFolder(trimmed);
  if (!parent.empty() && parent != trimmed && !MakeDirectories(parent)) return false;
  return MakeFolder(trimmed) || IsFolder(trimmed);
}

bool CreateFileDurably(const std::string& path) {
  std::optional<File> file = File::Open(path, File::Mode::kOpenOrCreate);
  if (!file) return false;
  bool ok = file->Sync();
  ok = file->Close() == 0 && ok;
  const std::string folder = ParentFolder(path);
  return ok && SyncFolder(folder.empty() ? std::string(".") : folder);
}

}  // namespace nv

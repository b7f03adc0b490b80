#include "store/file/rec_file.h"

#include <algorithm>
#include <cstring>

#include "base/coding.h"
#include "store/file/status.h"

namespace nv {

NvRecFile::~NvRecFile() {
  static_cast<void>(Close());  // a destructor has nobody to tell
}

bool NvRecFile::OpenFile(const std::string& path, File::Mode mode, uint32_t record_length,
                         Format format) {
  static_cast<void>(Close());  // a file open before is given up for this one
  if (record_length == 0) return false;
  std::optional<File> file = File::Open(path, mode);
  if (!file) return false;
  file_ = std::move(*file);
  record_length_ = record_length;
  format_ = format;
  read_only_ = mode == File::Mode::kRead;
  SetCounters(0, 0, 0);
  return true;
}

bool NvRecFile::Open(const std::string& path, bool read_only, uint32_t record_length,
                     Format format) {
  return OpenFile(path, read_only ? File::Mode::kRead : File::Mode::kReadWrite, record_length,
                  format);
}

bool NvRecFile::Create(const std::string& path, uint32_t record_length, Format format) {
  return OpenFile(path, File::Mode::kCreate, record_length, format);
}

int NvRecFile::Close() {
  cache_.clear();
  valid_.clear();
  return file_.Close();
}

bool NvRecFile::Sync() {
  return file_.Sync();
}

void NvRecFile::SetCounters(uint32_t highest_record, uint32_t free_head, uint32_t free_count) {
  highest_record_ = highest_record;
  free_head_ = free_head;
  free_count_ = free_count;
}

uint64_t NvRecFile::FileSize() const {
  return file_.Size().value_or(0);
}

uint64_t NvRecFile::RecordsInFile() const {
  return record_length_ == 0 ? 0 : FileSize() / record_length_;
}

void NvRecFile::SetLayout(uint32_t record_length, Format format) {
  record_length_ = record_length;
  format_ = format;
  set_cache_limit(cache_limit_);
}

void NvRecFile::set_cache_limit(size_t bytes) {
  cache_limit_ = bytes;
  cache_.clear();
  cache_.shrink_to_fit();
  valid_.clear();
}

const uint8_t* NvRecFile::Cached(uint32_t number) const {
  if (number >= valid_.size() || !valid_[number]) return nullptr;
  return &cache_[size_t{number} * record_length_];
}

void NvRecFile::Remember(uint32_t number, const uint8_t* bytes, size_t offset, size_t count,
                         bool whole) {
  size_t slots = cache_limit_ / record_length_;
  if (number >= slots) return;
  if (number >= valid_.size()) {
    if (!whole) return;  // a partial write of a record we never saw
    size_t grown = std::max<size_t>(number + 1, valid_.size() * 2);
    grown = std::min(grown, slots);
    valid_.resize(grown, false);
    cache_.resize(grown * record_length_);
  }
  if (!whole && !valid_[number]) return;
  std::memcpy(&cache_[size_t{number} * record_length_ + offset], bytes, count);
  if (whole) valid_[number] = true;
}

bool NvRecFile::ReadRecord(uint32_t number, uint8_t* buffer, size_t count) {
  if (!file_.is_open()) return false;
  if (count == 0) count = record_length_;
  if (count > record_length_) return false;
  if (const uint8_t* hit = Cached(number)) {
    std::memcpy(buffer, hit, count);
    return true;
  }
  if (count < record_length_ || cache_limit_ == 0 || number >= cache_limit_ / record_length_) {
    return file_.ReadAt(uint64_t{number} * record_length_, buffer, count);
  }
  return ReadAhead(number, buffer);
}

// Reads the run of records around `number` that fills one read-ahead chunk and keeps every
// whole record of it; records are small, so one read serves many later ones.
bool NvRecFile::ReadAhead(uint32_t number, uint8_t* buffer) {
  uint32_t per_chunk = std::max<uint32_t>(1, kReadAheadBytes / record_length_);
  uint32_t first = number - number % per_chunk;
  chunk_.resize(size_t{per_chunk} * record_length_);
  const int64_t got =
      file_.ReadSomeAt(uint64_t{first} * record_length_, chunk_.data(), chunk_.size());
  if (got < 0) return false;
  uint32_t whole = static_cast<uint32_t>(static_cast<uint64_t>(got) / record_length_);
  if (number - first >= whole) return false;
  for (uint32_t i = 0; i < whole; ++i) {
    if (Cached(first + i) == nullptr) {
      Remember(first + i, &chunk_[size_t{i} * record_length_], 0, record_length_, true);
    }
  }
  std::memcpy(buffer, &chunk_[size_t{number - first} * record_length_], record_length_);
  return true;
}

bool NvRecFile::WriteRecord(uint32_t number, const uint8_t* buffer, size_t count) {
  if (!file_.is_open() || read_only_) return false;
  if (count == 0) count = record_length_;
  if (count > record_length_) return false;
  if (!file_.WriteAt(uint64_t{number} * record_length_, buffer, count)) {
    // The record may now be partly written; forget it so the next read sees the file.
    if (number < valid_.size()) valid_[number] = false;
    return false;
  }
  if (cache_limit_ != 0) Remember(number, buffer, 0, count, count == record_length_);
  return true;
}

bool NvRecFile::WriteRecords(uint32_t first, const uint8_t* buffer, uint32_t records) {
  if (!file_.is_open() || read_only_) return false;
  const size_t count = size_t{records} * record_length_;
  if (!file_.WriteAt(uint64_t{first} * record_length_, buffer, count)) {
    for (uint32_t i = 0; i < records; ++i) {
      if (first + i < valid_.size()) valid_[first + i] = false;
    }
    return false;
  }
  if (cache_limit_ != 0) {
    for (uint32_t i = 0; i < records; ++i) {
      Remember(first + i, buffer + size_t{i} * record_length_, 0, record_length_, true);
    }
  }
  return true;
}

int NvRecFile::Allocate(uint32_t* number) {
  if (free_head_ > highest_record_) free_head_ = 0;
  if (free_head_ != 0) {
    uint32_t taken = free_head_;
    if (free_count_ > 0) --free_count_;
    uint8_t first[kFreeBytesCurrent];
    if (!ReadRecord(taken, first, sizeof first)) return kAllocReadFailed;
    uint8_t marker = first[kMarkerOffset];
    if (marker == kFreeMarkerOld || marker == kFreeMarkerCurrent) {
      free_head_ = marker == kFreeMarkerOld ? DecodeU16(first) : DecodeU32(first + 3);
      *number = taken;
      return kOk;
    }
    // Not a free record after all: the list cannot be trusted, append instead.
    free_head_ = 0;
  }
  free_count_ = 0;
  uint32_t limit = format_ == kOldLayout ? kRecordLimitOld : kRecordLimitCurrent;
  if (highest_record_ >= limit) return kOutOfRange;
  *number = ++highest_record_;
  return kOk;
}

int NvRecFile::Free(uint32_t number) {
  if (number < 1 || number > highest_record_) return kOutOfRange;
  uint8_t bytes[kFreeBytesCurrent] = {};
  size_t count;
  if (format_ == kOldLayout) {
    EncodeU16(bytes, static_cast<uint16_t>(free_head_));
    bytes[kMarkerOffset] = kFreeMarkerOld;
    count = kFreeBytesOld;
  } else {
    bytes[kMarkerOffset] = kFreeMarkerCurrent;
    EncodeU32(bytes + 3, free_head_);
    count = kFreeBytesCurrent;
  }
  if (!WriteRecord(number, bytes, count)) return kFreeWriteFailed;
  free_head_ = number;
  ++free_count_;
  return kOk;
}

}  // namespace nv

#include "data/record_file.h"

#include <algorithm>

namespace tessaly {

namespace {

const char* Bytes(const unsigned char* data) {
  return reinterpret_cast<const char*>(data);
}

}  // namespace

void RecordFile::WriteFullBlock() {
  Flush();
  firstInBlock_ += recordsPerBlock_;
  endOfBlock_ += recordsPerBlock_;
  filled_ = 0;
}

void RecordFile::Flush() {
  const auto position = static_cast<std::int64_t>(recordLength_) * (firstInBlock_ - 1);
  file_.Write(position, Bytes(block_.data()), filled_);
}

void RecordFile::ReadBlock(std::int64_t number) {
  firstInBlock_ = number;
  endOfBlock_ = number + recordsPerBlock_;
  const auto position = static_cast<std::int64_t>(recordLength_) * (number - 1);
  const std::size_t read = file_.Read(position, reinterpret_cast<char*>(block_.data()), blockBytes_);
  std::fill(block_.begin() + static_cast<std::ptrdiff_t>(read), block_.end(), static_cast<unsigned char>(0));
}

}  // namespace tessaly

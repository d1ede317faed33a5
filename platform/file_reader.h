#pragma once
// A file read in pieces, never whole: a regular file the user named, or standard input (which
// may be a pipe or a device).

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>

#include "platform/expected.h"

namespace kavor {

class FileReader {
 public:
  // The system's reason when it cannot be opened, after the name; anything but a regular file is
  // refused without being read.
  static Expected<FileReader> open(const std::filesystem::path& file);
  // Standard input; it stays open.
  static FileReader standardInput();
  ~FileReader();
  FileReader(FileReader&& other) noexcept;
  FileReader& operator=(FileReader&&) = delete;
  FileReader(const FileReader&) = delete;
  FileReader& operator=(const FileReader&) = delete;

  // The name for messages: the path as given, or "standard input".
  const std::string& name() const { return name_; }
  // Up to into.size() bytes; 0 at the end.
  Expected<size_t> read(std::span<char> into);

 private:
  FileReader(int fd, bool owned, std::string name)
      : fd_(fd), owned_(owned), name_(std::move(name)) {}
  int fd_ = -1;
  bool owned_ = false;
  std::string name_;
};

}  // namespace kavor

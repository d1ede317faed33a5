#pragma once
// An input named on the command line, read in pieces: a regular file, or standard input for "-"
// (which may be a pipe or a device).

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "platform/expected.h"

namespace kavor::cli {

class InputFile {
 public:
  // The system's reason when it cannot be opened, after the name; anything but a regular file is
  // refused without being read.
  static Expected<InputFile> open(std::string_view operand);
  ~InputFile();
  InputFile(InputFile&& other) noexcept;
  InputFile& operator=(InputFile&&) = delete;
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  // The name for messages: the operand, or "standard input".
  const std::string& name() const { return name_; }
  // Up to into.size() bytes; 0 at the end.
  Expected<size_t> read(std::span<char> into);

 private:
  InputFile(int fd, bool owned, std::string name)
      : fd_(fd), owned_(owned), name_(std::move(name)) {}
  int fd_ = -1;
  bool owned_ = false;  // standard input stays open
  std::string name_;
};

}  // namespace kavor::cli

#pragma once
// Where the archive tools write: the output area of a Logarchive Tool window, or a terminal.
// Every tool first replaces the output, then appends to it, in the order the user reads it.

#include <string>
#include <string_view>

namespace kavor {

class ArchiveOutput {
 public:
  virtual ~ArchiveOutput() = default;
  virtual void replaceOutputText(std::string_view text) = 0;
  virtual void appendOutputText(std::string_view text) = 0;
};

// The output kept as one text; for kavor-cli and tests.
class TextOutput final : public ArchiveOutput {
 public:
  void replaceOutputText(std::string_view text) override { text_.assign(text); }
  void appendOutputText(std::string_view text) override { text_.append(text); }
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

}  // namespace kavor

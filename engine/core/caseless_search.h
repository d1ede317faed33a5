#pragma once
// "Does this message contain that text, ignoring case?" as the user's language reads it: full
// case folding ("ß" finds "SS"), composed and decomposed letters alike, and Turkish and Azeri
// dotted and dotless i. A match begins and ends between user-perceived characters: "e" is not in
// "é", "가" not in "각", the first letter of a flag not in the flag.
// ASCII text against an ASCII needle, the usual case, is compared byte by byte.
// Not shared between threads.

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace kavor {

class CaselessText {
 public:
  // locale: an ICU locale id such as "tr_TR"; empty for the user's default locale.
  explicit CaselessText(std::string_view needle, std::string_view locale = {});
  ~CaselessText();
  CaselessText(CaselessText&&) noexcept;
  CaselessText& operator=(CaselessText&&) noexcept;

  // An empty needle is contained in no text.
  bool foundIn(std::string_view text);
  // Calls found(begin, end) with the bytes of each occurrence in text, left to right and apart
  // (after a match the search goes on at its end), until found returns false.
  void forEachIn(std::string_view text, const std::function<bool(size_t, size_t)>& found);

 private:
  struct Folded;
  // Where the needle next occurs at or after from, in ASCII text; npos when nowhere.
  size_t nextAsAscii(std::string_view text, size_t from) const;
  // The ASCII needle in text whose other characters cannot fold into any part of it.
  void forEachAmongOthers(std::string_view text,
                          const std::function<bool(size_t, size_t)>& found) const;

  std::string lowerAscii_;  // the needle in ASCII lower case, when the byte path may be used
  bool asciiPath_ = false;
  bool empty_ = true;
  bool needsOthers_ = false;  // the folded needle holds characters beyond ASCII
  std::unique_ptr<Folded> folded_;
};

}  // namespace kavor

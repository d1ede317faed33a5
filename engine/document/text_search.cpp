#include "engine/document/text_search.h"

#include <unicode/utext.h>

#include <algorithm>
#include <cstring>

#include "engine/core/caseless_search.h"
#include "engine/core/icu_regex.h"

namespace kavor {

namespace {

// How often a search looks at its stop request: in lines, and in bytes for exact text.
constexpr size_t kLinesBetweenStopChecks = 4096;
constexpr size_t kBytesBetweenStopChecks = size_t{1} << 22;

// ICU's steps for one line, each some ten thousand moves of its matcher: tens of milliseconds.
// A pattern that backtracks without end gives up on that line and goes on to the next.
constexpr int32_t kLineTimeLimit = 200;

class Collector {
 public:
  Collector(TextMatches& out, size_t cap) : out_(out), cap_(cap) {}
  void add(size_t begin, size_t end) {
    ++out_.count.total;
    if (out_.ranges.size() < cap_) {
      out_.ranges.emplace_back(begin, end);
      ++out_.count.kept;
    }
  }

 private:
  TextMatches& out_;
  size_t cap_;
};

// Calls each(begin, end) for every line, its break left out; false from each ends the walk.
template <class Each>
void forEachLine(std::string_view text, Each&& each) {
  const char* data = text.data();
  size_t begin = 0;
  while (true) {
    const void* found = std::memchr(data + begin, '\n', text.size() - begin);
    const size_t next =
        found ? static_cast<size_t>(static_cast<const char*>(found) - data) : text.size();
    const size_t end = next > begin && data[next - 1] == '\r' ? next - 1 : next;
    if (!each(begin, end) || !found) return;
    begin = next + 1;
  }
}

// Byte for byte: memmem over the whole text, a window at a time between stop checks.
void findExact(std::string_view text, std::string_view needle, std::stop_token& stop,
               Collector& found, TextMatches& out) {
  const char* data = text.data();
  size_t at = 0;
  while (at + needle.size() <= text.size()) {
    if (stop.stop_requested()) {
      out.stopped = true;
      return;
    }
    // Matches that begin in this window.
    const size_t windowEnd =
        std::min(text.size(), at + kBytesBetweenStopChecks + needle.size() - 1);
    while (at + needle.size() <= windowEnd) {
      const void* hit = memmem(data + at, windowEnd - at, needle.data(), needle.size());
      if (!hit) {
        at = windowEnd - needle.size() + 1;
        break;
      }
      const auto begin = static_cast<size_t>(static_cast<const char*>(hit) - data);
      found.add(begin, begin + needle.size());
      at = begin + needle.size();
    }
  }
}

void findCaseless(std::string_view text, const TextQuery& query, std::stop_token& stop,
                  Collector& found, TextMatches& out) {
  CaselessText needle(query.text, query.locale);
  size_t lines = 0;
  forEachLine(text, [&](size_t begin, size_t end) {
    if (++lines % kLinesBetweenStopChecks == 0 && stop.stop_requested()) {
      out.stopped = true;
      return false;
    }
    needle.forEachIn(text.substr(begin, end - begin), [&](size_t from, size_t to) {
      found.add(begin + from, begin + to);
      return true;
    });
    return true;
  });
}

// Called by ICU now and then during a long match.
UBool keepMatching(const void* stop, int32_t) {
  return !static_cast<const std::stop_token*>(stop)->stop_requested();
}

Status findExpression(std::string_view text, const TextQuery& query, std::stop_token& stop,
                      Collector& found, TextMatches& out) {
  auto pattern = compileRegex(query.text, query.matchCase ? 0 : UREGEX_CASE_INSENSITIVE);
  if (!pattern) return pattern.error();
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::RegexMatcher> matcher((*pattern)->matcher(status));
  UText whole = UTEXT_INITIALIZER;
  utext_openUTF8(&whole, text.data(), static_cast<int64_t>(text.size()), &status);
  if (U_FAILURE(status)) {
    utext_close(&whole);
    return Error{ErrorKind::invalidInput, u_errorName(status)};
  }
  matcher->reset(&whole);
  matcher->setTimeLimit(kLineTimeLimit, status);
  matcher->setMatchCallback(keepMatching, &stop, status);
  size_t lines = 0;
  // One text for all lines, each line a region of it: ICU's offsets are then the text's bytes.
  forEachLine(text, [&](size_t begin, size_t end) {
    if (++lines % kLinesBetweenStopChecks == 0 && stop.stop_requested()) {
      out.stopped = true;
      return false;
    }
    status = U_ZERO_ERROR;
    matcher->region(static_cast<int64_t>(begin), static_cast<int64_t>(end),
                    static_cast<int64_t>(begin), status);
    while (U_SUCCESS(status) && matcher->find(status)) {
      const int64_t first = matcher->start64(status);
      const int64_t last = matcher->end64(status);
      if (U_SUCCESS(status) && last > first)
        found.add(static_cast<size_t>(first), static_cast<size_t>(last));
    }
    if (status == U_REGEX_STOPPED_BY_CALLER) {
      out.stopped = true;
      return false;
    }
    if (status == U_REGEX_TIME_OUT) ++out.count.slowLines;
    return true;
  });
  matcher.reset();
  utext_close(&whole);
  return okStatus();
}

}  // namespace

Expected<TextMatches> findInText(std::string_view text, const TextQuery& query,
                                 std::stop_token stop, size_t cap) {
  TextMatches out;
  if (query.text.empty()) return out;
  Collector found(out, cap);
  if (query.regularExpression) {
    if (Status done = findExpression(text, query, stop, found, out); !done) return done.error();
  } else if (query.matchCase) {
    findExact(text, query.text, stop, found, out);
  } else {
    findCaseless(text, query, stop, found, out);
  }
  return out;
}

std::string findStatusText(const MatchCount& count, std::optional<size_t> current) {
  std::string text;
  if (count.total == 0) {
    text = "No matches";
  } else {
    text = current ? std::to_string(*current + 1) + " of " + std::to_string(count.total)
                   : std::to_string(count.total) + " matches";
    if (count.kept < count.total) text += " (the first " + std::to_string(count.kept) + " marked)";
  }
  if (count.slowLines) text += "; " + std::to_string(count.slowLines) + " lines too slow to search";
  return text;
}

std::string findErrorText(const Error& error) {
  return "Not a regular expression: " + error.context;
}

}  // namespace kavor

#pragma once
// The filter language of "show --predicate" and "stream --predicate": comparisons of an entry's
// fields joined with AND, OR and NOT, as in
//   subsystem == "com.example.sync" && (eventMessage CONTAINS[c] "error" || messageType == fault)
// Parsed once into a small tree; matching does not allocate unless [c] or [d] meets non-ASCII
// text.

#include <memory>
#include <string_view>

#include "platform/expected.h"
#include "tools/log/log_entry.h"

namespace kavor::standin {

namespace predicate {
struct Tree;
}

class Predicate {
 public:
  // Fails with ErrorKind::invalidInput; the message names the problem and where it is, e.g.
  // "predicate: expected a value after \"==\" at character 14".
  static Expected<Predicate> parse(std::string_view text);

  // Thread-compatible: MATCHES and folding keep scratch state in the object, so one Predicate
  // is matched from one thread at a time; copies are independent.
  bool matches(const LogEntry& entry) const;

  Predicate(const Predicate& other);
  Predicate& operator=(const Predicate& other);
  Predicate(Predicate&&) noexcept;
  Predicate& operator=(Predicate&&) noexcept;
  ~Predicate();

 private:
  explicit Predicate(std::unique_ptr<predicate::Tree> tree);
  std::unique_ptr<predicate::Tree> tree_;
};

}  // namespace kavor::standin

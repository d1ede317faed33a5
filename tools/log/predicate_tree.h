#pragma once
// The parsed form of a predicate: a flat list of nodes, the comparisons at its leaves and their
// constant operands, prepared (folded, converted) so that matching only reads the entry.

#include <unicode/regex.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/log/log_entry.h"
#include "tools/log/predicate_text.h"

namespace kavor::standin::predicate {

enum class Key : uint8_t {
  // Text.
  category,
  subsystem,
  eventMessage,
  formatString,
  processImagePath,
  processImageUUID,
  senderImagePath,
  senderImageUUID,
  timezoneName,
  signpostName,
  signpostType,
  signpostScope,
  bootUUID,
  process,  // the last component of processImagePath
  sender,   // the last component of senderImagePath
  // Numbers.
  machTimestamp,
  processUniqueID,
  threadID,
  traceID,
  senderProgramCounter,
  processID,
  activityIdentifier,
  parentActivityIdentifier,
  creatorActivityID,
  signpostID,
  userID,
  // Numbers that predicates may also give by name.
  messageType,
  eventType,
};

inline bool isTextKey(Key key) {
  return key <= Key::sender;
}

enum class Op : uint8_t {
  equal,
  notEqual,
  less,
  lessEqual,
  greater,
  greaterEqual,
  contains,
  beginsWith,
  endsWith,
  like,
  matches,
  in,
  between,
};

// The operators that look at text, whatever the key's kind.
inline bool isTextOp(Op op) {
  return op == Op::contains || op == Op::beginsWith || op == Op::endsWith || op == Op::like ||
         op == Op::matches;
}

// A constant as a comparison needs it: the text folded as the comparison's modifiers ask, and
// the number it stands for, when it stands for one.
struct Operand {
  std::string text;
  std::optional<Number> number;
  bool writtenAsNumber = false;  // a number literal compares numerically with text fields
};

// A compiled MATCHES pattern and the matcher that runs it; copies get a matcher of their own.
class Regex {
 public:
  Regex();
  Regex(const Regex& other);
  Regex& operator=(const Regex& other);
  Regex(Regex&&) noexcept;
  Regex& operator=(Regex&&) noexcept;
  ~Regex();

  // Fails with ICU's name of the problem.
  std::optional<std::string> compile(const std::string& pattern, bool caseless);
  // The whole text must match.
  bool matchesWhole(std::string_view text) const;

 private:
  std::shared_ptr<const icu::RegexPattern> pattern_;
  std::unique_ptr<icu::RegexMatcher> matcher_;
  mutable icu::UnicodeString input_;  // the text being matched, in UTF-16
};

struct Comparison {
  Key key = Key::category;
  Op op = Op::equal;
  Folding folding;
  std::vector<Operand> operands;  // one; the members of IN; the two bounds of BETWEEN
  Regex regex;                    // MATCHES only
};

struct Node {
  enum class Kind : uint8_t { always, never, negation, conjunction, disjunction, comparison };
  Kind kind = Kind::always;
  // negation: the child node; comparison: its index; conjunction and disjunction: where their
  // children start in Tree::children.
  uint32_t first = 0;
  uint32_t count = 0;  // conjunction and disjunction: how many children
};

// AND and OR hold all their operands, so that long chains do not nest: matching recurses only
// as deep as parentheses and NOTs, which the parser bounds.
struct Tree {
  std::vector<Node> nodes;
  std::vector<uint32_t> children;
  std::vector<Comparison> comparisons;
  uint32_t root = 0;
  mutable std::string scratch;  // an entry's text, folded

  bool matches(const LogEntry& entry, const Node& node) const;
  bool matches(const LogEntry& entry, const Comparison& comparison) const;
};

}  // namespace kavor::standin::predicate

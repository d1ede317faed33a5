// Matching a parsed predicate against entries. Mixed comparisons:
// - a text field against a number literal compares numerically when the text is a decimal
//   number in full ("category == 5" holds for "5" and "05"), and is false otherwise;
// - a numeric field against a string compares with the number the string spells, the parser
//   having converted it (processID == "85"); a string that spells none is equal to nothing;
// - CONTAINS, BEGINSWITH, ENDSWITH, LIKE and MATCHES on a numeric field look at its decimal
//   text, messageType and eventType included (their values are numbers);
// - a comparison that cannot be made is false, and != is its negation, so true.

#include <unicode/ustring.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <compare>

#include "tools/log/event_kinds.h"
#include "tools/log/predicate.h"
#include "tools/log/predicate_tree.h"

namespace kavor::standin::predicate {

Regex::Regex() = default;
Regex::Regex(Regex&&) noexcept = default;
Regex& Regex::operator=(Regex&&) noexcept = default;
Regex::~Regex() = default;

Regex::Regex(const Regex& other) : pattern_(other.pattern_) {
  UErrorCode status = U_ZERO_ERROR;
  if (pattern_) matcher_.reset(pattern_->matcher(status));
}

Regex& Regex::operator=(const Regex& other) {
  if (this != &other) *this = Regex(other);
  return *this;
}

std::optional<std::string> Regex::compile(const std::string& pattern, bool caseless) {
  UErrorCode status = U_ZERO_ERROR;
  UParseError where{};
  std::unique_ptr<icu::RegexPattern> compiled(
      icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(pattern),
                                 caseless ? UREGEX_CASE_INSENSITIVE : 0, where, status));
  if (U_SUCCESS(status)) matcher_.reset(compiled->matcher(status));
  if (U_FAILURE(status)) return std::string(u_errorName(status));
  pattern_ = std::move(compiled);
  return std::nullopt;
}

// ICU matches UTF-16 several times faster than UTF-8 read through UText, so the text is
// converted into a buffer that keeps its capacity from entry to entry.
bool Regex::matchesWhole(std::string_view text) const {
  if (!matcher_ || text.size() > INT32_MAX / 2) return false;
  UErrorCode status = U_ZERO_ERROR;
  const auto size = static_cast<int32_t>(text.size());
  int32_t length = 0;
  // UTF-16 needs no more units than UTF-8 has bytes.
  char16_t* units = input_.getBuffer(std::max<int32_t>(size, 1));
  if (!units) return false;
  u_strFromUTF8WithSub(units, size, &length, text.data(), size, 0xFFFD, nullptr, &status);
  input_.releaseBuffer(U_SUCCESS(status) ? length : 0);
  matcher_->reset(input_);
  return U_SUCCESS(status) && matcher_->matches(status) && U_SUCCESS(status);
}

namespace {

std::string_view lastComponent(std::string_view path) {
  const size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view textOf(const LogEntry& entry, Key key) {
  switch (key) {
    case Key::category:
      return entry.category;
    case Key::subsystem:
      return entry.subsystem;
    case Key::eventMessage:
      return entry.eventMessage;
    case Key::formatString:
      return entry.formatString;
    case Key::processImagePath:
      return entry.processImagePath;
    case Key::processImageUUID:
      return entry.processImageUUID;
    case Key::senderImagePath:
      return entry.senderImagePath;
    case Key::senderImageUUID:
      return entry.senderImageUUID;
    case Key::timezoneName:
      return entry.timezoneName;
    case Key::signpostName:
      return entry.signpostName;
    case Key::signpostType:
      return entry.signpostType;
    case Key::signpostScope:
      return entry.signpostScope;
    case Key::bootUUID:
      return entry.bootUUID;
    case Key::process:
      return lastComponent(entry.processImagePath);
    case Key::sender:
      return lastComponent(entry.senderImagePath);
    default:
      return {};
  }
}

// None for an entry whose type has no number (some events print no messageType).
std::optional<Number> numberOf(const LogEntry& entry, Key key) {
  const auto named = [](std::optional<int> n) -> std::optional<Number> {
    if (!n) return std::nullopt;
    return Number::ofSigned(*n);
  };
  switch (key) {
    case Key::machTimestamp:
      return Number::ofUnsigned(entry.machTimestamp);
    case Key::processUniqueID:
      return Number::ofUnsigned(entry.processUniqueID);
    case Key::threadID:
      return Number::ofUnsigned(entry.threadID);
    case Key::traceID:
      return Number::ofUnsigned(entry.traceID);
    case Key::senderProgramCounter:
      return Number::ofUnsigned(entry.senderProgramCounter);
    case Key::processID:
      return Number::ofSigned(entry.processID);
    case Key::activityIdentifier:
      return Number::ofUnsigned(entry.activityIdentifier);
    case Key::parentActivityIdentifier:
      return Number::ofUnsigned(entry.parentActivityIdentifier);
    case Key::creatorActivityID:
      return Number::ofUnsigned(entry.creatorActivityID);
    case Key::signpostID:
      return Number::ofUnsigned(entry.signpostID);
    case Key::userID:
      return Number::ofSigned(entry.userID);
    case Key::messageType:
      return named(messageTypeNumberOfEntry(entry.messageType));
    case Key::eventType:
      return named(eventTypeNumber(entry.eventType));
    default:
      return std::nullopt;
  }
}

// The entry's value, converted as each operand asks and at most once.
class Subject {
 public:
  Subject(std::string_view text, Folding folding, std::string& scratch)
      : isText_(true), raw_(text), folding_(folding), scratch_(scratch) {}
  Subject(std::optional<Number> number, std::string& scratch)
      : number_(number), numberRead_(true), scratch_(scratch) {}

  std::partial_ordering against(const Operand& operand) {
    if (isText_ && !operand.writtenAsNumber) return compareText(prepared(), operand.text);
    const std::optional<Number>& mine = number();
    if (!mine || !operand.number) return std::partial_ordering::unordered;
    return compareNumbers(*mine, *operand.number);
  }

 private:
  const Prepared& prepared() {
    if (!prepared_) prepared_ = prepare(raw_, folding_, scratch_);
    return *prepared_;
  }
  const std::optional<Number>& number() {
    if (!numberRead_) number_ = parseNumber(raw_);
    numberRead_ = true;
    return number_;
  }

  bool isText_ = false;
  std::string_view raw_;
  Folding folding_;
  std::optional<Prepared> prepared_;
  std::optional<Number> number_;
  bool numberRead_ = false;
  std::string& scratch_;
};

bool decide(const Comparison& comparison, Subject& subject) {
  const std::vector<Operand>& operands = comparison.operands;
  switch (comparison.op) {
    case Op::equal:
      return subject.against(operands[0]) == 0;
    case Op::notEqual:
      return subject.against(operands[0]) != 0;
    case Op::less:
      return subject.against(operands[0]) < 0;
    case Op::lessEqual:
      return subject.against(operands[0]) <= 0;
    case Op::greater:
      return subject.against(operands[0]) > 0;
    case Op::greaterEqual:
      return subject.against(operands[0]) >= 0;
    case Op::between:
      return subject.against(operands[0]) >= 0 && subject.against(operands[1]) <= 0;
    case Op::in:
      for (const Operand& operand : operands)
        if (subject.against(operand) == 0) return true;
      return false;
    default:
      return false;
  }
}

bool matchesText(std::string_view text, const Comparison& comparison, std::string& scratch) {
  const std::string_view constant = comparison.operands[0].text;
  if (comparison.op == Op::matches) {
    // Case is the pattern's flag; only diacritics are removed here.
    const Folding marksOnly{false, comparison.folding.diacriticless};
    return comparison.regex.matchesWhole(prepare(text, marksOnly, scratch).text);
  }
  const Prepared prepared = prepare(text, comparison.folding, scratch);
  switch (comparison.op) {
    case Op::contains:
      return containsText(prepared, constant);
    case Op::beginsWith:
      return beginsWithText(prepared, constant);
    case Op::endsWith:
      return endsWithText(prepared, constant);
    case Op::like:
      return likeText(prepared, constant);
    default:
      return false;
  }
}

}  // namespace

bool Tree::matches(const LogEntry& entry, const Comparison& comparison) const {
  if (isTextKey(comparison.key)) {
    const std::string_view text = textOf(entry, comparison.key);
    if (isTextOp(comparison.op)) return matchesText(text, comparison, scratch);
    Subject subject(text, comparison.folding, scratch);
    return decide(comparison, subject);
  }
  const std::optional<Number> number = numberOf(entry, comparison.key);
  if (!isTextOp(comparison.op)) {
    Subject subject(number, scratch);
    return decide(comparison, subject);
  }
  if (!number) return false;
  char digits[24];
  char* end = digits;
  if (number->negative) *end++ = '-';
  end = std::to_chars(end, digits + sizeof digits, number->magnitude).ptr;
  return matchesText(std::string_view(digits, static_cast<size_t>(end - digits)), comparison,
                     scratch);
}

bool Tree::matches(const LogEntry& entry, const Node& node) const {
  switch (node.kind) {
    case Node::Kind::always:
      return true;
    case Node::Kind::never:
      return false;
    case Node::Kind::negation:
      return !matches(entry, nodes[node.first]);
    case Node::Kind::comparison:
      return matches(entry, comparisons[node.first]);
    case Node::Kind::conjunction:
      for (uint32_t i = node.first; i < node.first + node.count; ++i)
        if (!matches(entry, nodes[children[i]])) return false;
      return true;
    case Node::Kind::disjunction:
      for (uint32_t i = node.first; i < node.first + node.count; ++i)
        if (matches(entry, nodes[children[i]])) return true;
      return false;
  }
  return false;
}

}  // namespace kavor::standin::predicate

namespace kavor::standin {

bool Predicate::matches(const LogEntry& entry) const {
  return tree_->matches(entry, tree_->nodes[tree_->root]);
}

}  // namespace kavor::standin

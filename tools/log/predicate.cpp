#include "tools/log/predicate.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "tools/log/event_kinds.h"
#include "tools/log/predicate_lexer.h"
#include "tools/log/predicate_tree.h"

namespace kavor::standin {

using predicate::Comparison;
using predicate::Key;
using predicate::Node;
using predicate::Number;
using predicate::Op;
using predicate::Operand;
using predicate::Token;
using predicate::Tree;

namespace {

using Named = std::pair<std::string_view, Key>;
constexpr std::array<Named, 31> kKeys = {{
    {"category", Key::category},
    {"subsystem", Key::subsystem},
    {"eventMessage", Key::eventMessage},
    {"composedMessage", Key::eventMessage},
    {"formatString", Key::formatString},
    {"processImagePath", Key::processImagePath},
    {"processImageUUID", Key::processImageUUID},
    {"senderImagePath", Key::senderImagePath},
    {"senderImageUUID", Key::senderImageUUID},
    {"timezoneName", Key::timezoneName},
    {"signpostName", Key::signpostName},
    {"signpostType", Key::signpostType},
    {"signpostScope", Key::signpostScope},
    {"bootUUID", Key::bootUUID},
    {"process", Key::process},
    {"sender", Key::sender},
    {"machTimestamp", Key::machTimestamp},
    {"processUniqueID", Key::processUniqueID},
    {"threadID", Key::threadID},
    {"traceID", Key::traceID},
    {"senderProgramCounter", Key::senderProgramCounter},
    {"processID", Key::processID},
    {"processIdentifier", Key::processID},
    {"activityIdentifier", Key::activityIdentifier},
    {"parentActivityIdentifier", Key::parentActivityIdentifier},
    {"creatorActivityID", Key::creatorActivityID},
    {"signpostID", Key::signpostID},
    {"userID", Key::userID},
    {"messageType", Key::messageType},
    {"logType", Key::messageType},
    {"eventType", Key::eventType},
}};

using NamedOp = std::pair<std::string_view, Op>;
constexpr std::array<NamedOp, 17> kOps = {{
    {"==", Op::equal},
    {"=", Op::equal},
    {"!=", Op::notEqual},
    {"<>", Op::notEqual},
    {"<", Op::less},
    {"<=", Op::lessEqual},
    {"=<", Op::lessEqual},
    {">", Op::greater},
    {">=", Op::greaterEqual},
    {"=>", Op::greaterEqual},
    {"CONTAINS", Op::contains},
    {"BEGINSWITH", Op::beginsWith},
    {"ENDSWITH", Op::endsWith},
    {"LIKE", Op::like},
    {"MATCHES", Op::matches},
    {"IN", Op::in},
    {"BETWEEN", Op::between},
}};

// Deeper nesting than any person writes; bounds the recursion of parsing and matching.
constexpr int kMaxDepth = 200;

char upperAscii(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Keywords are case-insensitive: AND, and, And.
bool sameWord(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (upperAscii(a[i]) != upperAscii(b[i])) return false;
  return true;
}

std::string quoted(std::string_view text) {
  // Appended piece by piece: GCC 12 at -O3 misreads "\"" + string as overlapping copies.
  std::string out;
  out.reserve(text.size() + 2);
  out += '"';
  out += text;
  out += '"';
  return out;
}

class Parser {
 public:
  Parser(std::string_view text, std::vector<Token> tokens)
      : text_(text), tokens_(std::move(tokens)) {}

  Expected<std::unique_ptr<Tree>> run() {
    tree_->root = parseOr(0);
    if (!failure_ && peek().kind != Token::Kind::end)
      fail(peek(), "unexpected " + quoted(peek().spelling));
    if (failure_) return std::move(*failure_);
    return std::move(tree_);
  }

 private:
  const Token& peek() const { return tokens_[at_]; }
  // The current token; the end is never passed.
  const Token& take() {
    const Token& token = tokens_[at_];
    if (at_ + 1 < tokens_.size()) ++at_;
    return token;
  }
  bool isSymbol(std::string_view symbol) const {
    return peek().kind == Token::Kind::symbol && peek().spelling == symbol;
  }
  bool isWord(std::string_view word) const {
    return peek().kind == Token::Kind::word && sameWord(peek().spelling, word);
  }

  uint32_t fail(const Token& where, const std::string& problem) {
    if (!failure_) failure_ = predicate::predicateError(text_, where.offset, problem);
    return 0;
  }
  // "expected X after Y", Y being the token just read.
  uint32_t failAfter(const std::string& expected) {
    return fail(peek(), "expected " + expected + " after " + quoted(tokens_[at_ - 1].spelling));
  }

  uint32_t add(Node node) {
    tree_->nodes.push_back(node);
    return static_cast<uint32_t>(tree_->nodes.size() - 1);
  }

  // AND and OR: one node over all the operands of a chain.
  template <class Next>
  uint32_t parseChain(Node::Kind kind, std::string_view word, std::string_view symbol, Next next) {
    std::vector<uint32_t> operands{next()};
    while (!failure_ && (isWord(word) || isSymbol(symbol))) {
      take();
      operands.push_back(next());
    }
    if (failure_ || operands.size() == 1) return operands[0];
    const auto first = static_cast<uint32_t>(tree_->children.size());
    tree_->children.insert(tree_->children.end(), operands.begin(), operands.end());
    return add({kind, first, static_cast<uint32_t>(operands.size())});
  }

  uint32_t parseOr(int depth) {
    return parseChain(Node::Kind::disjunction, "OR", "||", [&] { return parseAnd(depth); });
  }

  uint32_t parseAnd(int depth) {
    return parseChain(Node::Kind::conjunction, "AND", "&&", [&] { return parseNot(depth); });
  }

  uint32_t parseNot(int depth) {
    if (depth > kMaxDepth) return fail(peek(), "nesting too deep");
    if (isWord("NOT") || isSymbol("!")) {
      take();
      const uint32_t operand = parseNot(depth + 1);
      return failure_ ? 0 : add({Node::Kind::negation, operand, 0});
    }
    return parsePrimary(depth);
  }

  uint32_t parsePrimary(int depth) {
    const Token& token = peek();
    if (isSymbol("(")) {
      take();
      const uint32_t inner = parseOr(depth + 1);
      if (failure_) return 0;
      if (!isSymbol(")")) return fail(token, "missing \")\" for the \"(\"");
      take();
      return inner;
    }
    if (isWord("TRUEPREDICATE")) {
      take();
      return add({Node::Kind::always, 0, 0});
    }
    if (isWord("FALSEPREDICATE")) {
      take();
      return add({Node::Kind::never, 0, 0});
    }
    if (token.kind == Token::Kind::word) {
      for (const auto& [name, key] : kKeys)
        if (name == token.spelling) return parseComparison(key);
      return fail(token, "unknown key " + quoted(token.spelling));
    }
    if (token.kind == Token::Kind::end) {
      if (at_ == 0) return fail(token, "expected a comparison");
      return failAfter("a comparison");
    }
    return fail(token, "expected a comparison, found " + quoted(token.spelling));
  }

  uint32_t parseComparison(Key key) {
    take();
    Comparison comparison;
    comparison.key = key;
    const Token& opToken = peek();
    if (opToken.kind != Token::Kind::symbol && opToken.kind != Token::Kind::word)
      return failAfter("an operator");
    const auto op = std::find_if(kOps.begin(), kOps.end(), [&](const NamedOp& named) {
      return opToken.kind == Token::Kind::word ? sameWord(named.first, opToken.spelling)
                                               : named.first == opToken.spelling;
    });
    if (op == kOps.end()) {
      if (opToken.kind == Token::Kind::word)
        return fail(opToken, "unknown operator " + quoted(opToken.spelling));
      return failAfter("an operator");
    }
    comparison.op = op->second;
    take();
    if (isSymbol("[") && !parseModifiers(comparison)) return 0;
    if (comparison.op == Op::in || comparison.op == Op::between) {
      if (!parseList(comparison)) return 0;
    } else {
      const Token& valueToken = peek();
      std::optional<Operand> operand = parseOperand(comparison);
      if (!operand) return 0;
      if (comparison.op == Op::matches) {
        if (auto problem = comparison.regex.compile(operand->text, comparison.folding.caseless))
          return fail(valueToken, "invalid regular expression " + quoted(operand->text) + " (" +
                                      *problem + ")");
      }
      comparison.operands.push_back(std::move(*operand));
    }
    tree_->comparisons.push_back(std::move(comparison));
    return add({Node::Kind::comparison, static_cast<uint32_t>(tree_->comparisons.size() - 1), 0});
  }

  bool parseModifiers(Comparison& comparison) {
    take();
    const Token& letters = peek();
    if (letters.kind != Token::Kind::word) {
      failAfter("c, d or cd");
      return false;
    }
    bool known = true;
    for (const char c : letters.spelling) {
      if (c == 'c' || c == 'C') {
        comparison.folding.caseless = true;
      } else if (c == 'd' || c == 'D') {
        comparison.folding.diacriticless = true;
      } else {
        known = false;
      }
    }
    if (!known) {
      fail(letters, "unknown modifier " + quoted(letters.spelling) + ", expected c, d or cd");
      return false;
    }
    take();
    if (!isSymbol("]")) {
      failAfter("\"]\"");
      return false;
    }
    take();
    return true;
  }

  bool parseList(Comparison& comparison) {
    const std::string_view opName = tokens_[at_ - 1].spelling;
    if (!isSymbol("{")) {
      failAfter(quoted("{"));
      return false;
    }
    const Token& open = take();
    while (!failure_ && !isSymbol("}")) {
      if (!comparison.operands.empty()) {
        if (!isSymbol(",")) {
          failAfter("\",\" or \"}\"");
          return false;
        }
        take();
      }
      std::optional<Operand> operand = parseOperand(comparison);
      if (!operand) return false;
      comparison.operands.push_back(std::move(*operand));
    }
    if (failure_) return false;
    take();
    if (comparison.op == Op::between && comparison.operands.size() != 2) {
      fail(open, quoted(opName) + " takes two values, as in {1, 5}");
      return false;
    }
    return true;
  }

  // A constant, prepared for the comparison's key, operator and modifiers.
  std::optional<Operand> parseOperand(const Comparison& comparison) {
    const Token& token = peek();
    Operand operand;
    const bool named = comparison.key == Key::messageType || comparison.key == Key::eventType;
    const bool textOp = predicate::isTextOp(comparison.op);
    if (token.kind == Token::Kind::number) {
      operand.writtenAsNumber = true;
      operand.number = numberLiteral(token);
      if (!operand.number) return std::nullopt;
      operand.text = std::string(token.spelling);
    } else if (token.kind == Token::Kind::string ||
               (token.kind == Token::Kind::word && named && !textOp)) {
      operand.text = token.kind == Token::Kind::string ? token.value : std::string(token.spelling);
      if (named && !textOp) {
        const std::optional<int> number = comparison.key == Key::messageType
                                              ? messageTypeNumber(operand.text)
                                              : eventTypeNumber(operand.text);
        if (!number) {
          const char* what = comparison.key == Key::messageType ? "message" : "event";
          fail(token, std::string("unknown ") + what + " type " + quoted(operand.text));
          return std::nullopt;
        }
        operand.number = Number::ofSigned(*number);
      } else if (!predicate::isTextKey(comparison.key)) {
        operand.number = predicate::parseNumber(operand.text);
      }
    } else {
      if (token.kind == Token::Kind::word)
        fail(token, "expected a value after " + quoted(tokens_[at_ - 1].spelling) + ", found " +
                        quoted(token.spelling) + " (text needs quotes)");
      else
        failAfter("a value");
      return std::nullopt;
    }
    take();
    // MATCHES leaves case to the pattern's flag: folding a pattern could change its meaning
    // ("\S" is not "\s").
    predicate::Folding folding = comparison.folding;
    if (comparison.op == Op::matches) folding.caseless = false;
    if (folding.any()) operand.text = predicate::fold(operand.text, folding);
    return operand;
  }

  std::optional<Number> numberLiteral(const Token& token) {
    std::string_view digits = token.spelling;
    const bool negative = digits.front() == '-';
    if (negative) digits.remove_prefix(1);
    const bool hex = digits.size() > 1 && (digits[1] == 'x' || digits[1] == 'X');
    if (hex) digits.remove_prefix(2);
    uint64_t magnitude = 0;
    const auto [end, ec] =
        std::from_chars(digits.data(), digits.data() + digits.size(), magnitude, hex ? 16 : 10);
    if (ec == std::errc() && end == digits.data() + digits.size() && !digits.empty()) {
      Number number = Number::ofUnsigned(magnitude);
      number.negative = negative && magnitude != 0;
      return number;
    }
    if (!hex) {
      const std::optional<Number> real = predicate::parseNumber(token.spelling);
      if (real && real->real) return real;
    }
    fail(token, (hex && digits.empty() ? "invalid number " : "number out of range ") +
                    quoted(token.spelling));
    return std::nullopt;
  }

  std::string_view text_;
  std::vector<Token> tokens_;
  size_t at_ = 0;
  std::unique_ptr<Tree> tree_ = std::make_unique<Tree>();
  std::optional<Error> failure_;
};

}  // namespace

Expected<Predicate> Predicate::parse(std::string_view text) {
  Expected<std::vector<Token>> tokens = predicate::tokenize(text);
  if (!tokens) return tokens.error();
  Expected<std::unique_ptr<Tree>> tree = Parser(text, std::move(*tokens)).run();
  if (!tree) return tree.error();
  return Predicate(std::move(*tree));
}

Predicate::Predicate(std::unique_ptr<predicate::Tree> tree) : tree_(std::move(tree)) {}
Predicate::Predicate(const Predicate& other)
    : tree_(std::make_unique<predicate::Tree>(*other.tree_)) {}
Predicate& Predicate::operator=(const Predicate& other) {
  if (this != &other) tree_ = std::make_unique<predicate::Tree>(*other.tree_);
  return *this;
}
Predicate::Predicate(Predicate&&) noexcept = default;
Predicate& Predicate::operator=(Predicate&&) noexcept = default;
Predicate::~Predicate() = default;

}  // namespace kavor::standin

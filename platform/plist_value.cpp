#include "platform/plist_value.h"

#include <plist/plist.h>

#include <algorithm>
#include <cassert>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

namespace kavor {

const PlistValue* PlistValue::find(std::string_view key) const {
  const PlistDict* dict = get<PlistDict>();
  if (!dict) return nullptr;
  for (const auto& [k, v] : *dict)
    if (k == key) return &v;
  return nullptr;
}

PlistValue* PlistValue::find(std::string_view key) {
  return const_cast<PlistValue*>(std::as_const(*this).find(key));
}

void PlistValue::set(std::string_view key, PlistValue value) {
  PlistDict* dict = get<PlistDict>();
  assert(dict);
  if (!dict) return;
  if (PlistValue* existing = find(key)) {
    *existing = std::move(value);
    return;
  }
  dict->emplace_back(std::string(key), std::move(value));
}

bool PlistValue::erase(std::string_view key) {
  PlistDict* dict = get<PlistDict>();
  if (!dict) return false;
  const auto it =
      std::find_if(dict->begin(), dict->end(), [&](const auto& kv) { return kv.first == key; });
  if (it == dict->end()) return false;
  dict->erase(it);
  return true;
}

namespace {

// libplist frees, copies and writes trees recursively, so a deep tree overflows the stack. The
// limit counts nested arrays and dictionaries and is checked before libplist builds anything.
constexpr int kMaxNesting = 256;
// Binary lists can share objects, so a few bytes may stand for an exponential number of values.
constexpr uint64_t kMinValueBudget = uint64_t{1} << 20;

constexpr std::string_view kBinaryMagic = "bplist00";

Error parseError(std::string what) {
  return Error{ErrorKind::parse, "property list: " + std::move(what)};
}

struct PlistFree {
  void operator()(plist_t p) const { plist_free(p); }
};
using PlistPtr = std::unique_ptr<void, PlistFree>;

bool isTextElement(std::string_view name) {
  for (std::string_view t : {"string", "key", "integer", "real", "true", "false", "data", "date"})
    if (name == t) return true;
  return false;
}

// Tokenises XML as libplist's reader does and follows the nesting of arrays and dictionaries.
// What that reader would refuse is refused here too, so nothing can hide a level from the count.
std::optional<Error> checkXmlShape(std::string_view s) {
  const size_t n = s.size();
  size_t i = 0;
  int depth = 0;
  // Moves past the next `end`; with quotes, one inside "..." does not count.
  auto skipPast = [&](std::string_view end, bool quotes) {
    for (; i < n; ++i) {
      if (quotes && s[i] == '"') {
        i = s.find('"', i + 1);
        if (i == std::string_view::npos) break;
      } else if (s.substr(i).starts_with(end)) {
        i += end.size();
        return true;
      }
    }
    i = n;
    return false;
  };
  // Inside <string> and its kind: comments and CDATA, up to the closing tag.
  auto skipText = [&] {
    for (;;) {
      i = std::min(s.find('<', i), n);
      const std::string_view rest = s.substr(std::min(i + 1, n));
      if (rest.starts_with("!--")) {
        i += 4;
        if (!skipPast("-->", false)) return false;
      } else if (rest.starts_with("![CDATA[")) {
        i += 9;
        if (!skipPast("]]>", false)) return false;
      } else {
        return rest.starts_with("/") && skipPast(">", false);
      }
    }
  };
  auto element = [&] {
    const size_t nameEnd = std::min(s.find_first_of(" \r\n\t<>", i), n);
    std::string_view name = s.substr(i, nameEnd - i);
    i = nameEnd;
    for (; i < n && s[i] != '>'; ++i) {
      if (s[i] == '<') return false;
      if (s[i] == '"' && (i = s.find('"', i + 1)) == std::string_view::npos) return false;
    }
    if (i >= n) return false;
    const bool empty = s[i - 1] == '/';
    if (empty && name.ends_with('/')) name.remove_suffix(1);
    ++i;
    if (name == "array" || name == "dict") {
      if (!empty) ++depth;
    } else if (name == "/array" || name == "/dict") {
      depth = std::max(0, depth - 1);
    } else if (isTextElement(name)) {
      return empty || skipText();
    } else {
      return name == "plist" || name == "/plist";
    }
    return true;
  };
  while ((i = s.find('<', i)) != std::string_view::npos) {
    const std::string_view rest = s.substr(++i);
    bool ok = true;
    if (rest.starts_with("?")) {
      ok = skipPast("?>", true);
    } else if (rest.starts_with("!--")) {
      i += 3;
      ok = skipPast("-->", false);
    } else if (rest.starts_with("!DOCTYPE")) {
      const size_t bracket = s.find_first_of("[>", i);
      ok = bracket != std::string_view::npos && skipPast(s[bracket] == '[' ? "]>" : ">", true);
    } else {
      ok = !rest.starts_with("!") && element();
    }
    if (!ok) return parseError("not a valid XML property list");
    if (depth > kMaxNesting)
      return parseError("nested deeper than " + std::to_string(kMaxNesting) + " levels");
  }
  return std::nullopt;
}

uint64_t readBigEndian(const unsigned char* p, size_t width) {
  uint64_t v = 0;
  for (size_t k = 0; k < width; ++k)
    v = (v << 8) | p[k];
  return v;
}

// Walks the object graph of a binary list from its trailer, without recursion, and rejects what
// libplist must not be given: nesting past the limit, cycles, and shared objects that would
// expand past the value budget. Structural faults it finds are reported here too.
std::optional<Error> checkBinaryShape(std::string_view bytes) {
  constexpr size_t kTrailer = 32;
  const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
  const size_t size = bytes.size();
  if (size < kBinaryMagic.size() + kTrailer + 1) return parseError("binary form is truncated");
  const unsigned char* trailer = data + size - kTrailer;
  const size_t offsetSize = trailer[6];
  const size_t refSize = trailer[7];
  const uint64_t count = readBigEndian(trailer + 8, 8);
  const uint64_t top = readBigEndian(trailer + 16, 8);
  const uint64_t table = readBigEndian(trailer + 24, 8);
  const uint64_t objectsEnd = size - kTrailer;
  if (offsetSize < 1 || offsetSize > 8 || refSize < 1 || refSize > 8 || count == 0 ||
      top >= count || table < kBinaryMagic.size() || table > objectsEnd ||
      count > (objectsEnd - table) / offsetSize)
    return parseError("binary form has a broken trailer");

  struct Counted {
    unsigned kind = 0;
    uint64_t count = 0;
    uint64_t contentAt = 0;
  };
  // An object's marker: its kind, and the count kept in it or in the integer after it.
  auto countedAt = [&](uint64_t index) -> std::optional<Counted> {
    const uint64_t at = readBigEndian(data + table + index * offsetSize, offsetSize);
    if (at < kBinaryMagic.size() || at >= table) return std::nullopt;
    Counted c{static_cast<unsigned>(data[at] >> 4), data[at] & 0x0Fu, at + 1};
    const bool hasCount = (c.kind >= 0x4 && c.kind <= 0x6) || (c.kind >= 0xA && c.kind <= 0xD);
    if (hasCount && c.count == 0x0F) {
      const uint64_t intAt = c.contentAt;
      if (intAt >= table || (data[intAt] >> 4) != 0x1 || (data[intAt] & 0x0F) > 3)
        return std::nullopt;
      const size_t width = size_t{1} << (data[intAt] & 0x03);
      if (intAt + 1 + width > table) return std::nullopt;
      c.count = readBigEndian(data + intAt + 1, width);
      c.contentAt = intAt + 1 + width;
    }
    return c;
  };
  // libplist aborts on a key holding a NUL, so such keys never reach it.
  auto keyHasNul = [&](uint64_t index) {
    const auto c = countedAt(index);
    if (!c || (c->kind != 0x5 && c->kind != 0x6)) return false;
    const uint64_t unit = c->kind == 0x6 ? 2 : 1;
    if (c->count > (table - c->contentAt) / unit) return false;
    for (uint64_t k = 0; k < c->count; ++k)
      if (readBigEndian(data + c->contentAt + k * unit, unit) == 0) return true;
    return false;
  };
  struct Node {
    uint64_t refsAt = 0;
    uint64_t refs = 0;
    uint64_t keys = 0;
  };
  // The references of a container (a dictionary's keys first), or none for a scalar.
  auto nodeAt = [&](uint64_t index) -> std::optional<Node> {
    const auto c = countedAt(index);
    if (!c) return std::nullopt;
    if (c->kind < 0xA || c->kind > 0xD) return Node{};
    const uint64_t perEntry = c->kind == 0xD ? 2 : 1;
    if (c->count > (table - c->contentAt) / (refSize * perEntry)) return std::nullopt;
    return Node{c->contentAt, c->count * perEntry, c->kind == 0xD ? c->count : 0};
  };

  enum : uint8_t { unseen, open, done };
  std::vector<uint8_t> state(count, unseen);
  std::vector<uint64_t> values(count, 0);
  const uint64_t budget = std::max(kMinValueBudget, count * 8);
  struct Frame {
    uint64_t index;
    Node node;
    uint64_t next = 0;
  };
  std::vector<Frame> stack;
  auto enter = [&](uint64_t index) -> std::optional<Error> {
    const auto node = nodeAt(index);
    if (!node) return parseError("binary form has an object out of bounds");
    if (node->refs > 0 && stack.size() >= static_cast<size_t>(kMaxNesting))
      return parseError("nested deeper than " + std::to_string(kMaxNesting) + " levels");
    state[index] = open;
    stack.push_back(Frame{index, *node});
    return std::nullopt;
  };
  if (auto e = enter(top)) return e;
  while (!stack.empty()) {
    Frame& f = stack.back();
    if (f.next == f.node.refs) {
      uint64_t total = 1;
      for (uint64_t k = 0; k < f.node.refs; ++k) {
        const uint64_t child = readBigEndian(data + f.node.refsAt + k * refSize, refSize);
        total = std::min(budget + 1, total + values[child]);
      }
      values[f.index] = total;
      state[f.index] = done;
      if (total > budget)
        return Error{ErrorKind::tooLarge,
                     "property list: expands to more than " + std::to_string(budget) + " values"};
      stack.pop_back();
      continue;
    }
    const uint64_t child = readBigEndian(data + f.node.refsAt + f.next * refSize, refSize);
    ++f.next;
    if (child >= count) return parseError("binary form refers to a missing object");
    if (f.next <= f.node.keys && keyHasNul(child)) return parseError("a key holds a NUL");
    if (state[child] == open) return parseError("binary form refers to itself");
    if (state[child] == unseen)
      if (auto e = enter(child)) return e;
  }
  return std::nullopt;
}

// libplist 2.2 keeps integers as 64 bits without a sign. Its binary writer still knows which
// ones were read as unsigned (it gives them 16 bytes), so negative numbers read back as negative
// and unsigned values past the signed range clamp to its maximum.
int64_t signedValueOf(plist_t node, uint64_t bits) {
  if (bits <= static_cast<uint64_t>(std::numeric_limits<int64_t>::max()))
    return static_cast<int64_t>(bits);
  char* bin = nullptr;
  uint32_t length = 0;
  plist_to_bin(node, &bin, &length);
  const bool isUnsigned = bin && length > kBinaryMagic.size() &&
                          static_cast<unsigned char>(bin[kBinaryMagic.size()]) == 0x14;
  plist_to_bin_free(bin);
  return isUnsigned ? std::numeric_limits<int64_t>::max() : static_cast<int64_t>(bits);
}

Expected<PlistValue> fromNode(plist_t node, int nesting);

Expected<PlistValue> arrayFrom(plist_t node, int nesting) {
  PlistArray array;
  array.reserve(plist_array_get_size(node));
  plist_array_iter iter = nullptr;
  plist_array_new_iter(node, &iter);
  for (;;) {
    plist_t item = nullptr;
    plist_array_next_item(node, iter, &item);
    if (!item) break;
    auto v = fromNode(item, nesting + 1);
    if (!v) {
      std::free(iter);
      return v.error();
    }
    array.push_back(std::move(v).value());
  }
  std::free(iter);
  return PlistValue(std::move(array));
}

Expected<PlistValue> dictFrom(plist_t node, int nesting) {
  PlistValue dict{PlistDict{}};
  plist_dict_iter iter = nullptr;
  plist_dict_new_iter(node, &iter);
  for (;;) {
    char* key = nullptr;
    plist_t item = nullptr;
    plist_dict_next_item(node, iter, &key, &item);
    if (!item) {
      std::free(key);
      break;
    }
    const std::string keyText = key ? key : "";
    std::free(key);
    auto v = fromNode(item, nesting + 1);
    if (!v) {
      std::free(iter);
      return v.error();
    }
    dict.set(keyText, std::move(v).value());
  }
  std::free(iter);
  return dict;
}

Expected<PlistValue> fromNode(plist_t node, int nesting) {
  if (nesting > kMaxNesting)
    return parseError("nested deeper than " + std::to_string(kMaxNesting) + " levels");
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
      uint8_t b = 0;
      plist_get_bool_val(node, &b);
      return PlistValue(b != 0);
    }
    case PLIST_UINT: {
      uint64_t u = 0;
      plist_get_uint_val(node, &u);
      return PlistValue(signedValueOf(node, u));
    }
    case PLIST_UID: {
      uint64_t u = 0;
      plist_get_uid_val(node, &u);
      return PlistValue(
          static_cast<int64_t>(std::min<uint64_t>(u, std::numeric_limits<int64_t>::max())));
    }
    case PLIST_REAL: {
      double d = 0;
      plist_get_real_val(node, &d);
      return PlistValue(d);
    }
    case PLIST_DATE: {
      int32_t sec = 0;
      int32_t usec = 0;
      plist_get_date_val(node, &sec, &usec);
      // libplist 2.2 splits a binary date by truncation and keeps only the fraction's size.
      const double fraction = std::abs(usec) / 1e6;
      return PlistValue(PlistDate{sec < 0 ? sec - fraction : sec + fraction});
    }
    case PLIST_STRING:
    case PLIST_KEY: {
      uint64_t length = 0;
      const char* p = plist_get_string_ptr(node, &length);
      return PlistValue(p ? std::string(p, length) : std::string());
    }
    case PLIST_DATA: {
      uint64_t length = 0;
      const char* p = plist_get_data_ptr(node, &length);
      return PlistValue(PlistData{p ? std::string(p, length) : std::string()});
    }
    case PLIST_ARRAY:
      return arrayFrom(node, nesting);
    case PLIST_DICT:
      return dictFrom(node, nesting);
    case PLIST_NONE:
      break;
  }
  return parseError("value of an unknown type");
}

PlistDate clampedDate(double seconds) {
  if (std::isnan(seconds)) return {};
  return {std::clamp(seconds, double{std::numeric_limits<int32_t>::min()},
                     double{std::numeric_limits<int32_t>::max()})};
}

// Property-list dates hold whole seconds and microseconds in 32 bits each.
plist_t dateNode(PlistDate date) {
  const double s = clampedDate(date.secondsSince2001).secondsSince2001;
  double whole = std::floor(s);
  auto usec = static_cast<int32_t>(std::lround((s - whole) * 1e6));
  if (usec >= 1000000 && whole < std::numeric_limits<int32_t>::max()) {
    whole += 1;
    usec = 0;
  }
  return plist_new_date(static_cast<int32_t>(whole), std::min(usec, int32_t{999999}));
}

// Text goes in as C strings, so it ends at its first NUL; data keeps every byte.
plist_t toNode(const PlistValue& value) {
  struct Build {
    plist_t operator()(bool b) const { return plist_new_bool(b ? 1 : 0); }
    plist_t operator()(int64_t i) const { return plist_new_uint(static_cast<uint64_t>(i)); }
    plist_t operator()(double d) const { return plist_new_real(d); }
    plist_t operator()(const std::string& s) const { return plist_new_string(s.c_str()); }
    plist_t operator()(PlistDate d) const { return dateNode(d); }
    plist_t operator()(const PlistData& d) const {
      return plist_new_data(d.bytes.data(), d.bytes.size());
    }
    plist_t operator()(const PlistArray& a) const {
      plist_t node = plist_new_array();
      for (const PlistValue& v : a)
        plist_array_append_item(node, toNode(v));
      return node;
    }
    plist_t operator()(const PlistDict& d) const {
      plist_t node = plist_new_dict();
      for (const auto& [k, v] : d)
        plist_dict_set_item(node, k.c_str(), toNode(v));
      return node;
    }
  };
  return std::visit(Build{}, value.storage());
}

}  // namespace

Expected<PlistValue> parsePlist(std::string_view bytes) {
  if (bytes.empty()) return parseError("empty input");
  if (bytes.size() > std::numeric_limits<uint32_t>::max())
    return Error{ErrorKind::tooLarge, "property list: 4 GiB or more"};
  const auto length = static_cast<uint32_t>(bytes.size());
  plist_t root = nullptr;
  if (bytes.starts_with(kBinaryMagic)) {
    if (auto e = checkBinaryShape(bytes)) return *e;
    plist_from_bin(bytes.data(), length, &root);
  } else {
    if (bytes.find('\0') != std::string_view::npos) return parseError("XML holds a NUL character");
    if (auto e = checkXmlShape(bytes)) return *e;
    plist_from_xml(bytes.data(), length, &root);
  }
  const PlistPtr owner(root);
  if (!root) return parseError("not a valid XML or binary property list");
  return fromNode(root, 0);
}

std::string writeXmlPlist(const PlistValue& value) {
  const PlistPtr root(toNode(value));
  char* xml = nullptr;
  uint32_t length = 0;
  plist_to_xml(root.get(), &xml, &length);
  std::string text = xml ? std::string(xml, length) : std::string();
  plist_to_xml_free(xml);
  return text;
}

}  // namespace kavor

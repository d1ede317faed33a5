#pragma once
// A property-list value tree, independent of the library that reads and writes the files.

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "platform/expected.h"

namespace kavor {

class PlistValue;
using PlistArray = std::vector<PlistValue>;
// Keys keep the order they were read or inserted in; lookups are linear (dictionaries are small).
using PlistDict = std::vector<std::pair<std::string, PlistValue>>;

struct PlistDate {
  double secondsSince2001 = 0;  // the reference date of property lists: 2001-01-01 00:00:00 UTC
  bool operator==(const PlistDate&) const = default;
};
struct PlistData {
  std::string bytes;
  bool operator==(const PlistData&) const = default;
};

class PlistValue {
 public:
  using Storage =
      std::variant<bool, int64_t, double, std::string, PlistDate, PlistData, PlistArray, PlistDict>;

  PlistValue() : v_(std::string()) {}
  PlistValue(bool b) : v_(b) {}  // NOLINT: values convert implicitly, as literals do in a plist
  PlistValue(int v) : v_(int64_t{v}) {}                   // NOLINT
  PlistValue(int64_t v) : v_(v) {}                        // NOLINT
  PlistValue(double v) : v_(v) {}                         // NOLINT
  PlistValue(std::string s) : v_(std::move(s)) {}         // NOLINT
  PlistValue(std::string_view s) : v_(std::string(s)) {}  // NOLINT
  PlistValue(const char* s) : v_(std::string(s)) {}       // NOLINT
  PlistValue(PlistDate d) : v_(d) {}                      // NOLINT
  PlistValue(PlistData d) : v_(std::move(d)) {}           // NOLINT
  // Explicit, so that PlistArray{inner} copies inner under every compiler; with an implicit
  // conversion some would read it as a one-element list holding inner. A nested array is
  // written PlistArray{PlistValue(inner)}.
  explicit PlistValue(PlistArray a) : v_(std::move(a)) {}
  PlistValue(PlistDict d) : v_(std::move(d)) {}  // NOLINT

  template <class T>
  bool is() const {
    return std::holds_alternative<T>(v_);
  }
  template <class T>
  const T* get() const {
    return std::get_if<T>(&v_);
  }
  template <class T>
  T* get() {
    return std::get_if<T>(&v_);
  }

  // Dictionary helpers; null when this is not a dictionary or has no such key.
  const PlistValue* find(std::string_view key) const;
  PlistValue* find(std::string_view key);
  // Sets or replaces a key; this value must be a dictionary.
  void set(std::string_view key, PlistValue value);
  bool erase(std::string_view key);

  const Storage& storage() const { return v_; }
  bool operator==(const PlistValue& other) const { return v_ == other.v_; }

 private:
  Storage v_;
};

// An array value from its elements; arrayValue({arrayValue({"a", "b"})}) is a list in a list.
inline PlistValue arrayValue(std::initializer_list<PlistValue> elements) {
  return PlistValue(PlistArray(elements));
}

// Reads an XML or binary property list. Never trusts its input: malformed bytes give an error.
Expected<PlistValue> parsePlist(std::string_view bytes);
// Writes the XML form.
std::string writeXmlPlist(const PlistValue& value);

}  // namespace kavor

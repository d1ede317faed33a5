#include "platform/settings_store.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/number_text.h"

namespace kavor {

namespace {

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return (x | 0x20) == (y | 0x20);
         });
}

int64_t clampToInt64(double d) {
  if (std::isnan(d)) return 0;
  if (d >= 9.2233720368547758e18) return std::numeric_limits<int64_t>::max();
  if (d <= -9.2233720368547758e18) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(d);
}

}  // namespace

SettingsStore::~SettingsStore() = default;

bool SettingsStore::boolValue(std::string_view key) const {
  const auto v = value(key);
  if (!v) return false;
  if (const bool* b = v->get<bool>()) return *b;
  if (const int64_t* i = v->get<int64_t>()) return *i != 0;
  if (const double* d = v->get<double>()) return *d != 0.0;
  if (const std::string* s = v->get<std::string>()) {
    if (equalsIgnoringCase(*s, "yes") || equalsIgnoringCase(*s, "true")) return true;
    return integerValueOf(*s) != 0;
  }
  return false;
}

int64_t SettingsStore::integerValue(std::string_view key) const {
  const auto v = value(key);
  if (!v) return 0;
  if (const int64_t* i = v->get<int64_t>()) return *i;
  if (const bool* b = v->get<bool>()) return *b ? 1 : 0;
  if (const double* d = v->get<double>()) return clampToInt64(*d);
  if (const std::string* s = v->get<std::string>()) return integerValueOf(*s);
  return 0;
}

double SettingsStore::doubleValue(std::string_view key) const {
  const auto v = value(key);
  if (!v) return 0.0;
  if (const double* d = v->get<double>()) return *d;
  if (const int64_t* i = v->get<int64_t>()) return static_cast<double>(*i);
  if (const bool* b = v->get<bool>()) return *b ? 1.0 : 0.0;
  if (const std::string* s = v->get<std::string>()) return doubleValueOf(*s);
  return 0.0;
}

std::optional<std::string> SettingsStore::stringValue(std::string_view key) const {
  const auto v = value(key);
  if (!v) return std::nullopt;
  if (const std::string* s = v->get<std::string>()) return *s;
  if (const int64_t* i = v->get<int64_t>()) return std::to_string(*i);
  if (const double* d = v->get<double>()) return shortestDoubleText(*d);
  return std::nullopt;
}

NamedListRead namedListFromPlist(const PlistValue& value) {
  NamedListRead read;
  const PlistArray* array = value.get<PlistArray>();
  if (!array) {
    read.status = NamedListRead::Status::corrupt;
    return read;
  }
  read.list.reserve(array->size());
  for (const PlistValue& element : *array) {
    const PlistArray* pair = element.get<PlistArray>();
    const bool allStrings =
        pair && std::all_of(pair->begin(), pair->end(),
                            [](const PlistValue& p) { return p.is<std::string>(); });
    if (!allStrings || pair->size() < 2) {
      read.status = NamedListRead::Status::corrupt;
      read.list.clear();
      return read;
    }
    read.list.push_back(ListEntry{*(*pair)[0].get<std::string>(), *(*pair)[1].get<std::string>()});
  }
  read.status = NamedListRead::Status::ok;
  return read;
}

PlistValue namedListToPlist(const NamedList& list) {
  PlistArray array;
  array.reserve(list.size());
  for (const ListEntry& e : list)
    array.push_back(arrayValue({e.name, e.text}));
  return PlistValue(std::move(array));
}

NamedListRead SettingsStore::namedList(std::string_view key) const {
  const auto v = value(key);
  if (!v) return {};
  return namedListFromPlist(*v);
}

Status SettingsStore::setNamedList(std::string_view key, const NamedList& list) {
  return setValue(key, namedListToPlist(list));
}

SettingsBatch::~SettingsBatch() {
  if (open_) store_.leaveBatch();
}

void SettingsBatch::set(std::string_view key, PlistValue value) {
  Status written = store_.setValue(key, std::move(value));
  if (!written && !failure_) failure_ = written.error();
}

Status SettingsBatch::commit() {
  if (!open_) return okStatus();
  open_ = false;
  Status written = store_.endBatch();
  if (failure_) return *failure_;
  return written;
}

std::optional<PlistValue> MemorySettingsStore::value(std::string_view key) const {
  for (const auto& [k, v] : values_)
    if (k == key) return v;
  return std::nullopt;
}

Status MemorySettingsStore::setValue(std::string_view key, PlistValue value) {
  ++writes_;
  for (auto& [k, v] : values_) {
    if (k == key) {
      v = std::move(value);
      return okStatus();
    }
  }
  values_.emplace_back(std::string(key), std::move(value));
  return okStatus();
}

Status MemorySettingsStore::removeValue(std::string_view key) {
  ++writes_;
  values_.erase(std::remove_if(values_.begin(), values_.end(),
                               [&](const auto& kv) { return kv.first == key; }),
                values_.end());
  return okStatus();
}

}  // namespace kavor

#include "engine/core/entry_chunk_parser.h"

#include <simdjson.h>

#include <string>

#include "engine/core/entry_key.h"
#include "engine/core/memory_budget.h"

namespace kavor {

// The DOM parser, unlike On-Demand, picks the fastest kernel of the running processor at run
// time, and it checks every byte of the piece, so malformed output never passes as entries.
namespace dom = simdjson::dom;
static_assert(EntryChunkParser::kPadding >= simdjson::SIMDJSON_PADDING);

namespace {

Error jsonError(simdjson::error_code code) {
  if (code == simdjson::MEMALLOC) return memoryRefusedError();
  const ErrorKind kind = code == simdjson::CAPACITY ? ErrorKind::tooLarge : ErrorKind::parse;
  return Error{kind, std::string("the output is not valid JSON: ") + simdjson::error_message(code)};
}

void storeValue(const dom::element& v, EntryKey key, EntryListBuilder& out) {
  switch (v.type()) {
    case dom::element_type::STRING:
      out.setText(key, v.get_string().value_unsafe());
      break;
    case dom::element_type::INT64:
      out.setInteger(key, v.get_int64().value_unsafe());
      break;
    case dom::element_type::UINT64:
      out.setUnsigned(key, v.get_uint64().value_unsafe());
      break;
    case dom::element_type::DOUBLE:
      out.setReal(key, v.get_double().value_unsafe());
      break;
    case dom::element_type::BOOL:
      out.setBoolean(key, v.get_bool().value_unsafe());
      break;
    case dom::element_type::NULL_VALUE:
      out.setNull(key);
      break;
    case dom::element_type::ARRAY:
    case dom::element_type::OBJECT:
      out.setOther(key, simdjson::minify(v));
      break;
  }
}

}  // namespace

struct EntryChunkParser::Impl {
  dom::parser parser;
  dom::array array;
  size_t length = 0;
  size_t elements = 0;
};

EntryChunkParser::EntryChunkParser() : impl_(std::make_unique<Impl>()) {}
EntryChunkParser::~EntryChunkParser() = default;

Expected<size_t> EntryChunkParser::parse(const char* data, size_t length) {
  impl_->length = impl_->elements = 0;
  dom::element root;
  if (auto e = impl_->parser.parse(data, length, false).get(root)) return jsonError(e);
  if (auto e = root.get_array().get(impl_->array)) return jsonError(e);
  impl_->length = length;
  impl_->elements = impl_->array.size();
  return impl_->elements;
}

size_t EntryChunkParser::memoryBytes() const {
  return memoryFor(impl_->parser.capacity());
}

size_t EntryChunkParser::storedBytesEstimate() const {
  return impl_->elements * size_t{kEntryKeyCount} * sizeof(uint64_t) + impl_->length;
}

void EntryChunkParser::store(EntryListBuilder& out) const {
  for (dom::element element : impl_->array) {
    dom::object object;
    if (element.get_object().get(object) != simdjson::SUCCESS) {
      out.addNonRecord();
      continue;
    }
    out.beginRecord();
    for (dom::key_value_pair field : object) {
      // Keys no feature reads are dropped.
      if (const std::optional<EntryKey> key = entryKeyFromName(field.key)) {
        storeValue(field.value, *key, out);
      }
    }
  }
}

}  // namespace kavor

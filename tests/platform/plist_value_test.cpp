#include "platform/plist_value.h"

#include <gtest/gtest.h>
#include <plist/plist.h>
#include <sys/mman.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace kavor {
namespace {

// The binary form, made by libplist itself; takes the tree.
std::string binaryOfNode(plist_t root) {
  char* bin = nullptr;
  uint32_t length = 0;
  plist_to_bin(root, &bin, &length);
  std::string bytes(bin, length);
  plist_to_bin_free(bin);
  plist_free(root);
  return bytes;
}

std::string binaryOfXml(std::string_view xml) {
  plist_t root = nullptr;
  plist_from_xml(xml.data(), static_cast<uint32_t>(xml.size()), &root);
  EXPECT_NE(root, nullptr);
  return binaryOfNode(root);
}

std::string binaryOf(const PlistValue& value) {
  return binaryOfXml(writeXmlPlist(value));
}

std::string nestedArraysXml(int depth, std::string_view between = "") {
  std::string xml = "<plist>";
  for (int i = 0; i < depth; ++i)
    xml.append("<array>").append(between);
  for (int i = 0; i < depth; ++i)
    xml += "</array>";
  return xml + "</plist>";
}

void appendBigEndian(std::string& out, uint64_t v, int width) {
  for (int k = width - 1; k >= 0; --k)
    out += static_cast<char>((v >> (8 * k)) & 0xFF);
}

std::string arrayObject(const std::vector<uint32_t>& refs) {
  std::string bytes(1, static_cast<char>(0xAF));  // an array with its count in the next int
  bytes += static_cast<char>(0x12);
  appendBigEndian(bytes, refs.size(), 4);
  for (uint32_t r : refs)
    appendBigEndian(bytes, r, 4);
  return bytes;
}

// A binary list of encoded objects (references are 4 bytes), the first being the top one.
std::string binaryOfObjects(const std::vector<std::string>& objects) {
  std::string bytes = "bplist00";
  std::vector<uint64_t> offsets;
  for (const std::string& object : objects) {
    offsets.push_back(bytes.size());
    bytes += object;
  }
  const uint64_t table = bytes.size();
  for (uint64_t o : offsets)
    appendBigEndian(bytes, o, 8);
  bytes.append(6, '\0');
  bytes += static_cast<char>(8);  // offset size
  bytes += static_cast<char>(4);  // reference size
  appendBigEndian(bytes, objects.size(), 8);
  appendBigEndian(bytes, 0, 8);  // top object
  appendBigEndian(bytes, table, 8);
  return bytes;
}

// A binary list of arrays only: arrays[i] holds the indexes of its elements.
std::string binaryOfArrays(const std::vector<std::vector<uint32_t>>& arrays) {
  std::vector<std::string> objects;
  for (const auto& refs : arrays)
    objects.push_back(arrayObject(refs));
  return binaryOfObjects(objects);
}

// The kind of error the bytes are refused with; none when they parse.
std::optional<ErrorKind> refusal(std::string_view bytes) {
  const auto parsed = parsePlist(bytes);
  return parsed ? std::nullopt : std::optional(parsed.error().kind);
}

PlistValue everyKind() {
  PlistValue inner{PlistDict{}};
  inner.set("empty array", arrayValue({}));
  inner.set("empty dict", PlistDict{});
  PlistValue root{PlistDict{}};
  root.set("yes", true);
  root.set("no", false);
  root.set("zero", 0);
  root.set("negative", int64_t{-5});
  root.set("max", std::numeric_limits<int64_t>::max());
  root.set("min", std::numeric_limits<int64_t>::min());
  root.set("tenth", 0.1);
  root.set("huge", 1e300);
  root.set("tiny", -2.5e-10);
  root.set("text", "a <b> & \"c\" \xC3\xA9\xE2\x82\xAC");
  root.set("empty text", "");
  root.set("date", PlistDate{610024800});
  root.set("data", PlistData{std::string("\0\x01\xFFzz", 5)});
  root.set("list", arrayValue({1, "two", arrayValue({3.5})}));
  root.set("inner", inner);
  return root;
}

TEST(PlistValue, DictionaryHelpersKeepOrderAndReplaceInPlace) {
  PlistValue d{PlistDict{}};
  d.set("a", 1);
  d.set("b", 2);
  d.set("a", "one");
  const PlistDict& entries = *d.get<PlistDict>();
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[0].first, "a");
  EXPECT_EQ(entries[0].second, PlistValue("one"));
  EXPECT_TRUE(d.erase("a"));
  EXPECT_FALSE(d.erase("a"));
  EXPECT_EQ(d.find("a"), nullptr);
  ASSERT_NE(d.find("b"), nullptr);
  EXPECT_EQ(*d.find("b"), PlistValue(2));
  EXPECT_EQ(PlistValue(PlistArray{}).find("b"), nullptr);
}

// Compilers disagree about braces around one array when the array converts implicitly.
TEST(PlistValue, BracesAroundOneArrayCopyItAndNestingIsSpelledOut) {
  EXPECT_FALSE((std::is_convertible_v<PlistArray, PlistValue>));
  const PlistArray inner{"a", "b", "c"};
  EXPECT_EQ(PlistArray{inner}, inner);
  EXPECT_EQ((PlistArray{PlistArray{"a", "b", "c"}}.size()), 3u);
  const PlistValue nested = arrayValue({PlistValue(inner)});
  ASSERT_EQ(nested.get<PlistArray>()->size(), 1u);
  EXPECT_EQ(nested.get<PlistArray>()->front(), PlistValue(inner));
}

TEST(PlistValue, EveryKindSurvivesTheXmlAndTheBinaryForm) {
  const PlistValue original = everyKind();
  const std::string xml = writeXmlPlist(original);
  EXPECT_TRUE(xml.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>")) << xml;
  EXPECT_NE(xml.find("<!DOCTYPE plist"), std::string::npos);

  auto fromXml = parsePlist(xml);
  ASSERT_TRUE(fromXml) << fromXml.error().message();
  EXPECT_EQ(*fromXml, original);

  auto fromBinary = parsePlist(binaryOf(original));
  ASSERT_TRUE(fromBinary) << fromBinary.error().message();
  EXPECT_EQ(*fromBinary, original);

  // Only the binary form keeps fractions of a second.
  auto precise = parsePlist(binaryOfNode(plist_new_date(-100, 500000)));
  ASSERT_TRUE(precise);
  EXPECT_EQ(*precise, PlistValue(PlistDate{-99.5})) << writeXmlPlist(*precise);
}

TEST(PlistValue, IntegersKeepTheirSignAndUnsignedOnesBeyondTheRangeClamp) {
  const std::string xml =
      "<plist><array><integer>18446744073709551615</integer><integer>-1</integer>"
      "<integer>9223372036854775808</integer><integer>-9223372036854775808</integer>"
      "</array></plist>";
  constexpr int64_t kMax = std::numeric_limits<int64_t>::max();
  const PlistValue expected{PlistArray{kMax, -1, kMax, std::numeric_limits<int64_t>::min()}};
  for (const std::string& bytes : {xml, binaryOfXml(xml)}) {
    auto parsed = parsePlist(bytes);
    ASSERT_TRUE(parsed);
    EXPECT_EQ(*parsed, expected) << writeXmlPlist(*parsed);
  }
}

TEST(PlistValue, MalformedInputIsAParseError) {
  const std::string good = binaryOf(everyKind());
  for (const std::string& bad :
       {std::string(), std::string("garbage"),
        std::string("<plist><dict><key>a</key><string>b</dict>"),
        std::string("<plist><string>a\0b</string></plist>", 35), std::string("bplist00"),
        std::string("bplist00") + "junk", good.substr(0, good.size() - 1),
        good.substr(0, good.size() / 2), std::string(200, '\0')})
    EXPECT_EQ(refusal(bad), ErrorKind::parse) << bad;
}

TEST(PlistValue, NestingIsLimitedInBothFormsWhateverHidesTheClosingTags) {
  EXPECT_TRUE(parsePlist(nestedArraysXml(256)));
  for (const std::string& deep :
       {nestedArraysXml(257), nestedArraysXml(200000), nestedArraysXml(300, "<!-- </array> -->"),
        nestedArraysXml(300, "<![CDATA[</array>]]>"),
        nestedArraysXml(300, "<?x \"?></array>\" ?>")})
    EXPECT_EQ(refusal(deep), ErrorKind::parse);
  // What looks like an opening tag but is not one does not count.
  std::string shallow = "<plist><array>";
  for (int i = 0; i < 300; ++i)
    shallow += "<array/><!-- <array> --><string><![CDATA[<dict>]]></string>";
  EXPECT_TRUE(parsePlist(shallow + "</array></plist>"));

  std::vector<std::vector<uint32_t>> chain(100000);
  for (uint32_t i = 0; i + 1 < chain.size(); ++i)
    chain[i] = {i + 1};
  EXPECT_EQ(refusal(binaryOfArrays(chain)), ErrorKind::parse);
}

TEST(PlistValue, BinaryCyclesSharingBombsAndNulKeysAreRefused) {
  EXPECT_EQ(refusal(binaryOfArrays({{1}, {0}})), ErrorKind::parse);
  EXPECT_EQ(refusal(binaryOfArrays({{0}})), ErrorKind::parse);

  // Each array holds the next one twice: 2^60 values from 60 objects.
  std::vector<std::vector<uint32_t>> doubling(60);
  for (uint32_t i = 0; i + 1 < doubling.size(); ++i)
    doubling[i] = {i + 1, i + 1};
  EXPECT_EQ(refusal(binaryOfArrays(doubling)), ErrorKind::tooLarge);

  // libplist would abort on a key holding a NUL.
  const std::string dict("\xD1\0\0\0\1\0\0\0\2", 9);
  EXPECT_TRUE(parsePlist(binaryOfObjects({dict, "\x51k", "\x51v"})));
  EXPECT_FALSE(parsePlist(binaryOfObjects({dict, std::string("\x52k\0", 3), "\x51v"})));
  EXPECT_FALSE(parsePlist(binaryOfObjects({dict, std::string("\x61\0\0", 3), "\x51v"})));

  // Modest sharing is ordinary (writers share equal keys and values).
  auto shared = parsePlist(binaryOfArrays({{1, 1, 1}, {}}));
  ASSERT_TRUE(shared);
  EXPECT_EQ(*shared, arrayValue({arrayValue({}), arrayValue({}), arrayValue({})}));
}

TEST(PlistValue, InputOf4GiBOrMoreIsTooLarge) {
  const size_t size = (size_t{1} << 32) + 1;
  void* block =
      ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (block == MAP_FAILED) GTEST_SKIP() << "cannot reserve 4 GiB of address space";
  EXPECT_EQ(refusal(std::string_view(static_cast<const char*>(block), size)), ErrorKind::tooLarge);
  ::munmap(block, size);
}

}  // namespace
}  // namespace kavor

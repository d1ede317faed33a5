#include "engine/core/entry_decoder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "engine/core/json_scan_state.h"

namespace kavor {
namespace {

// Every element as text: "-" for a non-record, else key=value for each present key, with the
// value's kind, so that two decodings can be compared whole.
std::string dump(const EntryList& list) {
  std::string out;
  for (size_t i = 0; i < list.size(); ++i) {
    if (!list.isRecord(i)) {
      out += "-\n";
      continue;
    }
    for (int k = 0; k < kEntryKeyCount; ++k) {
      const FieldValue v = list.value(i, static_cast<EntryKey>(k));
      if (!v.present()) continue;
      out += std::string(entryKeyName(static_cast<EntryKey>(k))) + "(" +
             std::to_string(static_cast<int>(v.kind())) + ")=" + v.plainText() + " ";
    }
    out += "\n";
  }
  return out;
}

struct Feeding {
  size_t pieceSize;
  size_t chunk;  // bytes per commit
  bool worker;
};

Expected<EntryList> decodeIn(std::string_view json, Feeding f) {
  EntryDecoder decoder(EntryDecoder::Options{f.pieceSize, f.worker});
  for (size_t at = 0; at < json.size(); at += f.chunk)
    decoder.feed(json.substr(at, f.chunk));
  return decoder.finish();
}

// One entry as the tool prints it: pretty, keys in its order, "/" escaped, extra keys.
std::string toolEntry(int i) {
  const std::string n = std::to_string(i);
  return "{\n  \"traceID\" : 1844674407370955" + std::to_string(1000 + i % 600) +
         ",\n  \"eventMessage\" : \"message " + n + " with \\\"quotes\\\" and \\\\ and [{\",\n" +
         "  \"eventType\" : \"" + (i % 3 ? "logEvent" : "signpostEvent") + "\",\n" +
         "  \"source\" : null,\n  \"formatString\" : \"message %d with %{public}s\",\n" +
         "  \"activityIdentifier\" : 0,\n  \"subsystem\" : \"com.apple.xpc\",\n" +
         "  \"category\" : \"connection\",\n  \"threadID\" : " + std::to_string(4000 + i % 7) +
         ",\n  \"senderImageUUID\" : \"0A1B2C3D-4E5F-6A7B-8C9D-0E1F2A3B4C5D\",\n" +
         "  \"backtrace\" : {\n    \"frames\" : [\n      {\n" + "        \"imageOffset\" : " + n +
         ",\n        \"imageUUID\" : \"0A1B2C3D-4E5F-6A7B-8C9D-0E1F2A3B4C5D\"\n      }\n    ]\n  "
         "},\n" +
         "  \"bootUUID\" : \"\",\n  \"processImagePath\" : \"\\/usr\\/libexec\\/xpcproxy\",\n" +
         "  \"senderImagePath\" : \"\\/usr\\/lib\\/system\\/libxpc.dylib\",\n" +
         "  \"timestamp\" : \"2020-05-01 09:41:07.12345" + std::to_string(i % 10) + "+0100\",\n" +
         "  \"machTimestamp\" : " + std::to_string(i * 1000 + 7) +
         ",\n  \"messageType\" : \"Default\",\n" +
         "  \"processImageUUID\" : \"9F8E7D6C-5B4A-3928-1706-F5E4D3C2B1A0\",\n" +
         "  \"processID\" : " + n + ",\n  \"senderProgramCounter\" : 37252,\n" +
         "  \"parentActivityIdentifier\" : 0,\n  \"timezoneName\" : \"\"\n}";
}

std::string toolOutput(int count) {
  std::string out = "[";
  for (int i = 0; i < count; ++i)
    out += (i ? "," : "") + toolEntry(i);
  return out + "]\n";
}

std::string minified(std::string_view pretty) {
  std::string out;
  bool inString = false;
  for (size_t i = 0; i < pretty.size(); ++i) {
    const char c = pretty[i];
    if (inString) {
      out += c;
      if (c == '\\')
        out += pretty[++i];
      else if (c == '"')
        inString = false;
    } else if (c == '"') {
      inString = true;
      out += c;
    } else if (c != ' ' && c != '\n') {
      out += c;
    }
  }
  return out;
}

TEST(EntryDecoder, KeepsEveryValueKindExactlyAndDropsKeysNoFeatureReads) {
  const auto list = decodeEntries(R"([{
  "traceID" : 18446744073709551615,
  "threadID" : -42,
  "machTimestamp" : 1.5e3,
  "processID" : 9223372036854775807,
  "senderProgramCounter" : 576460752303423488,
  "processImagePath" : "\/usr\/libexec\/xpcproxy",
  "eventMessage" : "caf\u00e9 \"q\" \\ tab\tx",
  "source" : {"a" : [1, 2]},
  "signpostName" : true,
  "category" : null,
  "bootUUID" : "dropped",
  "backtrace" : {"frames" : [{"imageOffset" : 1}]}
}])");
  ASSERT_TRUE(list.ok()) << list.error().message();
  ASSERT_EQ(list->size(), 1u);
  EXPECT_TRUE(list->isRecord(0));
  const auto v = [&](EntryKey k) { return list->value(0, k); };
  EXPECT_EQ(v(EntryKey::traceID).kind(), ValueKind::unsignedInteger);
  EXPECT_EQ(v(EntryKey::traceID).unsignedInteger(), 18446744073709551615ull);
  EXPECT_EQ(v(EntryKey::threadID).integer(), -42);
  EXPECT_EQ(v(EntryKey::machTimestamp).kind(), ValueKind::real);
  EXPECT_EQ(v(EntryKey::machTimestamp).plainText(), "1500");
  EXPECT_EQ(v(EntryKey::processID).integer(), 9223372036854775807);
  // Just past what fits in a cell: kept outside it, still exact.
  EXPECT_EQ(v(EntryKey::senderProgramCounter).integer(), 576460752303423488);
  EXPECT_EQ(v(EntryKey::processImagePath).text(), "/usr/libexec/xpcproxy");
  EXPECT_EQ(v(EntryKey::eventMessage).text(), "caf\xC3\xA9 \"q\" \\ tab\tx");
  EXPECT_EQ(v(EntryKey::source).kind(), ValueKind::other);
  EXPECT_EQ(v(EntryKey::source).text(), R"({"a":[1,2]})");
  EXPECT_EQ(v(EntryKey::signpostName).plainText(), "true");
  EXPECT_EQ(v(EntryKey::category).kind(), ValueKind::null);
  EXPECT_FALSE(v(EntryKey::subsystem).present());
  EXPECT_LT(list->memoryBytes(), size_t{1} << 20);
}

TEST(EntryDecoder, EmptyArraysDecodeAndElementsThatAreNotObjectsHaveNoKeys) {
  for (const char* empty : {"[]", " [ ]\n", "\n\t[\r\n]  "}) {
    const auto list = decodeEntries(empty);
    ASSERT_TRUE(list.ok()) << empty;
    EXPECT_TRUE(list->empty());
  }
  const auto list =
      decodeEntries(R"([1, "x", null, [1, {"timestamp" : "t"}], {"timestamp" : "t"}, true])");
  ASSERT_TRUE(list.ok()) << list.error().message();
  ASSERT_EQ(list->size(), 6u);
  for (size_t i : {0u, 1u, 2u, 3u, 5u, 6u}) {  // 6: past the end
    EXPECT_FALSE(list->isRecord(i));
    EXPECT_FALSE(list->value(i, EntryKey::timestamp).present());
  }
  EXPECT_TRUE(list->isRecord(4));
  EXPECT_EQ(list->value(4, EntryKey::timestamp).text(), "t");
}

TEST(EntryDecoder, OutputThatIsNotOneJsonArrayFailsWithAReason) {
  // Among them a cut inside a UTF-8 sequence and bytes that are not UTF-8; last, whole entries
  // after an early failure, which are ignored.
  const std::string afterAFailure = "[{\"a\" : 1}, {\"b\" : }, " + toolOutput(50).substr(1);
  for (const std::string_view text : std::initializer_list<std::string_view>{
           "", "   \n", "{}", "null", "\"[]\"", "[1,]", "[,1]", "[1,,2]", "[1 2]", "[{]}", "[}",
           "[] x", "[][]", "[{\"a\" : tru}]", "[\"\\x\"]", "[{\"a\" : 1,}]", "[\"caf\xC3\"]",
           "[\"\xFF\xFE\"]", std::string_view(afterAFailure)}) {
    for (Feeding f : {Feeding{size_t{512} << 10, 1 << 20, true}, Feeding{8, 21, true}}) {
      const auto list = decodeIn(text, f);
      ASSERT_FALSE(list.ok()) << "accepted: " << text;
      EXPECT_EQ(list.error().kind, ErrorKind::parse) << text;
      EXPECT_FALSE(list.error().message().empty());
    }
  }
}

// A person reading a file that does not decode is told where to look.
TEST(EntryDecoder, AFailureSaysWhereInTheOutput) {
  const auto message = [](std::string_view text, Feeding f = {size_t{512} << 10, 1 << 20, true}) {
    const auto list = decodeIn(text, f);
    return list ? std::string("decoded") : list.error().message();
  };
  EXPECT_EQ(message("  \n{}"), "the output is not a JSON array at byte 4");
  EXPECT_EQ(message("[1] x"), "text follows the end of the JSON array at byte 5");
  EXPECT_EQ(message("[}"), "the JSON array is closed by \"}\" at byte 2");
  EXPECT_EQ(message("[{\"a\" : 1}"),
            "the JSON array is not closed: the output was cut short "
            "after byte 10");
  // A bad entry deep in a long output, cut into small pieces and fed in odd bites: the bytes
  // named hold it, and the entry named lies before it.
  std::string text = toolOutput(40);
  const size_t bad = text.find("message 30 ");
  text[bad] = '\xFF';
  for (Feeding f : {Feeding{2000, 777, true}, Feeding{2000, 777, false}}) {
    const std::string said = message(text, f);
    unsigned long from = 0, to = 0, after = 0;
    EXPECT_TRUE(said.starts_with("the output is not valid JSON: ")) << said;
    const size_t in = said.find(" in bytes ");
    ASSERT_NE(in, std::string::npos) << said;
    ASSERT_EQ(
        std::sscanf(said.c_str() + in, " in bytes %lu to %lu, after entry %lu", &from, &to, &after),
        3)
        << said;
    EXPECT_LE(from, bad + 1);
    EXPECT_GE(to, bad + 1);
    EXPECT_GE(after, 20u);
    EXPECT_LE(after, 30u);
  }
}

TEST(EntryDecoder, EveryTruncationOfTheOutputFails) {
  const std::string whole = toolOutput(3);
  ASSERT_TRUE(decodeEntries(whole).ok());
  // The last byte is the final line feed; without it the output is still whole.
  for (size_t n = 0; n + 1 < whole.size(); ++n) {
    for (Feeding f : {Feeding{1 << 20, 1 << 20, false}, Feeding{64, 7, true}}) {
      EXPECT_FALSE(decodeIn(std::string_view(whole).substr(0, n), f).ok()) << "cut at " << n;
    }
  }
}

TEST(EntryDecoder, PiecesAndFeedingNeverChangeTheResult) {
  const std::string pretty = toolOutput(60);
  const std::string reference = dump(*decodeEntries(pretty));
  ASSERT_EQ(decodeEntries(pretty)->size(), 60u);
  // Pretty output is cut at element ends, minified output by the byte scanner; both with pieces
  // far smaller than an entry, on the worker thread and without it, fed in odd-sized bites.
  for (const std::string& text : {pretty, minified(pretty)}) {
    for (Feeding f : {Feeding{1, 1, true}, Feeding{100, 13, true}, Feeding{700, 4096, false},
                      Feeding{1 << 20, 65, true}}) {
      const auto list = decodeIn(text, f);
      ASSERT_TRUE(list.ok()) << list.error().message();
      EXPECT_EQ(dump(*list), reference) << "piece " << f.pieceSize << " chunk " << f.chunk;
    }
  }
}

TEST(EntryDecoder, ANestedObjectThatEndsLikeAnElementIsNotCutThrough) {
  // "\n}," closes a nested object here, not an element of the array: a cut there must be
  // refused, and the decoder must still find the real element boundaries.
  std::string text = "[";
  for (int i = 0; i < 40; ++i) {
    text += std::string(i ? "," : "") + "{\"eventMessage\" : \"m" + std::to_string(i) +
            "\", \"source\" : {\"k\" : {\n},\n\"j\" : 1\n},\n\"processID\" : " + std::to_string(i) +
            "\n}";
  }
  text += "]";
  const auto reference = decodeEntries(text);
  ASSERT_TRUE(reference.ok()) << reference.error().message();
  ASSERT_EQ(reference->size(), 40u);
  for (Feeding f : {Feeding{16, 5, true}, Feeding{90, 90, false}}) {
    const auto list = decodeIn(text, f);
    ASSERT_TRUE(list.ok()) << list.error().message();
    EXPECT_EQ(dump(*list), dump(*reference));
  }
  EXPECT_EQ(reference->value(39, EntryKey::processID).integer(), 39);
}

TEST(EntryDecoder, EscapesAndBracketsInStringsAcrossBlockEdgesDoNotConfuseTheCuts) {
  // Runs of backslashes of every length, quotes and brackets inside strings, at every offset
  // against the 64-byte blocks of the scanner.
  std::string text = "[";
  std::string expected;
  for (int i = 0; i < 130; ++i) {
    const std::string run(static_cast<size_t>(i % 7), '\\');
    const std::string value = std::string(static_cast<size_t>(i), 'x') + run + "\"]}[{,";
    std::string escaped;
    for (char c : value)
      escaped += (c == '\\' || c == '"') ? std::string("\\") + c : std::string(1, c);
    text += std::string(i ? "," : "") + "{\"eventMessage\":\"" + escaped + "\"}";
  }
  text += "]";
  for (Feeding f : {Feeding{1, 3, true}, Feeding{1 << 20, 1 << 20, false}}) {
    const auto list = decodeIn(text, f);
    ASSERT_TRUE(list.ok()) << list.error().message();
    ASSERT_EQ(list->size(), 130u);
    for (size_t i = 0; i < 130; ++i) {
      const std::string run(i % 7, '\\');
      EXPECT_EQ(list->value(i, EntryKey::eventMessage).text(),
                std::string(i, 'x') + run + "\"]}[{,");
    }
  }
}

TEST(EntryDecoder, ScanKernelsAgreeOnEveryBlock) {
  if (!haveAvx2Kernel()) GTEST_SKIP() << "no AVX2 on this processor";
  std::string text = minified(toolOutput(40)) + toolOutput(40);
  text.resize(text.size() / 64 * 64);
  JsonScanState a, b;
  a.depth = b.depth = 1;
  const size_t na = scanBlocksBaseline(text.data() + 1, text.size() - 64, 1, a);
  const size_t nb = scanBlocksAvx2(text.data() + 1, text.size() - 64, 1, b);
  EXPECT_EQ(na, nb);
  EXPECT_EQ(a.depth, b.depth);
  EXPECT_EQ(a.close, b.close);
  EXPECT_EQ(a.lastElementEnd, b.lastElementEnd);
  EXPECT_EQ(a.prevInString, b.prevInString);
  EXPECT_EQ(a.prevEscaped, b.prevEscaped);
}

TEST(EntryDecoder, ManyEntriesStayCompactAndKeepTheirOrder) {
  // Enough entries to fill several cell blocks, and one text larger than a text block.
  std::string text = toolOutput(7000);
  const std::string huge(200000, 'h');
  text.insert(text.size() - 2, ",{\"eventMessage\" : \"" + huge + "\"}");
  EntryDecoder decoder;
  decoder.feed(text);
  const auto list = decoder.finish();
  ASSERT_TRUE(list.ok()) << list.error().message();
  ASSERT_EQ(list->size(), 7001u);
  EXPECT_EQ(decoder.bytesSeen(), text.size());
  EXPECT_EQ(decoder.entriesDecoded(), 7001u);
  for (int i : {0, 2047, 2048, 6143, 6144, 6999}) {
    EXPECT_EQ(list->value(static_cast<size_t>(i), EntryKey::processID).integer(), i);
    EXPECT_EQ(list->value(static_cast<size_t>(i), EntryKey::subsystem).text(), "com.apple.xpc");
  }
  EXPECT_EQ(list->value(7000, EntryKey::eventMessage).text(), huge);
  // The entries cost less than half the bytes of the JSON they came from.
  const std::string plain = toolOutput(7000);
  EXPECT_LT(decodeEntries(plain)->memoryBytes(), plain.size() / 2);
}

// Feeds `start`, then `more` again and again as an output that never ends, until the decoder
// gives up or `most` bytes have gone in; the bytes it took before it gave up, or 0.
size_t bytesUntilFailure(EntryDecoder& decoder, std::string_view start, std::string_view more,
                         size_t most) {
  decoder.feed(start);
  size_t fed = start.size();
  while (!decoder.failed() && fed < most) {
    decoder.feed(more);
    fed += more.size();
  }
  return decoder.failed() ? fed : 0;
}

constexpr std::string_view kAdvice = "; fetch a shorter time window or use a narrower predicate";

TEST(EntryDecoder, AnEndlessStreamOfEntriesStopsAtTheBudgetAndLetsGoOfItsBytes) {
  constexpr size_t budget = size_t{48} << 20;
  std::string more;
  for (int i = 0; i < 300; ++i)
    more += "," + toolEntry(i);
  for (bool worker : {true, false}) {
    EntryDecoder decoder({.storeInWorker = worker, .memoryBudget = budget});
    const size_t fed = bytesUntilFailure(decoder, "[" + toolEntry(0), more, 20 * budget);
    ASSERT_NE(fed, 0u) << "never stopped";
    // The entries take about a third of their JSON: most of the budget went to them.
    EXPECT_GT(fed, budget);
    // What follows is taken and dropped, without growing anything.
    const std::span<char> room = decoder.prepare(size_t{8} << 20);
    ASSERT_FALSE(room.empty());
    EXPECT_LT(room.size(), size_t{1} << 20);
    decoder.commit(room.size());
    const auto list = decoder.finish();
    ASSERT_FALSE(list.ok());
    EXPECT_EQ(list.error().kind, ErrorKind::tooLarge);
    EXPECT_EQ(list.error().message(),
              "the log output is too large: it needs more than the 50 MB of memory set aside "
              "for it" +
                  std::string(kAdvice));
  }
}

TEST(EntryDecoder, AnEntryIsRefusedAsSoonAsItPassesItsShareOfTheBudget) {
  // One entry may take a fifteenth of the budget, here about 1 MB: an endless string, an
  // endless nesting and an array of plain values have no place to cut, and must stop there.
  constexpr size_t budget = size_t{16} << 20;
  const std::string endless[][2] = {
      {"[" + toolEntry(0) + ",{\"eventMessage\" : \"", std::string(4096, 'x')},
      {"[", std::string(4096, '[')},
      {"[", "1,2,3,4,5,"},
  };
  for (const auto& [start, more] : endless) {
    EntryDecoder decoder({.memoryBudget = budget});
    const size_t fed = bytesUntilFailure(decoder, start, more, 8 * budget);
    ASSERT_NE(fed, 0u) << "never stopped: " << more.substr(0, 10);
    EXPECT_GT(fed, budget / 16);
    EXPECT_LT(fed, budget / 14);
    const auto list = decoder.finish();
    ASSERT_FALSE(list.ok());
    EXPECT_EQ(list.error().message(),
              "the log output is too large: an entry passes 1.1 MB, the most one entry may take "
              "of the 17 MB of memory set aside" +
                  std::string(kAdvice));
  }
}

}  // namespace
}  // namespace kavor

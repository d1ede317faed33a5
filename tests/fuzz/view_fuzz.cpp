// What the result view shows of untrusted output under untrusted choices: a style, a filter name
// and text, then the log tool's JSON, one per line. The styled text must hold its coloured runs in
// order inside it, each piece ending in its space, with a notice exactly when the filter left
// entries undecided; CSV must start with its header; and an ASCII filter must find the same in an
// ASCII message whether it takes the byte path or ICU's.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "engine/core/caseless_search.h"
#include "engine/core/entry_decoder.h"
#include "engine/query/csv_conversion.h"
#include "engine/query/entry_styler.h"

namespace {

std::string_view takeLine(std::string_view& rest) {
  const size_t end = rest.find('\n');
  const std::string_view line = rest.substr(0, end);
  rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
  return line;
}

bool isAscii(std::string_view text) {
  for (const char c : text)
    if (static_cast<uint8_t>(c) >= 0x80) return false;
  return true;
}

void checkStyled(const kavor::StyledText& styled) {
  size_t at = 0;
  for (const kavor::ColourRun& run : styled.runs) {
    if (run.begin < at || run.length == 0 || run.begin + run.length > styled.text.size())
      std::abort();
    if (styled.text[run.begin + run.length - 1] != ' ') std::abort();
    at = run.begin + run.length;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  const uint8_t switches = data[0];
  std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::string_view style = takeLine(rest);
  const std::string_view filterName = takeLine(rest);
  const std::string_view filterText = takeLine(rest);

  const auto list = kavor::decodeEntries(rest);
  if (!list) return 0;
  const int osVersion = 12 + switches % 6;
  const kavor::ShowSwitches show{(switches & 8) != 0, (switches & 16) != 0, (switches & 32) != 0};

  kavor::StylerInput input;
  input.entries = &*list;
  input.styleText = style;
  input.filter = (switches & 64)
                     ? kavor::FilterChoice::row(std::string(filterName), std::string(filterText))
                     : kavor::FilterChoice::none();
  input.show = show;
  input.limitEntries = (switches & 128) != 0;
  input.theLogCap = 3;
  input.osVersion = osVersion;
  input.locale = "en_US";
  const kavor::StyledEntries styled = kavor::styleEntries(input);
  checkStyled(styled.text);
  // A notice exactly when the filter left something undecided.
  if (styled.notice.has_value() != (styled.filterStopped || styled.undecidedMessages > 0))
    std::abort();

  const auto csv = kavor::convertToCsv(*list, osVersion, show);
  if (csv.has_value() == list->empty() || (csv && !csv->starts_with("datestamp,"))) std::abort();

  // A character no ASCII needle holds sends the message down ICU's path without changing what
  // an ASCII needle can match in it.
  if (isAscii(filterText)) {
    kavor::CaselessText needle(filterText, "en_US");
    for (size_t i = 0; i < list->size(); ++i) {
      const kavor::FieldValue message = list->value(i, kavor::EntryKey::eventMessage);
      if (message.kind() != kavor::ValueKind::text || !isAscii(message.text())) continue;
      const std::string widened = std::string(message.text()) + "\u4e00";
      if (needle.foundIn(message.text()) != needle.foundIn(widened)) std::abort();
    }
  }
  return 0;
}

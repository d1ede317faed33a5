#include "tools/log/entry_printer.h"

#include <charconv>
#include <cstdio>
#include <ctime>
#include <string_view>

namespace kavor::standin {

namespace {

void appendNumber(std::string& out, uint64_t v) {
  char b[24];
  out.append(b, std::to_chars(b, b + sizeof b, v).ptr);
}

void appendNumber(std::string& out, int64_t v) {
  char b[24];
  out.append(b, std::to_chars(b, b + sizeof b, v).ptr);
}

// A JSON string as the tool writes it: "/" escaped too, other text beyond ASCII as it is.
void appendJsonString(std::string& out, std::string_view text) {
  out += '"';
  for (const char c : text) {
    switch (c) {
      case '"':
        out += "\\\"";
        break;
      case '\\':
        out += "\\\\";
        break;
      case '/':
        out += "\\/";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\t':
        out += "\\t";
        break;
      case '\r':
        out += "\\r";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20) {
          char b[8];
          std::snprintf(b, sizeof b, "\\u%04x", static_cast<unsigned>(c));
          out += b;
        } else {
          out += c;
        }
    }
  }
  out += '"';
}

void key(std::string& out, std::string_view name) {
  out += "  \"";
  out += name;
  out += "\" : ";
}

// One "key" : value line with its comma; the last line of an entry is written without.
void textField(std::string& out, std::string_view name, std::string_view value) {
  key(out, name);
  appendJsonString(out, value);
  out += ",\n";
}

template <class Number>
void numberField(std::string& out, std::string_view name, Number value) {
  key(out, name);
  appendNumber(out, value);
  out += ",\n";
}

std::string_view fileName(std::string_view path) {
  const size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

}  // namespace

void EntryPrinter::appendTimestamp(std::string& out, int64_t timeMicros) {
  int64_t second = timeMicros / 1000000;
  int64_t micros = timeMicros % 1000000;
  if (micros < 0) {
    micros += 1000000;
    --second;
  }
  if (second != cachedSecond_) {
    const time_t t = static_cast<time_t>(second);
    struct tm local {};
    localtime_r(&t, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    cachedText_ = text;
    const long offset = local.tm_gmtoff / 60;
    const long a = offset < 0 ? -offset : offset;
    std::snprintf(text, sizeof text, "%c%02ld%02ld", offset < 0 ? '-' : '+', a / 60, a % 60);
    cachedZone_ = text;
    cachedSecond_ = second;
  }
  out += cachedText_;
  char frac[8];
  std::snprintf(frac, sizeof frac, ".%06lld", static_cast<long long>(micros));
  out += frac;
  out += cachedZone_;
}

void EntryPrinter::begin(std::string& out) {
  if (style_ == PrintStyle::plain)
    out +=
        "Timestamp                       Thread     Type        Activity             PID    TTL  "
        "\n";
}

void EntryPrinter::add(std::string& out, const LogEntry& entry) {
  if (style_ == PrintStyle::json)
    addJson(out, entry);
  else
    addPlain(out, entry);
  ++count_;
}

void EntryPrinter::end(std::string& out) {
  if (style_ == PrintStyle::json) out += count_ == 0 ? "[]\n" : "\n}]\n";
}

void EntryPrinter::addJson(std::string& out, const LogEntry& e) {
  out += count_ == 0 ? "[{\n" : "\n},{\n";
  const bool signpost = e.eventType == "signpostEvent";
  // The tool's keys come in an order of its own that differs between entries; three orders
  // chosen by the entry stand for that.
  const auto texts = [&] {
    textField(out, "eventMessage", e.eventMessage);
    textField(out, "eventType", e.eventType);
    key(out, "source");
    out += "null,\n";
    textField(out, "formatString", e.formatString);
    textField(out, "subsystem", e.subsystem);
    textField(out, "category", e.category);
  };
  const auto numbers = [&] {
    numberField(out, "traceID", e.traceID);
    numberField(out, "activityIdentifier", e.activityIdentifier);
    numberField(out, "threadID", e.threadID);
    numberField(out, "machTimestamp", e.machTimestamp);
    numberField(out, "processUniqueID", e.processUniqueID);
    numberField(out, "userID", e.userID);
    numberField(out, "processID", e.processID);
    numberField(out, "senderProgramCounter", e.senderProgramCounter);
    numberField(out, "parentActivityIdentifier", e.parentActivityIdentifier);
    if (e.eventType == "activityCreateEvent") {
      numberField(out, "creatorActivityID", e.creatorActivityID);
    }
  };
  const auto images = [&] {
    textField(out, "senderImageUUID", e.senderImageUUID);
    if (e.hasBacktrace) {
      key(out, "backtrace");
      out += "{\n    \"frames\" : [\n      {\n        \"imageOffset\" : ";
      appendNumber(out, e.senderProgramCounter);
      out += ",\n        \"imageUUID\" : ";
      appendJsonString(out, e.senderImageUUID);
      out += "\n      }\n    ]\n  },\n";
    }
    textField(out, "bootUUID", e.bootUUID);
    textField(out, "processImagePath", e.processImagePath);
    textField(out, "senderImagePath", e.senderImagePath);
    textField(out, "processImageUUID", e.processImageUUID);
  };
  switch (e.traceID % 3) {
    case 0:
      texts(), numbers(), images();
      break;
    case 1:
      numbers(), images(), texts();
      break;
    default:
      images(), texts(), numbers();
  }
  if (signpost) {
    numberField(out, "signpostID", e.signpostID);
    textField(out, "signpostName", e.signpostName);
    textField(out, "signpostType", e.signpostType);
    textField(out, "signpostScope", e.signpostScope);
  }
  key(out, "timestamp");
  out += '"';
  appendTimestamp(out, e.timeMicros);
  out += "\",\n";
  textField(out, "messageType", e.messageType);
  key(out, "timezoneName");
  appendJsonString(out, e.timezoneName);
}

void EntryPrinter::addPlain(std::string& out, const LogEntry& e) {
  appendTimestamp(out, e.timeMicros);
  char fixed[96];
  std::snprintf(fixed, sizeof fixed, " 0x%-8llx %-11s 0x%-18llx %-6lld 0    ",
                static_cast<unsigned long long>(e.threadID),
                e.messageType.empty() ? e.eventType.c_str() : e.messageType.c_str(),
                static_cast<unsigned long long>(e.activityIdentifier),
                static_cast<long long>(e.processID));
  out += fixed;
  out += fileName(e.processImagePath);
  out += ": (";
  out += fileName(e.senderImagePath);
  out += ") ";
  if (!e.subsystem.empty()) {
    out += '[';
    out += e.subsystem;
    out += ':';
    out += e.category;
    out += "] ";
  }
  out += e.eventMessage;
  out += '\n';
}

}  // namespace kavor::standin

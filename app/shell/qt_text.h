#pragma once
// The engine's UTF-8 texts as Qt strings.

#include <QString>
#include <string_view>

namespace kavor::app {

inline QString qstring(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace kavor::app

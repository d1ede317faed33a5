#include "engine/document/document_errors.h"

#include "engine/document/document_saving.h"

namespace kavor {

namespace {

std::string quotedName(std::string_view prefix, std::string_view name, std::string_view suffix) {
  std::string text(prefix);
  text += "\u201C";
  text += name;
  text += "\u201D";
  text += suffix;
  return text;
}

}  // namespace

std::string documentErrorDescription() {
  std::string text = "The operation couldn\u2019t be completed. (OSStatus error ";
  text += std::to_string(kDocumentErrorCode);
  text += ".)";
  return text;
}

std::string openFailureMessage(std::string_view fileName) {
  return quotedName("The document ", fileName, " could not be opened.");
}

std::string saveFailureMessage(std::string_view displayName) {
  return quotedName("The document ", displayName, " could not be saved.");
}

}  // namespace kavor

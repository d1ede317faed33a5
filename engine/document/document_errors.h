#pragma once
// What the document machinery shows when a document cannot be opened or saved: the platform's
// own alert texts around the one error documents fail with.

#include <string>
#include <string_view>

namespace kavor {

// The error's description: "The operation couldn’t be completed. (OSStatus error -4.)".
std::string documentErrorDescription();
// "The document “NAME” could not be opened."
std::string openFailureMessage(std::string_view fileName);
// "The document “NAME” could not be saved."
std::string saveFailureMessage(std::string_view displayName);

}  // namespace kavor

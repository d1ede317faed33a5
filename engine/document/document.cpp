#include "engine/document/document.h"

namespace kavor {

Document::Document(const Clock& clock)
    : startDate(clock.now()),
      endDate(startDate),
      processingQueue(std::make_unique<OperationQueue>(kMaxConcurrentOperations)) {}

}  // namespace kavor

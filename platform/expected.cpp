#include "platform/expected.h"

#include <cstring>

namespace kavor {

std::string Error::message() const {
  if (sysErrno == 0) return context;
  return context + ": " + reason();
}

std::string Error::reason() const {
  return sysErrno != 0 ? std::strerror(sysErrno) : context;
}

Error ioError(std::string context, int err) {
  return Error{ErrorKind::io, std::move(context), err};
}

}  // namespace kavor

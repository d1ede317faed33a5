#pragma once
// A value or the reason it could not be had. Failures travel as values, never as exceptions.

#include <cassert>
#include <string>
#include <utility>
#include <variant>

namespace kavor {

enum class ErrorKind {
  io,            // the operating system refused a read, write, rename or launch
  parse,         // bytes that should hold a known format do not
  notFound,      // a file, key or entry that should exist does not
  invalidInput,  // a caller-supplied value is out of range or malformed
  tooLarge,      // input beyond what the component can hold
};

struct Error {
  ErrorKind kind = ErrorKind::io;
  std::string context;  // what was being done, with the path or value involved
  int sysErrno = 0;     // errno when the operating system reported the failure

  // One line for a person: the context, then the system's own words when there are any.
  std::string message() const;
  // The system's own words alone, or the context when the system said nothing.
  std::string reason() const;
};

Error ioError(std::string context, int err);

template <class T>
class [[nodiscard]] Expected {
 public:
  Expected(T value) : v_(std::move(value)) {}      // NOLINT: implicit by design, like std::expected
  Expected(Error error) : v_(std::move(error)) {}  // NOLINT

  bool ok() const { return v_.index() == 0; }
  explicit operator bool() const { return ok(); }

  T& value() & {
    assert(ok());
    return std::get<0>(v_);
  }
  const T& value() const& {
    assert(ok());
    return std::get<0>(v_);
  }
  T&& value() && {
    assert(ok());
    return std::get<0>(std::move(v_));
  }
  T& operator*() & { return value(); }
  const T& operator*() const& { return value(); }
  T* operator->() { return &value(); }
  const T* operator->() const { return &value(); }

  const Error& error() const {
    assert(!ok());
    return std::get<1>(v_);
  }

 private:
  std::variant<T, Error> v_;
};

struct Ok {};
using Status = Expected<Ok>;
inline Status okStatus() {
  return Ok{};
}

}  // namespace kavor

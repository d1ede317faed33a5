#pragma once
// Named notifications with any number of observers, delivered synchronously on the posting thread.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kavor {

class NotificationCenter {
 public:
  using Callback = std::function<void()>;

  // Ends the observation when destroyed; may outlive the center.
  class Observation {
   public:
    Observation() = default;
    Observation(Observation&&) noexcept = default;
    Observation& operator=(Observation&&) noexcept;
    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;
    ~Observation();
    void reset();

   private:
    friend class NotificationCenter;
    struct Link;
    std::shared_ptr<Link> link_;
  };

  NotificationCenter();
  ~NotificationCenter();
  NotificationCenter(const NotificationCenter&) = delete;
  NotificationCenter& operator=(const NotificationCenter&) = delete;

  [[nodiscard]] Observation observe(std::string name, Callback callback);
  // Calls every observer of the name, in the order they subscribed.
  void post(std::string_view name);

 private:
  struct Entry {
    uint64_t id;
    std::string name;
    Callback callback;
  };
  struct Shared {
    std::vector<Entry> entries;
    uint64_t nextId = 1;
  };
  std::shared_ptr<Shared> shared_;
};

}  // namespace kavor

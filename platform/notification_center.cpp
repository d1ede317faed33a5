#include "platform/notification_center.h"

#include <algorithm>

namespace kavor {

struct NotificationCenter::Observation::Link {
  std::weak_ptr<NotificationCenter::Shared> center;
  uint64_t id = 0;
};

NotificationCenter::Observation& NotificationCenter::Observation::operator=(
    Observation&& other) noexcept {
  if (this != &other) {
    reset();
    link_ = std::move(other.link_);
  }
  return *this;
}

NotificationCenter::Observation::~Observation() {
  reset();
}

void NotificationCenter::Observation::reset() {
  if (!link_) return;
  if (auto shared = link_->center.lock()) {
    auto& entries = shared->entries;
    const uint64_t id = link_->id;
    entries.erase(
        std::remove_if(entries.begin(), entries.end(), [id](const Entry& e) { return e.id == id; }),
        entries.end());
  }
  link_.reset();
}

NotificationCenter::NotificationCenter() : shared_(std::make_shared<Shared>()) {}
NotificationCenter::~NotificationCenter() = default;

NotificationCenter::Observation NotificationCenter::observe(std::string name, Callback callback) {
  Observation obs;
  obs.link_ = std::make_shared<Observation::Link>();
  obs.link_->center = shared_;
  obs.link_->id = shared_->nextId++;
  shared_->entries.push_back(Entry{obs.link_->id, std::move(name), std::move(callback)});
  return obs;
}

void NotificationCenter::post(std::string_view name) {
  // Observers may subscribe or unsubscribe while being called: work on a snapshot of the ids.
  std::vector<uint64_t> ids;
  for (const Entry& e : shared_->entries)
    if (e.name == name) ids.push_back(e.id);
  for (uint64_t id : ids) {
    auto& entries = shared_->entries;
    auto it =
        std::find_if(entries.begin(), entries.end(), [id](const Entry& e) { return e.id == id; });
    if (it == entries.end()) continue;
    Callback cb = it->callback;  // a copy: the entry may go away during the call
    cb();
  }
}

}  // namespace kavor

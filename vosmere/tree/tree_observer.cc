// The observers of all trees, found by the root.
#include "vosmere/tree/tree_observer.h"

#include <atomic>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

#include "vosmere/tree/tree_link.h"

namespace vosmere {
namespace {

struct Observers {
  std::shared_mutex mutex;
  std::unordered_map<const RNode*, TreeObserver*> byRoot;
  std::atomic<std::size_t> count{0};
};

Observers& TheObservers() {
  static Observers observers;
  return observers;
}

}  // namespace

TreeObserver::~TreeObserver() = default;

void TreeObserver::StopObserving() {
  Observers& observers = TheObservers();
  const std::lock_guard lock(observers.mutex);
  std::erase_if(observers.byRoot, [this](const auto& entry) { return entry.second == this; });
  observers.count = observers.byRoot.size();
}

TreeObserver* TreeObserver::Of(const RNode* link) {
  Observers& observers = TheObservers();
  if (!link || observers.count.load(std::memory_order_relaxed) == 0) return nullptr;
  while (link->parent) link = link->parent;
  const std::shared_lock lock(observers.mutex);
  const auto found = observers.byRoot.find(link);
  return found == observers.byRoot.end() ? nullptr : found->second;
}

void TreeObserver::Observe(const RNode* root, TreeObserver* observer) {
  Observers& observers = TheObservers();
  const std::lock_guard lock(observers.mutex);
  if (observer)
    observers.byRoot[root] = observer;
  else
    observers.byRoot.erase(root);
  observers.count = observers.byRoot.size();
}

}  // namespace vosmere

#pragma once

#include <memory>
#include <mutex>
#include <typeindex>
#include <utility>
#include <vector>

namespace quorvane {

class Platform;

/// The one place where the shared instances live. Each is made on its first use, once even under
/// concurrent first uses, and they end together, the newest first.
class SharedInstances {
  public:
    /// The shared instance of T, made with its default constructor on the first call.
    template <class T>
    static T& get() {
        return *share<T>();
    }

    /// The same, for an owner beside this place.
    template <class T>
    static std::shared_ptr<T> share() {
        SharedInstances& all = instances();
        const std::lock_guard lock(all.mutex_);
        if (const std::shared_ptr<void> found = all.find(typeid(T))) {
            return std::static_pointer_cast<T>(found);
        }
        auto made = std::make_shared<T>();
        all.made_.emplace_back(typeid(T), made);
        return made;
    }

    /// Ends all shared instances and exchanges the platform that they stood on. With no platform
    /// this is the end of the program or of a test.
    static void reset(std::unique_ptr<Platform> newPlatform);

  private:
    static SharedInstances& instances();
    [[nodiscard]] std::shared_ptr<void> find(std::type_index type) const;

    std::recursive_mutex mutex_; // a constructor may fetch further instances
    std::vector<std::pair<std::type_index, std::shared_ptr<void>>> made_;
};

} // namespace quorvane

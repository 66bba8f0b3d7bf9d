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
///
/// Any thread may ask, also while they end. An instance whose turn has not come is given as ever.
/// One whose destructor runs is still given, because that may wait for a thread which asks for the
/// very object. In the place of one that is gone a new one is made; it ends when the destructor
/// that runs has returned, before the older ones.
///
/// So what a thread is given while a destructor waits for it outlives that wait. What was made
/// later than the instance that waits for a thread may end before: such a thread takes it by
/// `share`, and then may be the one that ends it.
class SharedInstances {
  public:
    /// The shared instance of T, made with its default constructor on the first call.
    template <class T>
    static T& get() {
        SharedInstances& all = instances();
        const std::lock_guard lock(all.mutex_);
        return *static_cast<T*>(all.entry<T>().object);
    }

    /// The same, for an owner beside this place. Null while the instance's destructor runs.
    template <class T>
    static std::shared_ptr<T> share() {
        SharedInstances& all = instances();
        const std::lock_guard lock(all.mutex_);
        return std::static_pointer_cast<T>(all.entry<T>().owner);
    }

    /// Ends all shared instances and exchanges the platform that they stood on. With no platform
    /// this is the end of the program or of a test. What is asked for while the old platform ends
    /// stands on the new one. Main thread only, and not while an instance is made or ends.
    static void reset(std::unique_ptr<Platform> newPlatform);

  private:
    struct Entry {
        std::type_index type;
        void* object;
        std::shared_ptr<void> owner; ///< null while the instance ends
    };

    static SharedInstances& instances();

    /// The entry of T, with a new instance if there was none. Good until the next one is made;
    /// under the lock.
    template <class T>
    const Entry& entry() {
        if (const Entry* found = find(typeid(T))) {
            return *found;
        }
        auto made = std::make_shared<T>();
        T* const object = made.get();
        return made_.emplace_back(Entry{typeid(T), object, std::move(made)});
    }

    [[nodiscard]] const Entry* find(std::type_index type) const;

    std::recursive_mutex mutex_; // a constructor may fetch further instances
    std::vector<Entry> made_;    // oldest first
};

} // namespace quorvane

#pragma once

#include "core/ObservableObject.h"

#include <memory>
#include <vector>

namespace quorvane {

class DefaultsController;
class UserDefaults;

/// The one door to the user's settings. The class operations choose the store, write single values
/// and bind properties to keys in both directions; one object is one such binding. Main thread
/// only.
class QuorvanePrefs : public QObject {
    Q_OBJECT

  public:
    /// The settings domain, and at the same time the application's bundle identifier.
    static QString domainName();

    /// The program's own store inside the application, a store opened by name in any other host.
    /// The same object every time.
    static UserDefaults& userDefaults();

    static DefaultsController& defaultsController();

    /// Writes into the application's domain, whichever program asks, and makes the value visible to
    /// other processes. Returns whether that worked.
    static bool setNumberValue(const QVariant& value, const QString& key);
    static bool setStringValue(const QVariant& value, const QString& key);

    using Observers = std::vector<std::unique_ptr<QuorvanePrefs>>;

    /// Every binding that was made; they are never undone.
    static const Observers& observers();

    /// Binds the property `key` of `object` to the setting `defaultsKey`: the property takes the
    /// setting's value now and follows it, and every other set of the property is written back.
    static void bindKey(const QString& key, ObservableObject& object, const QString& defaultsKey);

    explicit QuorvanePrefs(QString prefsKey);

    [[nodiscard]] const QString& prefKey() const { return prefKey_; }

    /// Writes the new value of the observed property to `prefKey`.
    void observeValue(const ObservableObject::Change& change) const;

  private:
    const QString prefKey_;
};

} // namespace quorvane

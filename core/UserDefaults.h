#pragma once

#include "platform/Settings.h"

#include <QMetaType>
#include <QUrl>
#include <QVariantMap>

namespace quorvane {

/// The user's settings as the program reads them: what is stored in a domain, and under it the
/// registered defaults, which are never stored. Main thread only.
///
/// A stored value that does not convert to what the reader wants (a hand-edited file) counts as
/// missing and is reported in the log; it stays stored until somebody writes the key.
class UserDefaults {
  public:
    explicit UserDefaults(SettingsDomain& domain) : domain_(domain) {}

    /// Adds defaults for keys that nobody has stored; a later registration of a key wins.
    void registerDefaults(const QVariantMap& defaults);

    /// What is stored, else what is registered, else an invalid variant.
    [[nodiscard]] QVariant objectForKey(const QString& key) const;

    /// The same as a value of `type`; the type's zero value (false, 0, empty) when there is none.
    [[nodiscard]] QVariant valueForKey(const QString& key, QMetaType type) const;

    [[nodiscard]] bool boolForKey(const QString& key) const;
    [[nodiscard]] int integerForKey(const QString& key) const;
    [[nodiscard]] QString stringForKey(const QString& key) const;
    [[nodiscard]] QUrl URLForKey(const QString& key) const;

    /// Whether the key was ever written, by this process or another one; registered defaults do not
    /// count.
    [[nodiscard]] bool isStored(const QString& key) const;

    /// Each stores at once and returns whether that worked.
    bool setObject(const QVariant& value, const QString& key);
    bool setBool(bool value, const QString& key);
    bool setInteger(int value, const QString& key);
    bool setURL(const QUrl& value, const QString& key);

    [[nodiscard]] SettingsDomain& domain() const { return domain_; }

  private:
    SettingsDomain& domain_;
    QVariantMap registered_;
};

} // namespace quorvane

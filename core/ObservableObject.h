#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>
#include <utility>

namespace quorvane {

/// An object whose properties can be read and set by name and whose observers hear of **every**
/// set, also of one to the same value. A class declares its properties with `Q_PROPERTY(...)` and
/// lets every setter go through `setObserved`.
///
/// Main thread only. Observers run in the order in which they were added, before the setter
/// returns.
class ObservableObject : public QObject {
    Q_OBJECT

  public:
    struct Change {
        QString key;
        QVariant oldValue;
        QVariant newValue;
    };

    using Observer = std::function<void(const Change&)>;

    using QObject::QObject;

    /// Calls `observer` after each set of the property `key`, until `context` is gone.
    QMetaObject::Connection observe(const QString& key, const QObject* context, Observer observer);

    /// The property's value, or an invalid variant when there is no such property.
    [[nodiscard]] QVariant valueForKey(const QString& key) const;

    /// Sets the property through its setter. Returns false when there is none of that name or the
    /// value does not convert to its type.
    bool setValueForKey(const QVariant& value, const QString& key);

    /// Bracket a change that is not made through `setObserved`. A class that reacts to its own
    /// properties overrides `didChangeValueForKey` and passes the call on; observers hear of the
    /// change when it reaches this class.
    virtual void willChangeValueForKey(const QString& key);
    virtual void didChangeValueForKey(const QString& key);

  Q_SIGNALS:
    void valueChanged(const quorvane::ObservableObject::Change& change);

  protected:
    template <class T>
    void setObserved(T& field, T value, const QString& key) {
        willChangeValueForKey(key);
        field = std::move(value);
        didChangeValueForKey(key);
    }

  private:
    QHash<QString, QVariant> oldValues_; // of the changes that are under way
};

} // namespace quorvane

#pragma once

#include <QHash>
#include <QList>
#include <QMetaObject>
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
/// returns. A property that nobody observes is not read when it is set: a list that grows costs
/// nothing but its new element. While somebody observes it the whole list is copied at each change,
/// because the old one has to outlive the change.
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
    /// What `observe` listens to. Sent for properties only that are observed through it.
    void valueChanged(const quorvane::ObservableObject::Change& change, QPrivateSignal);

  protected:
    template <class T>
    void setObserved(T& field, T value, const QString& key) {
        willChangeValueForKey(key);
        field = std::move(value);
        didChangeValueForKey(key);
    }

  private:
    [[nodiscard]] bool isObserved(const QString& key);

    QHash<QString, QList<QMetaObject::Connection>> observers_; // also some that are gone
    QHash<QString, QVariant> oldValues_;                       // of the changes that are under way
};

} // namespace quorvane

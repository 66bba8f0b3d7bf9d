#include "core/ObservableObject.h"

namespace quorvane {

QMetaObject::Connection ObservableObject::observe(const QString& key, const QObject* context,
                                                  Observer observer) {
    QMetaObject::Connection made =
        connect(this, &ObservableObject::valueChanged, context,
                [key, observer = std::move(observer)](const Change& change) {
                    if (change.key == key) {
                        observer(change);
                    }
                });
    observers_[key].append(made);
    return made;
}

QVariant ObservableObject::valueForKey(const QString& key) const {
    return property(key.toLatin1().constData());
}

bool ObservableObject::setValueForKey(const QVariant& value, const QString& key) {
    return setProperty(key.toLatin1().constData(), value);
}

bool ObservableObject::isObserved(const QString& key) {
    const auto observers = observers_.find(key);
    if (observers == observers_.end()) {
        return false;
    }
    observers->removeIf([](const QMetaObject::Connection& each) { return !each; });
    return !observers->isEmpty();
}

void ObservableObject::willChangeValueForKey(const QString& key) {
    if (isObserved(key)) {
        oldValues_.insert(key, valueForKey(key));
    }
}

void ObservableObject::didChangeValueForKey(const QString& key) {
    const QVariant oldValue = oldValues_.take(key);
    if (isObserved(key)) {
        Q_EMIT valueChanged({key, oldValue, valueForKey(key)}, QPrivateSignal());
    }
}

} // namespace quorvane

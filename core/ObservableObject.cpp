#include "core/ObservableObject.h"

namespace quorvane {

QMetaObject::Connection ObservableObject::observe(const QString& key, const QObject* context,
                                                  Observer observer) {
    return connect(this, &ObservableObject::valueChanged, context,
                   [key, observer = std::move(observer)](const Change& change) {
                       if (change.key == key) {
                           observer(change);
                       }
                   });
}

QVariant ObservableObject::valueForKey(const QString& key) const {
    return property(key.toLatin1().constData());
}

bool ObservableObject::setValueForKey(const QVariant& value, const QString& key) {
    return setProperty(key.toLatin1().constData(), value);
}

void ObservableObject::willChangeValueForKey(const QString& key) {
    oldValues_.insert(key, valueForKey(key));
}

void ObservableObject::didChangeValueForKey(const QString& key) {
    const QVariant oldValue = oldValues_.take(key);
    Q_EMIT valueChanged({key, oldValue, valueForKey(key)});
}

} // namespace quorvane

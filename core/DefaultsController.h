#pragma once

#include "core/ObservableObject.h"
#include "core/UserDefaults.h"

#include <QPointer>

#include <vector>

namespace quorvane {

/// Keeps properties of objects at the values of their settings: sets each when it is bound, and
/// again whenever the stored value changes. Main thread only.
class DefaultsController : public QObject {
    Q_OBJECT

  public:
    explicit DefaultsController(UserDefaults& defaults);

    /// Sets `property` of `object` to the value of `key` now and at every change of it, for as long
    /// as the object lives.
    void bind(ObservableObject& object, const QString& property, const QString& key);

    /// Whether the property is being set at this moment because its setting has this value, so that
    /// the observer of the property need not store it again.
    [[nodiscard]] bool isApplying(const QString& key, const QVariant& value) const;

  private:
    struct Binding {
        QPointer<ObservableObject> object;
        QString property;
        QString key;
    };

    void defaultsChanged(const QStringList& keys);
    void apply(const Binding& binding, const QVariant& value);
    [[nodiscard]] QVariant settingFor(const Binding& binding) const;

    struct Applied {
        QString key;
        QVariant value;
    };

    UserDefaults& defaults_;
    std::vector<Binding> bindings_;
    std::vector<Applied> applying_; // innermost last: setting one property may change another
};

} // namespace quorvane

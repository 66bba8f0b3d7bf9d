#include "core/DefaultsController.h"

#include <QMetaProperty>

#include <algorithm>

namespace quorvane {

DefaultsController::DefaultsController(UserDefaults& defaults) : defaults_(defaults) {
    connect(&defaults.domain(), &SettingsDomain::changed, this,
            &DefaultsController::defaultsChanged);
}

void DefaultsController::bind(ObservableObject& object, const QString& property,
                              const QString& key) {
    const Binding binding{&object, property, key};
    bindings_.push_back(binding);
    apply(binding, settingFor(binding));
}

bool DefaultsController::isApplying(const QString& key, const QVariant& value) const {
    return std::any_of(applying_.begin(), applying_.end(),
                       [&](const Applied& each) { return each.key == key && each.value == value; });
}

void DefaultsController::defaultsChanged(const QStringList& keys) {
    // By index: applying a value may lead to further bindings.
    for (std::size_t i = 0; i < bindings_.size(); ++i) {
        const Binding binding = bindings_[i];
        if (!binding.object || !keys.contains(binding.key)) {
            continue;
        }
        // The change may be the very one that this property's observer has just stored.
        const QVariant value = settingFor(binding);
        if (binding.object->valueForKey(binding.property) != value) {
            apply(binding, value);
        }
    }
}

void DefaultsController::apply(const Binding& binding, const QVariant& value) {
    applying_.push_back({binding.key, value});
    binding.object->setValueForKey(value, binding.property);
    applying_.pop_back();
}

QVariant DefaultsController::settingFor(const Binding& binding) const {
    const QMetaObject* meta = binding.object->metaObject();
    const int index = meta->indexOfProperty(binding.property.toLatin1().constData());
    Q_ASSERT_X(index >= 0, "DefaultsController", qPrintable(binding.property));
    return defaults_.valueForKey(binding.key, meta->property(index).metaType());
}

} // namespace quorvane

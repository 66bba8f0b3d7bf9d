#include "widgets/LayoutTranslator.h"

#include "core/Localized.h"

#include <QMetaProperty>

namespace quorvane {

namespace {

// Other strings of an object, such as its name or its style sheet, are not for the user's eyes.
constexpr const char* textProperties[] = {
    "accessibleDescription",
    "accessibleName",
    "placeholderText",
    "statusTip",
    "text",
    "title",
    "toolTip",
    "whatsThis",
    "windowTitle",
};

void translateObject(QObject& object) {
    for (const char* name : textProperties) {
        if (object.metaObject()->indexOfProperty(name) < 0) {
            continue;
        }
        // An empty key would bring the translations' own description.
        const QString english = object.property(name).toString();
        if (!english.isEmpty()) {
            object.setProperty(name, localized(english.toUtf8().constData()));
        }
    }
}

} // namespace

void LayoutTranslator::translate(QWidget& window) {
    translateObject(window);
    const auto objects = window.findChildren<QObject*>();
    for (QObject* object : objects) {
        translateObject(*object);
    }
}

} // namespace quorvane

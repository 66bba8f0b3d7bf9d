#include "core/EventCenter.h"

#include "core/SharedInstances.h"

namespace quorvane {

EventCenter& EventCenter::defaultCenter() {
    return SharedInstances::get<EventCenter>();
}

void EventCenter::post(const QString& name, QObject* sender) {
    Q_EMIT posted(name, sender);
}

} // namespace quorvane

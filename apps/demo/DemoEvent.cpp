#include "apps/demo/DemoEvent.h"

namespace quorvane {

QString kindName(DemoEvent::Kind kind) {
    switch (kind) {
    case DemoEvent::Kind::Settings:
        return QStringLiteral("settings");
    case DemoEvent::Kind::Hardware:
        return QStringLiteral("laptop");
    case DemoEvent::Kind::User:
        return QStringLiteral("user");
    case DemoEvent::Kind::Question:
        return QStringLiteral("question");
    case DemoEvent::Kind::Notice:
        return QStringLiteral("notice");
    case DemoEvent::Kind::Mode:
        return QStringLiteral("mode");
    case DemoEvent::Kind::Screen:
        return QStringLiteral("screen");
    case DemoEvent::Kind::Stored:
        return QStringLiteral("stored");
    case DemoEvent::Kind::Log:
        break;
    }
    return QStringLiteral("log");
}

} // namespace quorvane

#include "ui/StatusIcon.h"

#include "platform/PowerSources.h"

#include <algorithm>
#include <array>

namespace quorvane {

namespace {

constexpr double menuFontSize = 12.0;
constexpr QChar thinSpace(0x2009);
constexpr QChar ellipsis(0x2026);

// There is no gauge of 70: what lies between 51 and 70 percent shows as 60.
constexpr std::array<int, 9> gaugeSteps{100, 90, 80, 60, 50, 40, 30, 20, 10};
constexpr int stepWidth = 10;

bool isDisplay(const StatusIcon::State& state, MenuBarDisplay display) {
    return state.displayMode == static_cast<std::int32_t>(display);
}

QString imageNameOf(const StatusIcon::State& state) {
    const QString word = state.modeIsOn ? QStringLiteral("on") : QStringLiteral("off");
    if (state.showsBattery && state.estimate == timeRemainingUnlimited) {
        return state.percent == 100 ? QStringLiteral("battery-charged")
                                    : QStringLiteral("battery-charging");
    }
    if (state.showsBattery) {
        const auto* const step = std::find_if(gaugeSteps.begin(), gaugeSteps.end(), [&](int each) {
            return each - stepWidth < state.percent;
        });
        if (step != gaugeSteps.end()) {
            return QStringLiteral("battery-%1-%2").arg(word).arg(*step);
        }
    }
    return QStringLiteral("icon-infinity-") + word;
}

QString timeText(std::int64_t seconds) {
    constexpr std::int64_t unknown = -1;
    if (seconds == unknown) {
        return QString(thinSpace) + ellipsis;
    }
    if (seconds < 0) {
        return {};
    }
    const std::int64_t minutes = seconds / 60;
    return QStringLiteral("%1%2:%3")
        .arg(thinSpace)
        .arg(minutes / 60)
        .arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

// The spaces keep the text apart from the image, which stands on the right of the percentage and on
// the left of the time.
QString textOf(const StatusIcon::State& state) {
    if (isDisplay(state, MenuBarDisplay::Percent)) {
        return QStringLiteral("%1% ").arg(state.percent);
    }
    return isDisplay(state, MenuBarDisplay::TimeRemaining) ? timeText(state.seconds) : QString();
}

AttributedString titleOf(const StatusIcon::State& state) {
    const QString text = textOf(state);
    return text.isEmpty() ? AttributedString{} : AttributedString{text, menuFontSize, {}, 0};
}

} // namespace

StatusIcon::StatusIcon(const State& state)
    : imageName(imageNameOf(state)), title(titleOf(state)),
      imagePosition(isDisplay(state, MenuBarDisplay::TimeRemaining) ? ImagePosition::Left
                                                                    : ImagePosition::Right) {}

} // namespace quorvane

#include "apps/demo/Summary.h"

#include "apps/demo/EnergyModel.h"

#include <cmath>

namespace quorvane {

namespace {

bool isKeyEvent(DemoEvent::Kind kind) {
    return kind != DemoEvent::Kind::Stored && kind != DemoEvent::Kind::Log;
}

QString modelWords() {
    return QStringLiteral("The laptop was simulated: a battery of %1 Wh, %2 W for the board and up "
                          "to %3 W for the screen.")
        .arg(EnergyModel::batteryWattHours)
        .arg(EnergyModel::boardWatts)
        .arg(EnergyModel::screenWatts);
}

} // namespace

QString eventLine(const DemoEvent& event) {
    return QStringLiteral("%1  %2 %  %3: %4")
        .arg(event.time.toString(QStringLiteral("HH:mm")))
        .arg(event.percent, 3)
        .arg(kindName(event.kind), event.text);
}

QStringList keyEvents(const QList<DemoEvent>& events) {
    QStringList lines;
    for (const DemoEvent& event : events) {
        if (isKeyEvent(event.kind)) {
            lines.append(eventLine(event));
        }
    }
    return lines;
}

QStringList closingWords(const DayResult& result) {
    QStringList lines;
    if (!result.modeWasOn) {
        lines.append(QStringLiteral("Low Power Mode was never on, so nothing was saved."));
    } else if (!result.lastNotice.isEmpty()) {
        lines.append(QStringLiteral("In the end Quorvane said: \"%1\"").arg(result.lastNotice));
    }
    if (result.discharge) {
        QString battery = QStringLiteral("The battery stood at %1 % when the laptop was plugged in "
                                         "at %2")
                              .arg(std::lround(result.discharge->percent))
                              .arg(result.discharge->end.toString(QStringLiteral("HH:mm")));
        if (result.modeWasOn) {
            battery += QStringLiteral("; on a screen that nobody dims it would have been %1 %")
                           .arg(std::lround(result.discharge->percentUndimmed));
        }
        lines.append(battery + u'.');
    }
    lines.append(modelWords());
    return lines;
}

} // namespace quorvane

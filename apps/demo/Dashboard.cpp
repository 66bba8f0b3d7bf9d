#include "apps/demo/Dashboard.h"

#include "apps/demo/LaptopPicture.h"
#include "apps/demo/Summary.h"
#include "apps/demo/TerminalTraits.h"
#include "platform/PowerSources.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace quorvane {

namespace {

constexpr Rgb quiet{140, 144, 152};
constexpr Rgb headerBackground{32, 56, 92};
constexpr Rgb headerText{240, 244, 250};
constexpr Rgb modeOn{64, 200, 110};
constexpr Rgb attention{236, 196, 84};
constexpr int margin = 1;

Rgb toRgb(const BatteryColor& color) {
    const auto component = [](double value) {
        return static_cast<std::uint8_t>(std::lround(value * 255.0));
    };
    return {component(color.red), component(color.green), component(color.blue)};
}

Style colored(Rgb color, bool bold = false) {
    return {color, {}, bold, false};
}

QString timeLeft(const DayState& state) {
    if (state.secondsLeft == timeRemainingUnlimited) {
        return QStringLiteral("plugged in");
    }
    const long minutes = std::lround(state.secondsLeft / 60.0);
    return QStringLiteral("%1 h %2 min").arg(minutes / 60).arg(minutes % 60);
}

Style eventStyle(DemoEvent::Kind kind) {
    switch (kind) {
    case DemoEvent::Kind::Question:
    case DemoEvent::Kind::Notice:
        return colored(attention);
    case DemoEvent::Kind::Mode:
        return colored(modeOn);
    case DemoEvent::Kind::Log:
    case DemoEvent::Kind::Stored:
        return colored(quiet);
    default:
        return {};
    }
}

// How the rows and columns are shared out.
struct Layout {
    QRect laptop;
    QRect facts;
    int batteryRow;
    QRect events;
};

Layout layoutFor(QSize size) {
    constexpr int factsNarrow = 22;
    constexpr int factsWide = 27;
    constexpr int otherRows = 5;        // header, battery and its mark, footer, a blank one
    constexpr double highestLid = 0.34; // of its width, in characters
    constexpr double flattestLid = 0.24;
    const bool roomy = size.width() >= 76;
    const int gap = roomy ? 3 : 2; // between the laptop and the facts
    const int factsWidth = roomy ? factsWide : factsNarrow;
    const int top = size.height() >= 24 ? 2 : 1;
    const int fewestEvents = (size.height() + 1) / 5;

    const int widest = size.width() - factsWidth - gap - 2 * margin;
    const int rows =
        size.height() - otherRows - fewestEvents - (top - 1) - LaptopPicture::keyboardHeight;
    const int lid = std::min(rows, static_cast<int>(widest * highestLid));
    int width = std::min(widest, static_cast<int>(lid / flattestLid));
    width -= width % 2 == 0 ? 1 : 0; // the keys then end where they begin
    const int height = lid + LaptopPicture::keyboardHeight;

    Layout layout{};
    layout.laptop = {margin, top, width, height};
    layout.facts = {margin + width + gap, top + 1, factsWidth, height};
    layout.batteryRow = top + height + 1;
    const int eventsTop = layout.batteryRow + 2;
    layout.events = {margin, eventsTop, size.width() - 2 * margin, size.height() - 1 - eventsTop};
    return layout;
}

} // namespace

Canvas Dashboard::draw(const DayState& state, const QList<DemoEvent>& events, QSize size) const {
    Canvas canvas(size);
    if (size.width() < TerminalTraits::smallest.width() ||
        size.height() < TerminalTraits::smallest.height()) {
        canvas.text(0, 0, QStringLiteral("The window is too small."));
        return canvas;
    }
    const Layout layout = layoutFor(size);
    drawHeader(canvas, state);
    LaptopPicture(style_).draw(canvas, state, layout.laptop, layout.facts.right());
    drawFacts(canvas, state, layout.facts);
    drawBattery(canvas, state, layout.batteryRow);
    drawEvents(canvas, events, layout.events);
    drawFooter(canvas);
    return canvas;
}

void Dashboard::drawHeader(Canvas& canvas, const DayState& state) const {
    const int width = canvas.size().width();
    const Style style{headerText, headerBackground, true, style_.shading == Shading::Characters};
    canvas.fill({0, 0, width, 1}, u' ', style);
    canvas.text(margin, 0, QStringLiteral("Quorvane on a simulated laptop"), style);
    const QString clock = QLocale::c().toString(state.time, QStringLiteral("dddd HH:mm"));
    canvas.text(width - margin - static_cast<int>(clock.size()), 0, clock, style);
}

void Dashboard::drawFacts(Canvas& canvas, const DayState& state, const QRect& area) const {
    const Glyphs& glyphs = style_.glyphs();
    const QString mode = state.modeOn ? QChar(glyphs.on) + QStringLiteral(" on")
                                      : QChar(glyphs.off) + QStringLiteral(" off");

    struct Fact {
        QString name;
        QString value;
        Style style;
    };

    const QList<Fact> facts{
        {QStringLiteral("Low Power Mode"), mode,
         state.modeOn ? colored(modeOn, true) : colored(quiet)},
        {QStringLiteral("Minutes saved"), QString::number(state.minutesSaved, 'f', 1), {}},
        {QStringLiteral("Screen"),
         QStringLiteral("%1 %").arg(std::lround(state.brightness * 100.0)),
         {}},
        {QStringLiteral("Power draw"), QStringLiteral("%1 W").arg(state.watts, 0, 'f', 1), {}},
        {QStringLiteral("Time left"), timeLeft(state), {}},
        {QStringLiteral("Launch mode"), launchModeName(state.plan.mode), colored(quiet)},
        {QStringLiteral("Threshold"), QStringLiteral("%1 %").arg(state.plan.threshold),
         colored(quiet)},
    };
    int row = area.top();
    for (const Fact& fact : facts) {
        canvas.text(area.left(), row, fact.name, colored(quiet));
        canvas.text(area.right() + 1 - static_cast<int>(fact.value.size()), row, fact.value,
                    fact.style);
        ++row;
    }
}

void Dashboard::drawBattery(Canvas& canvas, const DayState& state, int row) const {
    const Glyphs& glyphs = style_.glyphs();
    const QString power =
        state.pluggedIn ? QStringLiteral("plugged in") : QStringLiteral("on battery");
    const QString percent = QStringLiteral("%1 %").arg(state.percent, 3);
    constexpr int barLeft = margin + 9;
    const int textLeft = canvas.size().width() - margin - 17;
    const int length = textLeft - 1 - barLeft;
    const int filled = (length * state.percent + 50) / 100;

    canvas.text(margin, row, QStringLiteral("Battery"), colored(quiet));
    const Style bar = colored(toRgb(state.percentColor));
    canvas.fill({barLeft, row, filled, 1}, glyphs.full, bar);
    canvas.fill({barLeft + filled, row, length - filled, 1}, glyphs.empty, colored(quiet));
    canvas.text(textLeft, row, percent, {{}, {}, true, false});
    canvas.text(textLeft + 7, row, power, colored(quiet));

    const int mark = barLeft + (length - 1) * state.plan.threshold / 100;
    canvas.put(mark, row + 1, glyphs.mark, colored(attention));
    const QString name = QStringLiteral("threshold");
    const int nameLeft =
        mark + 2 + name.size() < textLeft ? mark + 2 : mark - 1 - static_cast<int>(name.size());
    canvas.text(nameLeft, row + 1, name, colored(quiet));
}

void Dashboard::drawEvents(Canvas& canvas, const QList<DemoEvent>& events,
                           const QRect& area) const {
    const qsizetype count = std::min<qsizetype>(events.size(), area.height());
    int row = area.top();
    for (const DemoEvent& event : events.last(count)) {
        canvas.text(area.left(), row, style_.shown(eventLine(event), area.width()),
                    eventStyle(event.kind));
        ++row;
    }
}

void Dashboard::drawFooter(Canvas& canvas) const {
    const int row = canvas.size().height() - 1;
    const QString key = QStringLiteral("q quits");
    canvas.text(margin, row, QStringLiteral("Simulated hardware and user, real program."),
                colored(quiet));
    canvas.text(canvas.size().width() - margin - static_cast<int>(key.size()), row, key,
                colored(quiet));
}

} // namespace quorvane

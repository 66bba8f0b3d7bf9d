#include "apps/demo/MovingView.h"

#include "apps/demo/AnsiPainter.h"
#include "apps/demo/Dashboard.h"
#include "apps/demo/Day.h"
#include "apps/demo/NotificationBubble.h"
#include "apps/demo/Summary.h"
#include "apps/demo/Terminal.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace quorvane {

namespace {

// Simulated seconds that pass in one of the person who watches.
constexpr double usualPace = 960.0;
constexpr double readingPace = 1.6; // a notice stays for 5 simulated seconds

// Of the person who watches, at the first and the last picture.
constexpr Seconds openingPause{1.5};
constexpr Seconds closingPause{2.5};

constexpr int pictureMilliseconds = 40;

Shading shadingFor(ColorDepth depth) {
    if (depth == ColorDepth::Full) {
        return Shading::Colors;
    }
    return depth == ColorDepth::Palette ? Shading::Greys : Shading::Characters;
}

QStringList broken(const QStringList& lines, int width) {
    QStringList result;
    for (const QString& line : lines) {
        result += wrapped(line, width);
    }
    return result;
}

class MovingView {
  public:
    MovingView(const DemoOptions& options, const TerminalTraits& traits)
        : speed_(options.speed), charset_(traits.charset),
          dashboard_({traits.charset, shadingFor(traits.depth)}),
          painter_(traits.charset, traits.depth),
          day_(options.plan, [this](const DemoEvent& event) { events_.append(event); }) {}

    int show() {
        Terminal::Happening end = Terminal::Happening::Nothing;
        int signal = 0;
        {
            Terminal terminal;
            end = play(terminal);
            signal = terminal.signal();
        }
        write(day_.isOver()
                  ? keyEvents(events_) + QStringList{QString()} + closingWords(day_.result())
                  : QStringList{QStringLiteral("The demonstration was ended early, at %1.")
                                    .arg(day_.state().time.toString(QStringLiteral("HH:mm")))});
        return end == Terminal::Happening::Terminated ? 128 + signal : 0;
    }

  private:
    // Until the day is over or the user has had enough; gives which.
    Terminal::Happening play(Terminal& terminal) {
        day_.begin();
        Terminal::Happening happening = pause(terminal, openingPause);
        clock_.start();
        while (happening == Terminal::Happening::Nothing && !day_.isOver()) {
            letTimePass(std::chrono::milliseconds(clock_.restart()));
            happening = picture(terminal, pictureMilliseconds);
        }
        return happening == Terminal::Happening::Nothing ? pause(terminal, closingPause)
                                                         : happening;
    }

    // Shows one picture for a while. Gives nothing, or what ends the demonstration.
    Terminal::Happening picture(Terminal& terminal, int milliseconds) {
        terminal.write(
            painter_.paint(dashboard_.draw(day_.state(), events_, terminalSize(STDOUT_FILENO))));
        const Terminal::Happening happening = terminal.wait(milliseconds);
        if (happening == Terminal::Happening::Resized) {
            painter_.forget();
            return Terminal::Happening::Nothing;
        }
        return happening;
    }

    Terminal::Happening pause(Terminal& terminal, Seconds length) {
        const Seconds shortened = length / speed_;
        QElapsedTimer passed;
        passed.start();
        Terminal::Happening happening = Terminal::Happening::Nothing;
        while (happening == Terminal::Happening::Nothing &&
               std::chrono::milliseconds(passed.elapsed()) < shortened) {
            happening = picture(terminal, pictureMilliseconds);
        }
        return happening;
    }

    void letTimePass(Seconds watched) {
        constexpr Seconds step{1.0};
        // After a stay in the background the day goes on where it was.
        const Seconds counted = std::min(watched, Seconds(0.2)) * speed_;
        const bool reading = day_.showsNotification();
        Seconds left = counted * (reading ? readingPace : usualPace);
        for (; left > Seconds::zero() && day_.showsNotification() == reading; left -= step) {
            day_.advance(std::min(left, step));
        }
    }

    void write(const QStringList& lines) const {
        const int width =
            std::max(terminalSize(STDOUT_FILENO).width(), TerminalTraits::smallest.width());
        for (const QString& line : broken(lines, width)) {
            std::fputs(encoded(line + u'\n', charset_).constData(), stdout);
        }
        std::fflush(stdout);
    }

    double speed_;
    Charset charset_;
    Dashboard dashboard_;
    AnsiPainter painter_;
    QList<DemoEvent> events_;
    Day day_;
    QElapsedTimer clock_;
};

} // namespace

int showMovingDay(const DemoOptions& options, const TerminalTraits& traits) {
    return MovingView(options, traits).show();
}

} // namespace quorvane

#include "apps/demo/DemoOptions.h"
#include "apps/demo/MovingView.h"
#include "apps/demo/PlainView.h"

#include <QCoreApplication>

#include <cstdio>
#include <exception>

namespace {

using namespace quorvane;

constexpr int usageError = 2;

int print(const DemoOptions::Message& message, Charset charset) {
    std::fputs(encoded(message.text, charset).constData(), message.isError ? stderr : stdout);
    return message.isError ? usageError : 0;
}

int run(int argc, char** argv) {
    const TerminalTraits traits = TerminalTraits::ofStandardOutput();
    const QCoreApplication application(argc, argv);
    const auto parsed =
        DemoOptions::parse(QCoreApplication::arguments(), QStringLiteral(QUORVANE_VERSION));
    if (const auto* message = std::get_if<DemoOptions::Message>(&parsed)) {
        return print(*message, traits.charset);
    }
    const auto& options = std::get<DemoOptions>(parsed);
    return options.plain || !traits.canMove ? showPlainDay(options.plan, traits.charset, stdout)
                                            : showMovingDay(options, traits);
}

} // namespace

int main(int argc, char** argv) {
    // Caught so that everything is let go of on the way here, the terminal above all.
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quorvane-demo: %s\n", error.what());
        return 1;
    }
}

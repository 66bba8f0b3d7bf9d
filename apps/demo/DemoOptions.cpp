#include "apps/demo/DemoOptions.h"

#include <QCommandLineParser>

#include <optional>

namespace quorvane {

namespace {

constexpr double slowest = 0.1;
constexpr double fastest = 100.0;

const QCommandLineOption& modeOption() {
    static const QCommandLineOption option(
        QStringLiteral("mode"),
        QStringLiteral("What happens at the threshold: automatic (Low Power Mode starts), ask (it "
                       "is offered) or manual (nothing). Default: ask."),
        QStringLiteral("mode"), QStringLiteral("ask"));
    return option;
}

const QCommandLineOption& thresholdOption() {
    static const QCommandLineOption option(
        QStringLiteral("threshold"),
        QStringLiteral("Charge in percent at which that happens, 0 to 100. Default: 70."),
        QStringLiteral("percent"), QStringLiteral("70"));
    return option;
}

const QCommandLineOption& answerOption() {
    static const QCommandLineOption option(
        QStringLiteral("answer"),
        QStringLiteral("What the user clicks when asked: start or not-now. Default: start."),
        QStringLiteral("button"), QStringLiteral("start"));
    return option;
}

const QCommandLineOption& speedOption() {
    static const QCommandLineOption option(
        QStringLiteral("speed"),
        QStringLiteral("How many times as fast the picture moves, 0.1 to 100. Default: 1, which "
                       "takes about 40 seconds."),
        QStringLiteral("factor"), QStringLiteral("1"));
    return option;
}

const QCommandLineOption& plainOption() {
    static const QCommandLineOption option(
        QStringLiteral("plain"),
        QStringLiteral("Writes one line per event, all at once, in place of a moving picture. This "
                       "is the way too where the output is not a terminal, or too small a one."));
    return option;
}

// Finds the values of the options one after the other and keeps the first complaint.
class Values {
  public:
    explicit Values(const QCommandLineParser& parser) : parser_(parser) {}

    LaunchMode mode() {
        const QString value = parser_.value(modeOption());
        for (const LaunchMode each : {LaunchMode::Automatic, LaunchMode::Ask, LaunchMode::Manual}) {
            if (value == launchModeName(each)) {
                return each;
            }
        }
        complain(modeOption(), value, QStringLiteral("automatic, ask and manual"));
        return {};
    }

    DayPlan::Answer answer() {
        const QString value = parser_.value(answerOption());
        if (value == QLatin1String("not-now")) {
            return DayPlan::Answer::NotNow;
        }
        if (value != QLatin1String("start")) {
            complain(answerOption(), value, QStringLiteral("start and not-now"));
        }
        return DayPlan::Answer::Start;
    }

    int threshold() {
        const QString value = parser_.value(thresholdOption());
        bool isNumber = false;
        const int percent = value.toInt(&isNumber);
        if (!isNumber || percent < 0 || percent > 100) {
            complain(thresholdOption(), value, QStringLiteral("whole numbers from 0 to 100"));
        }
        return percent;
    }

    double speed() {
        const QString value = parser_.value(speedOption());
        bool isNumber = false;
        const double factor = value.toDouble(&isNumber);
        if (!isNumber || !(factor >= slowest && factor <= fastest)) {
            complain(speedOption(), value, QStringLiteral("numbers from 0.1 to 100"));
        }
        return factor;
    }

    [[nodiscard]] const QString& complaint() const { return complaint_; }

  private:
    void complain(const QCommandLineOption& option, const QString& value, const QString& allowed) {
        if (complaint_.isEmpty()) {
            complaint_ = QStringLiteral("--%1 cannot be \"%2\"; allowed are %3.")
                             .arg(option.names().first(), value, allowed);
        }
    }

    const QCommandLineParser& parser_;
    QString complaint_;
};

DemoOptions::Message error(const QString& complaint) {
    return {QStringLiteral("quorvane-demo: %1\nSee quorvane-demo --help.\n").arg(complaint), true};
}

} // namespace

std::variant<DemoOptions, DemoOptions::Message> DemoOptions::parse(const QStringList& arguments,
                                                                   const QString& version) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Shows a day of a laptop with Quorvane on it, in under a minute. The laptop "
                       "and its user are simulated; the program on it is the real one."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Shows this help."));
    parser.addOption(help);
    const QCommandLineOption versionOption({QStringLiteral("v"), QStringLiteral("version")},
                                           QStringLiteral("Shows the version."));
    parser.addOption(versionOption);
    parser.addOptions(
        {modeOption(), thresholdOption(), answerOption(), speedOption(), plainOption()});

    if (!parser.parse(arguments)) {
        return error(parser.errorText());
    }
    if (parser.isSet(help)) {
        return Message{parser.helpText(), false};
    }
    if (parser.isSet(versionOption)) {
        return Message{QStringLiteral("quorvane-demo %1\n").arg(version), false};
    }
    if (!parser.positionalArguments().isEmpty()) {
        return error(QStringLiteral("\"%1\" is no option; only options are allowed.")
                         .arg(parser.positionalArguments().constFirst()));
    }
    Values values(parser);
    const DemoOptions options{{values.mode(), values.threshold(), values.answer()},
                              values.speed(),
                              parser.isSet(plainOption())};
    if (!values.complaint().isEmpty()) {
        return error(values.complaint());
    }
    return options;
}

} // namespace quorvane

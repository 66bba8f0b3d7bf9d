// Another program that uses the same settings, as the settings tests see it.
//
//   settings_hammer write FOLDER KEY FIRST LAST  stores the numbers one after the other, and prints
//                                                each once it is stored
//   settings_hammer set FOLDER KEY VALUE         stores one value
//   settings_hammer watch FOLDER                 prints the keys that change, until it is killed
//
// Works on the domain "test". Ends with 1 when a setting could not be stored, with 2 when one that
// was stored is gone. Log lines go to standard error.

#include "platform/Log.h"
#include "platform/linux/settings/LinuxSettings.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

using quorvane::SettingsDomain;

class StandardErrorLog final : public quorvane::LogSink {
  public:
    void write(const QString& line) override { std::fprintf(stderr, "%s\n", qPrintable(line)); }
};

void print(const QString& line) {
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

int writeNumbers(SettingsDomain& domain, const QString& key, int first, int last) {
    for (int number = first; number <= last; ++number) {
        // Nobody else writes this key, so what is there is what was stored last.
        if (number > first && domain.value(key).toInt() != number - 1) {
            std::fprintf(stderr, "%s: %d was stored, but is %s\n", qPrintable(key), number - 1,
                         qPrintable(domain.value(key).toString()));
            return 2;
        }
        if (!domain.write(key, number)) {
            return 1;
        }
        print(QString::number(number));
    }
    return 0;
}

int watch(SettingsDomain& domain) {
    QObject::connect(&domain, &SettingsDomain::changed,
                     [](const QStringList& keys) { print(keys.join(QLatin1Char(' '))); });
    print(QStringLiteral("ready"));
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        return 64;
    }
    StandardErrorLog log;
    quorvane::LinuxSettings settings(log, arguments[2]);
    SettingsDomain& domain = settings.domain(QStringLiteral("test"));
    if (arguments[1] == QLatin1String("write") && arguments.size() == 6) {
        return writeNumbers(domain, arguments[3], arguments[4].toInt(), arguments[5].toInt());
    }
    if (arguments[1] == QLatin1String("set") && arguments.size() == 5) {
        return domain.write(arguments[3], arguments[4]) ? 0 : 1;
    }
    if (arguments[1] == QLatin1String("watch")) {
        return watch(domain);
    }
    return 64;
}

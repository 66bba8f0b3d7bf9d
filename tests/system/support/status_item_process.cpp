// Shows a status item with a menu on the session bus until its input ends.
//   status_item_process IMAGE-FOLDER
// Takes lines "image NAME", "text TEXT", "description TEXT" and "check on|off"; prints lines
// "ready", "clicked NAME", "opening", and "done" after each command.

#include "platform/linux/common/LinuxLog.h"
#include "platform/linux/statusitem/LinuxStatusBar.h"
#include "tests/integration/statusitem/SampleMenu.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <sys/prctl.h>
#include <unistd.h>

using namespace quorvane;

namespace {

void print(const QString& line) {
    std::puts(qPrintable(line));
    std::fflush(stdout);
}

class Commands {
  public:
    Commands(StatusItem& item, test::SampleMenu& menu) : item_(item), menu_(menu) {}

    void readInput() {
        char buffer[4096];
        const ssize_t size = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (size <= 0) {
            QCoreApplication::quit();
            return;
        }
        input_.append(buffer, static_cast<qsizetype>(size));
        for (qsizetype end = input_.indexOf('\n'); end >= 0; end = input_.indexOf('\n')) {
            obey(QString::fromUtf8(input_.left(end)));
            input_.remove(0, end + 1);
        }
    }

  private:
    void obey(const QString& line) {
        const QString command = line.section(QLatin1Char(' '), 0, 0);
        const QString value = line.section(QLatin1Char(' '), 1);
        if (command == QLatin1String("image")) {
            item_.setImage(value);
        } else if (command == QLatin1String("text")) {
            item_.setAttributedTitle({value, {}, {}, 0});
        } else if (command == QLatin1String("description")) {
            menu_.description().setTitle(value);
        } else if (command == QLatin1String("check")) {
            menu_.start().setState(value == QLatin1String("on"));
        } else {
            print(QLatin1String("unknown command: ") + line);
        }
        print(QStringLiteral("done"));
    }

    StatusItem& item_;
    test::SampleMenu& menu_;
    QByteArray input_;
};

} // namespace

int main(int argc, char** argv) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const QCoreApplication application(argc, argv);
    LinuxLog log;
    test::SampleMenu menu([](const QString& name) { print(QLatin1String("clicked ") + name); });
    QObject::connect(&menu.root(), &Menu::willOpen, [] { print(QStringLiteral("opening")); });
    LinuxStatusBar bar(QDBusConnection::sessionBus(), log, QCoreApplication::arguments().at(1));
    const auto item = bar.statusItemWithLength(StatusItem::variableLength);
    item->setMenu(menu.root());
    item->setImage(QStringLiteral("icon-infinity-off"));
    item->setTemplate(true);

    Commands commands(*item, menu);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&commands] { commands.readInput(); });
    print(QStringLiteral("ready"));
    return QCoreApplication::exec();
}

#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

namespace quorvane {

/// Lets the user's other programs ask this one to quit the proper way, over the session bus. Main
/// thread only.
class QuitService : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.TarnwickStudios.quorvane")

  public:
    explicit QuitService(const QDBusConnection& sessionBus);

    [[nodiscard]] static QString path();
    [[nodiscard]] static QString interfaceName();

  public Q_SLOTS:

    /// Returns at once; the program ends a little later.
    Q_SCRIPTABLE void Quit() { Q_EMIT quitRequested(); }

  Q_SIGNALS:
    void quitRequested();
};

} // namespace quorvane

#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QStringList>

namespace quorvane {

/// Who holds what, by the callers' unique names on the bus. A caller that leaves the bus, however
/// that comes, holds nothing any more: what a crashed program has switched is put back. Main thread
/// only.
class Holders final : public QObject {
    Q_OBJECT

  public:
    /// How many callers may hold one thing.
    static constexpr int limit = 64;

    explicit Holders(const QDBusConnection& bus);

    /// False when there are too many, or the caller has left already.
    [[nodiscard]] bool add(const QString& thing, const QString& caller);
    void remove(const QString& thing, const QString& caller);

    [[nodiscard]] bool isHeld(const QString& thing) const {
        return !holders_.value(thing).isEmpty();
    }

    [[nodiscard]] bool isEmpty() const { return holders_.isEmpty(); }

    /// The last caller that held it has left the bus.
  Q_SIGNALS:
    void abandoned(const QString& thing);

  private:
    void callerLeft(const QString& caller);
    [[nodiscard]] bool holdsAnything(const QString& caller) const;

    QDBusConnection bus_;
    QDBusServiceWatcher watcher_;
    QHash<QString, QSet<QString>> holders_; ///< no empty set in it
};

} // namespace quorvane

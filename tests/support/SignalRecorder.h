#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

namespace quorvane::test {

/// Keeps the signals of an object on a bus, in their order. Main thread only.
class SignalRecorder final : public QObject {
    Q_OBJECT

  public:
    /// Those of an interface that `sender` sends from `path`.
    SignalRecorder(QDBusConnection bus, const QString& sender, const QString& path,
                   const QString& interface);

    [[nodiscard]] const QList<QDBusMessage>& received() const { return received_; }

    [[nodiscard]] QStringList names() const;

    void clear() { received_.clear(); }

  private:
    Q_SLOT void receive(const QDBusMessage& signal) { received_.append(signal); }

    QList<QDBusMessage> received_;
};

} // namespace quorvane::test

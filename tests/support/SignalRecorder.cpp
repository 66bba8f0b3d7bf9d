#include "tests/support/SignalRecorder.h"

namespace quorvane::test {

SignalRecorder::SignalRecorder(QDBusConnection bus, const QString& sender, const QString& path,
                               const QString& interface) {
    bus.connect(sender, path, interface, QString(), this, SLOT(receive(QDBusMessage)));
}

QStringList SignalRecorder::names() const {
    QStringList names;
    for (const QDBusMessage& signal : received_) {
        names.append(signal.member());
    }
    return names;
}

} // namespace quorvane::test

#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace quorvane {

/// The stored values of one settings domain, shared by every process that opens it. Holds only
/// what was written; registered defaults are a layer above (`UserDefaults`). Main thread only.
class SettingsDomain : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// The stored value, or an invalid variant when the key was never written. A store that keeps
    /// text gives text ("true", "70"); `UserDefaults` converts.
    [[nodiscard]] virtual QVariant value(const QString& key) const = 0;

    /// Where the values are kept, in the user's words: the path of a file.
    [[nodiscard]] virtual QString location() const = 0;

    /// Stores the value and makes it visible to other processes before returning. Other keys keep
    /// whatever any process wrote to them. Returns false, after a log line that says why, when it
    /// could not be stored; what was stored before is then still there.
    virtual bool write(const QString& key, const QVariant& value) = 0;

    /// Picks up what other processes have written so far. Returns false, after a log line, when
    /// the store cannot be read.
    virtual bool synchronize() = 0;

  Q_SIGNALS:
    /// The stored values of these keys have changed, by this process or by another one.
    void changed(const QStringList& keys);
};

/// Opens settings domains by name, for example "com.TarnwickStudios.quorvane".
class Settings {
  public:
    virtual ~Settings() = default;

    /// The same object for the same name every time; lives as long as the port.
    virtual SettingsDomain& domain(const QString& name) = 0;
};

} // namespace quorvane

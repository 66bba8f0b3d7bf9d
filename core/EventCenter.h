#pragma once

#include <QObject>
#include <QString>

namespace quorvane {

/// Named events inside the process. Observers run before `post` returns, in the order in which they
/// connected. Main thread only.
class EventCenter : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// The one that everybody posts to.
    static EventCenter& defaultCenter();

    void post(const QString& name, QObject* sender);

  Q_SIGNALS:
    void posted(const QString& name, QObject* sender);
};

} // namespace quorvane

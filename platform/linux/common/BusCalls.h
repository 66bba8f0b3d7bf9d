#pragma once

#include "platform/linux/common/BusAnswer.h"
#include "platform/linux/common/BusCall.h"

#include <QDBusConnection>
#include <QList>
#include <QObject>
#include <QPointer>

#include <functional>

class QDBusPendingCallWatcher;

namespace quorvane {

/// What one owner asks over D-Bus and has no answer to yet: the one way in this program to ask.
/// A member of whoever asks, whose answers end with it. Of a bus that is not there the answer comes
/// too, like any other: later, as `Absent`.
///
/// Belongs to the thread of its QObject, like everything here but `askAndWait`; moves with a
/// parent.
class BusCalls final : public QObject {
    Q_OBJECT

  public:
    using Answered = std::function<void(const BusAnswer& answer)>;

    explicit BusCalls(const QDBusConnection& bus, QObject* parent = nullptr);
    ~BusCalls() override;
    BusCalls(const BusCalls&) = delete;
    BusCalls& operator=(const BusCalls&) = delete;

    /// `answered` runs once, from the event loop or from one of the functions below, never before
    /// this returns; not at all after `forget` or the destructor. It may destroy this.
    void ask(const BusCall& call, Answered answered);

    /// How many have no answer yet. The one whose `answered` runs has.
    [[nodiscard]] int open() const { return static_cast<int>(open_.size()); }

    /// Runs the `answered` of every answer that has arrived, without an event loop. Does not wait.
    void deliverAnswers();

    /// Blocks until each open call has its answer, also those that the answers give rise to.
    /// Bounded by the calls' limits: not to be used with one that has none.
    void waitForAnswers();

    /// None of the open calls is heard of any more.
    void forget();

    /// Blocks until the answer is there, at most as long as the call's limit. Any thread.
    static BusAnswer askAndWait(const QDBusConnection& bus, const BusCall& call);

  private:
    QDBusConnection bus_;
    QList<QPointer<QDBusPendingCallWatcher>> open_;
};

} // namespace quorvane

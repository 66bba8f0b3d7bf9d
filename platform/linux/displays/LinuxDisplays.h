#pragma once

#include "platform/Displays.h"
#include "platform/Log.h"
#include "platform/linux/common/PuttingBackJournal.h"
#include "platform/linux/displays/BacklightWriter.h"
#include "platform/linux/displays/Backlights.h"
#include "platform/linux/displays/DisplayChange.h"

#include <QDBusConnection>
#include <QHash>
#include <QString>

#include <chrono>

namespace quorvane {

/// Every backlight device of the kernel is a display. Its brightness is the device's raw value as a
/// fraction of its maximum.
///
/// Before a brightness is written, the journal gets what was found and what is about to be set. If
/// the journal cannot be written, the brightness is not set: a screen that stays bright is better
/// than a dark one that nobody can put back.
class LinuxDisplays final : public Displays {
  public:
    LinuxDisplays(const QDBusConnection& systemBus, PuttingBackJournal& journal, LogSink& log,
                  const QString& sysfsRoot = QStringLiteral("/sys"));
    LinuxDisplays(const LinuxDisplays&) = delete;
    LinuxDisplays& operator=(const LinuxDisplays&) = delete;

    [[nodiscard]] List activeDisplays(std::size_t capacity) const override;

    /// The error is an errno.
    [[nodiscard]] Reading brightness(DisplayId display) const override;

    /// Returns before the brightness is written. The error is an errno: ENODEV when the display is
    /// gone, EINVAL for no number, EIO when the journal cannot be written.
    int setBrightness(DisplayId display, float brightness) override;

    /// What is still under way, or could not be written yet, is struck off once it is written.
    void changesEnded() override;

    /// Puts back what this process, or one that is dead, has set and not put back. A display that
    /// no longer has the brightness that was set belongs to somebody else and is left alone; so is
    /// everything that another living process has set. What cannot be put back now stays in the
    /// journal: while this object lives it is tried again when logind appears, and a display that
    /// is not there now may be there at the next call.
    void putBack();

    /// Gives writes that are under way the time to finish; for the end of the program. Returns
    /// whether they have. Does not run the event loop.
    bool waitForWrites(std::chrono::milliseconds limit);

  private:
    struct Dimming {
        float wanted = 0.0F;   ///< the brightness last set
        bool hasEnded = false; ///< to be struck off the journal as soon as that is written
    };

    enum class Whose { Own, Dead };

    [[nodiscard]] QString deviceOf(DisplayId display) const;
    [[nodiscard]] bool note(const QString& device, int inPlace, int wanted);
    void write(const QString& device, int raw, float brightness);
    void putBack(const QString& device);
    void settled(const QString& device, bool isWritten);
    [[nodiscard]] bool isOwn(const JournalEntry& entry, const QString& device) const;
    [[nodiscard]] bool isDone(const JournalEntry& entry, bool isWritten) const;
    [[nodiscard]] std::vector<DisplayChange> take(PuttingBackJournal::Entries& entries,
                                                  const QString& device, Whose whose);
    [[nodiscard]] std::vector<DisplayChange> takeAll(PuttingBackJournal::Entries& entries,
                                                     const QString& device);

    LogSink& log_;
    PuttingBackJournal& journal_;
    Backlights backlights_;
    BacklightWriter writer_;
    QHash<QString, Dimming> dimmings_; ///< by device
    mutable QStringList devices_;      ///< the display id is the place in here, counted from 1
};

} // namespace quorvane

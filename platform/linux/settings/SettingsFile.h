#pragma once

#include "platform/Settings.h"
#include "platform/linux/common/FileWatch.h"
#include "platform/linux/settings/IniFile.h"

#include <QTimer>

#include <optional>

namespace quorvane {

class LogSink;

/// One settings domain in one INI file (see `IniText` for the format), which any number of
/// processes may share and people may edit. Main thread only; a program that never runs its event
/// loop still reads current values and may write, but hears of no change.
///
/// Processes that write settings exclude each other and replace the file whole. Editors do neither,
/// and some empty the file before they fill it again. A file that could be half written is
/// therefore believed only when it has been left alone for a tenth of a second; until then the
/// values known before hold.
class SettingsFile final : public SettingsDomain {
    Q_OBJECT

  public:
    /// Reads the file, if there is one. One that cannot be parsed is kept aside as <path>.corrupt,
    /// one that cannot be read stays as it is; both are reported to `log`, which must outlive this.
    SettingsFile(const QString& path, LogSink& log);

    /// Always text. Sees what another process has finished writing, also before `changed`.
    [[nodiscard]] QVariant value(const QString& key) const override;

    [[nodiscard]] QString location() const override { return file_.path(); }

    /// An invalid value removes the key. May wait: at most a second for an editor, five seconds for
    /// other writers. Announces what changed, here and elsewhere, before it returns.
    bool write(const QString& key, const QVariant& value) override;

    /// May wait as `write` does. Announces what changed before it returns.
    bool synchronize() override;

  private:
    using Reading = IniFile::Reading;

    [[nodiscard]] bool couldBeHalfWritten(const Reading& reading) const;
    [[nodiscard]] Reading readWhenSettled() const;

    void fileTouched();
    void fileSettled();
    void refresh() const;
    void doubt(const Reading& reading) const;
    void remember(const Reading& reading) const;

    void giveUpOn(const Reading& reading);
    [[nodiscard]] std::optional<QString> accept(const Reading& reading);
    [[nodiscard]] std::optional<QString> keepAside(const Reading& malformed, const FileLock& lock);
    [[nodiscard]] std::optional<QString> store(const QString& key,
                                               const std::optional<QString>& text);
    bool report(const std::optional<QString>& error);
    void announce();

    LogSink& log_;
    const IniFile file_;
    FileWatch watch_;

    // A cache of the file, which asking for a value brings up to date.
    mutable Reading known_;
    mutable FileStamp doubted_; ///< the file that `settle_` waits for
    mutable QTimer announceSoon_;
    mutable QTimer settle_;

    StoredValues announced_; ///< what listeners know of
    QString reported_;       ///< the trouble that was last logged, while it lasts
};

} // namespace quorvane

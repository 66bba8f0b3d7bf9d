#pragma once

#include "platform/Log.h"
#include "platform/linux/settings/LinuxSettings.h"
#include "tests/support/QtPrinters.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>

namespace quorvane::test {

class RecordedLog final : public LogSink {
  public:
    void write(const QString& line) override { lines.append(line); }

    QStringList lines;
};

/// A settings domain in a folder of its own, in memory where the machine has such a folder: every
/// write waits for the disk, and tens of thousands of writes would wait for minutes.
class SettingsTest : public testing::Test {
  protected:
    SettingsTest();

    /// The domain under test; the file is read when this is first called.
    SettingsDomain& domain();

    /// The same domain as another program sees it.
    SettingsDomain& elsewhere();

    [[nodiscard]] QString folder() const { return root_.filePath(QStringLiteral("config")); }

    [[nodiscard]] QString root() const { return root_.path(); }

    [[nodiscard]] QString file() const { return folder() + QLatin1String("/test.conf"); }

    /// Writes a file as a shell does: opens it, empties it and fills it. Makes its folder.
    static void writeInPlace(const QString& path, const QByteArray& bytes);

    void writeInPlace(const QByteArray& bytes) const { writeInPlace(file(), bytes); }

    /// Puts a new file in the place of the old one.
    void writeByRename(const QByteArray& bytes) const;

    [[nodiscard]] static QByteArray read(const QString& path);

    [[nodiscard]] QByteArray read() const { return read(file()); }

    [[nodiscard]] static std::uint64_t inode(const QString& path);
    [[nodiscard]] static unsigned mode(const QString& path);
    static void setMode(const QString& path, unsigned mode);

    /// The names in the folder of the settings file.
    [[nodiscard]] QStringList names() const;

    /// What `changed` announced so far, in order; every announcement sorted.
    [[nodiscard]] const QList<QStringList>& announced() const { return announced_; }

    /// Waits until something more has been announced than `announced()` was told of before.
    [[nodiscard]] bool waitForAnnouncement();

    /// Runs the event loop for this long.
    static void run(std::chrono::milliseconds time);

    RecordedLog log_;

  private:
    QTemporaryDir root_;
    std::optional<LinuxSettings> settings_;
    std::optional<LinuxSettings> others_;
    RecordedLog othersLog_;
    QList<QStringList> announced_;
    qsizetype awaited_ = 0;
};

} // namespace quorvane::test

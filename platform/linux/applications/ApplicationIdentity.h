#pragma once

#include "platform/linux/applications/ProcessFacts.h"

#include <QByteArray>
#include <QString>

namespace quorvane {

class ApplicationTable;
class DesktopEntries;

/// What a window says of its application. In UTF-8; empty what it does not say.
struct WindowNames {
    QByteArray applicationId; ///< the id that it gives: _GTK_APPLICATION_ID, an "app id"
    QByteArray instance;      ///< the first part of WM_CLASS
    QByteArray windowClass;   ///< the second one

    [[nodiscard]] bool operator==(const WindowNames&) const = default;
};

/// Finds out which application a process or window belongs to: the desktop entry that the systemd
/// unit of its control group names, else the one that the window names, else the one that starts
/// its executable. One thread at a time.
class ApplicationIdentity {
  public:
    struct Found {
        QString bundleIdentifier; ///< as modules know it; empty: unknown
        QString localizedName;
    };

    /// Both must outlive this.
    ApplicationIdentity(DesktopEntries& entries, ApplicationTable& table);

    [[nodiscard]] Found find(const ProcessFacts& process, const WindowNames& window);

  private:
    /// An id that stands for an installed application or has a row in the table; else empty.
    [[nodiscard]] QByteArray knownId(const QByteArray& id);
    [[nodiscard]] QByteArray idOfUnit(const QList<QByteArray>& possibleIds);
    [[nodiscard]] QByteArray idOfWindow(const WindowNames& window);
    [[nodiscard]] QByteArray idOfProgram(const ProcessFacts& process);
    [[nodiscard]] bool isTerminal(const QByteArray& id);
    [[nodiscard]] QByteArray idOf(const ProcessFacts& process, const WindowNames& window);

    DesktopEntries& entries_;
    ApplicationTable& table_;
};

} // namespace quorvane

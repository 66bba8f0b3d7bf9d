#pragma once

#include "platform/linux/processes/ProcessTable.h"
#include "platform/linux/processes/ProtectedProcesses.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace quorvane {

/// Which processes are an application's own, in one look at all processes.
///
/// They are the main process and what descends from it, and where the service manager has given the
/// application a unit (`ApplicationUnit`), that unit's other members, unless the unit
/// is that of a terminal or of another application from which this one was started. Without the
/// processes that must not be stopped, those of other applications, and whatever descends from
/// either. A descendant in another such unit is another application, unless it runs the same
/// program: a browser may move on into a unit of its own and leave processes in the former one.
class ApplicationProcesses {
  public:
    /// `others` are the main processes of further applications. The first and the third have to
    /// outlive this.
    ApplicationProcesses(const ProcessTable& table, std::int32_t main,
                         const ProtectedProcesses& protectedOnes,
                         const std::set<std::int32_t>& others = {});

    /// Why the application cannot be stopped, as the end of a sentence. Empty when it can.
    [[nodiscard]] const QString& refusal() const { return refusal_; }

    /// None when it is refused. Each process comes behind those that it descends from.
    [[nodiscard]] const std::vector<Process>& parentsFirst() const { return own_; }

    /// Whether the main process leads a process group that holds nobody but own processes.
    [[nodiscard]] bool hasGroupOfItsOwn() const { return hasGroup_; }

  private:
    [[nodiscard]] bool isExcluded(std::int32_t pid, const QByteArray& unit) const;
    [[nodiscard]] bool runsTheSameProgram(std::int32_t pid) const;
    [[nodiscard]] bool isUnitItsOwn() const;
    [[nodiscard]] bool descendsFromOneOf(const std::set<std::int32_t>& excluded,
                                         const Process& process) const;
    [[nodiscard]] std::map<std::int32_t, QByteArray> membersOfUnit(const QByteArray& unit) const;
    [[nodiscard]] std::map<std::int32_t, QByteArray> descendants() const;
    void collect(const std::map<std::int32_t, QByteArray>& candidates);
    [[nodiscard]] bool isGroupItsOwn() const;

    const ProcessTable& table_;
    std::int32_t main_;
    const ProtectedProcesses& protectedOnes_;
    std::set<std::int32_t> others_;
    QByteArray unit_;
    QString refusal_;
    std::vector<Process> own_;
    bool hasGroup_ = false;
};

} // namespace quorvane

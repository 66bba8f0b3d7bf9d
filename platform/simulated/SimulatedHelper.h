#pragma once

#include "platform/HelperInstaller.h"
#include "platform/HelperTransport.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quorvane {

/// The privileged helper: whether it is installed, which version runs and whether it answers.
class SimulatedHelper final : public HelperInstaller, public HelperTransport {
  public:
    enum class State {
        Answers,
        Silent, ///< takes commands and never replies
        Gone    ///< cannot be reached
    };

    SimulatedHelper();
    ~SimulatedHelper() override;

    SimulatedHelper(const SimulatedHelper&) = delete;
    SimulatedHelper& operator=(const SimulatedHelper&) = delete;

    [[nodiscard]] bool isInstalled(const QString& label) const override;
    /// Both are done at once, unless the administrator is slow.
    void install(const QString& label, Done done) override;
    void remove(const QString& label, Done done) override;
    [[nodiscard]] std::unique_ptr<HelperConnection> connectTo(const QString& serviceName) override;

    void setInstalled(bool installed) { installed_ = installed; }

    void setVersion(const QString& version);

    /// The version that the next installation brings.
    void setBundledVersion(const QString& version) { bundledVersion_ = version; }

    void setState(State state);

    /// What a command is answered with from now on: "load", "unload", "low power on" or
    /// "low power off". Else "loaded", "unloaded", "on" and "off".
    void setReply(const QString& command, const QString& reply);

    void failInstalling(std::optional<QString> error) { installError_ = std::move(error); }

    void failRemoving(std::optional<QString> error) { removeError_ = std::move(error); }

    /// From now on the administrator reads the prompt and answers nothing, until `answerPrompts`.
    void holdPrompts() { holdsPrompts_ = true; }

    void answerPrompts();

    /// The helper leaves: open connections become invalid.
    void invalidateConnections();

    /// Called with each command on the thread that sends it, at that moment: `calls` has it only
    /// when it has arrived.
    void setSendListener(std::function<void(const QString& call)> listener);

    /// Waits until every command that was sent has arrived and been answered, if it is answered
    /// at all.
    void settle();

    /// "install", "remove", "connect" and the commands, in the order in which they came.
    [[nodiscard]] QStringList calls() const;

    struct Shared; ///< seen by the connections' threads too

  private:
    void prompt(std::function<void()> change);

    bool installed_ = false;
    bool holdsPrompts_ = false;
    std::vector<std::function<void()>> heldPrompts_;
    QString bundledVersion_;
    std::optional<QString> installError_;
    std::optional<QString> removeError_;
    std::shared_ptr<Shared> shared_;
};

} // namespace quorvane

#include "platform/linux/processes/ProtectedProcesses.h"

#include <array>

namespace quorvane {

namespace {

struct ProtectedProgram {
    const char* name; ///< a "*" at its end stands for anything
    const char* role;
};

namespace programRole {

constexpr const char* ownProgram = "part of Quorvane";
constexpr const char* screen = "a display server";        // nothing is drawn, no key arrives
constexpr const char* windows = "a window manager";       // no window can be reached
constexpr const char* shell = "a part of the desktop";    // panel, desktop, their services
constexpr const char* session = "a session manager";      // takes the session with it
constexpr const char* bus = "a message bus";              // every program that calls it hangs
constexpr const char* services = "a service manager";     // nothing starts or ends any more
constexpr const char* sound = "a sound server";           // every program that plays hangs
constexpr const char* portal = "a desktop portal";        // file dialogues of others hang
constexpr const char* rights = "an authentication agent"; // no password can be given
constexpr const char* secrets = "a keeper of keys";       // programs hang asking for passwords
constexpr const char* input = "an input method";          // no text can be typed
constexpr const char* lock = "a screen locker";           // the session stays shut
constexpr const char* terminal = "a terminal";            // stands still with all that runs in it

} // namespace programRole

constexpr std::array protectedPrograms{
    ProtectedProgram{"quorvane*", programRole::ownProgram},
    ProtectedProgram{"com.TarnwickStudios.quorvane*", programRole::ownProgram},

    ProtectedProgram{"X", programRole::screen},
    ProtectedProgram{"Xorg*", programRole::screen},
    ProtectedProgram{"Xwayland*", programRole::screen},
    ProtectedProgram{"Xvfb", programRole::screen},
    ProtectedProgram{"Xephyr", programRole::screen},
    ProtectedProgram{"Xnest", programRole::screen},
    ProtectedProgram{"Xvnc", programRole::screen},
    ProtectedProgram{"Xtigervnc", programRole::screen},
    ProtectedProgram{"xwayland-satellite", programRole::screen},

    ProtectedProgram{"awesome", programRole::windows},
    ProtectedProgram{"bspwm", programRole::windows},
    ProtectedProgram{"cage", programRole::windows},
    ProtectedProgram{"cinnamon", programRole::windows},
    ProtectedProgram{"compiz", programRole::windows},
    ProtectedProgram{"cosmic-comp", programRole::windows},
    ProtectedProgram{"dwl", programRole::windows},
    ProtectedProgram{"dwm", programRole::windows},
    ProtectedProgram{"enlightenment*", programRole::windows},
    ProtectedProgram{"fluxbox", programRole::windows},
    ProtectedProgram{"gamescope*", programRole::windows},
    ProtectedProgram{"gnome-shell", programRole::windows},
    ProtectedProgram{"gala", programRole::windows},
    ProtectedProgram{"herbstluftwm", programRole::windows},
    ProtectedProgram{"hyprland", programRole::windows},
    ProtectedProgram{"Hyprland", programRole::windows},
    ProtectedProgram{"i3", programRole::windows},
    ProtectedProgram{"icewm*", programRole::windows},
    ProtectedProgram{"jwm", programRole::windows},
    ProtectedProgram{"kwin*", programRole::windows},
    ProtectedProgram{"labwc", programRole::windows},
    ProtectedProgram{"marco", programRole::windows},
    ProtectedProgram{"metacity", programRole::windows},
    ProtectedProgram{"miriway*", programRole::windows},
    ProtectedProgram{"muffin", programRole::windows},
    ProtectedProgram{"mutter*", programRole::windows},
    ProtectedProgram{"niri", programRole::windows},
    ProtectedProgram{"openbox*", programRole::windows},
    ProtectedProgram{"phoc", programRole::windows},
    ProtectedProgram{"picom", programRole::windows},
    ProtectedProgram{"qtile", programRole::windows},
    ProtectedProgram{"river", programRole::windows},
    ProtectedProgram{"spectrwm", programRole::windows},
    ProtectedProgram{"sway", programRole::windows},
    ProtectedProgram{"twm", programRole::windows},
    ProtectedProgram{"wayfire", programRole::windows},
    ProtectedProgram{"weston*", programRole::windows},
    ProtectedProgram{"wmaker", programRole::windows},
    ProtectedProgram{"xcompmgr", programRole::windows},
    ProtectedProgram{"xfwm4", programRole::windows},
    ProtectedProgram{"xmonad*", programRole::windows},

    ProtectedProgram{"at-spi*", programRole::shell},
    ProtectedProgram{"ayatana-indicator*", programRole::shell},
    ProtectedProgram{"budgie-*", programRole::shell},
    ProtectedProgram{"cosmic-panel*", programRole::shell},
    ProtectedProgram{"dconf-service", programRole::shell},
    ProtectedProgram{"gnome-panel", programRole::shell},
    ProtectedProgram{"gsd-*", programRole::shell},
    ProtectedProgram{"gvfs*", programRole::shell},
    ProtectedProgram{"kactivitymanagerd", programRole::shell},
    ProtectedProgram{"kded*", programRole::shell},
    ProtectedProgram{"kdeinit*", programRole::shell},
    ProtectedProgram{"kglobalaccel*", programRole::shell},
    ProtectedProgram{"lxpanel", programRole::shell},
    ProtectedProgram{"lxqt-panel", programRole::shell},
    ProtectedProgram{"mate-panel", programRole::shell},
    ProtectedProgram{"phosh", programRole::shell},
    ProtectedProgram{"plasmashell", programRole::shell},
    ProtectedProgram{"polybar", programRole::shell},
    ProtectedProgram{"swaybar", programRole::shell},
    ProtectedProgram{"tint2", programRole::shell},
    ProtectedProgram{"waybar", programRole::shell},
    ProtectedProgram{"wrapper-2.0", programRole::shell}, // a part of xfce4-panel
    ProtectedProgram{"xdg-permission-store", programRole::shell},
    ProtectedProgram{"xfce4-notifyd", programRole::shell},
    ProtectedProgram{"xfce4-panel*", programRole::shell},
    ProtectedProgram{"xfconfd", programRole::shell},
    ProtectedProgram{"xfdesktop", programRole::shell},
    ProtectedProgram{"xfsettingsd", programRole::shell},

    ProtectedProgram{"cinnamon-session*", programRole::session},
    ProtectedProgram{"gdm*", programRole::session},
    ProtectedProgram{"gnome-session*", programRole::session},
    ProtectedProgram{"greetd", programRole::session},
    ProtectedProgram{"ksmserver", programRole::session},
    ProtectedProgram{"lightdm*", programRole::session},
    ProtectedProgram{"lxqt-session", programRole::session},
    ProtectedProgram{"lxsession", programRole::session},
    ProtectedProgram{"mate-session*", programRole::session},
    ProtectedProgram{"plasma_session", programRole::session},
    ProtectedProgram{"sddm*", programRole::session},
    ProtectedProgram{"startplasma*", programRole::session},
    ProtectedProgram{"xfce4-session", programRole::session},
    ProtectedProgram{"xinit", programRole::session},

    ProtectedProgram{"dbus-broker*", programRole::bus},
    ProtectedProgram{"dbus-daemon", programRole::bus},
    ProtectedProgram{"dbus-launch", programRole::bus},
    ProtectedProgram{"dbus-run-session", programRole::bus},

    ProtectedProgram{"(sd-pam)", programRole::services},
    ProtectedProgram{"dinit", programRole::services},
    ProtectedProgram{"init", programRole::services},
    ProtectedProgram{"runsvdir", programRole::services},
    ProtectedProgram{"systemd", programRole::services},
    ProtectedProgram{"systemd-*", programRole::services},

    ProtectedProgram{"jackd*", programRole::sound},
    ProtectedProgram{"pipewire*", programRole::sound},
    ProtectedProgram{"pulseaudio", programRole::sound},
    ProtectedProgram{"wireplumber", programRole::sound},

    ProtectedProgram{"xdg-desktop-portal*", programRole::portal},
    ProtectedProgram{"xdg-document-portal", programRole::portal},

    ProtectedProgram{"lxpolkit", programRole::rights},
    ProtectedProgram{"lxqt-policykit*", programRole::rights},
    ProtectedProgram{"mate-polkit", programRole::rights},
    ProtectedProgram{"pkexec", programRole::rights},
    ProtectedProgram{"pkttyagent", programRole::rights},
    ProtectedProgram{"polkit*", programRole::rights},
    ProtectedProgram{"xfce-polkit", programRole::rights},

    ProtectedProgram{"gnome-keyring-d*", programRole::secrets},
    ProtectedProgram{"gpg-agent", programRole::secrets},
    ProtectedProgram{"kwalletd*", programRole::secrets},
    ProtectedProgram{"ssh-agent", programRole::secrets},

    ProtectedProgram{"fcitx*", programRole::input},
    ProtectedProgram{"ibus-*", programRole::input},
    ProtectedProgram{"maliit-*", programRole::input},
    ProtectedProgram{"onboard", programRole::input},

    ProtectedProgram{"hyprlock", programRole::lock},
    ProtectedProgram{"i3lock", programRole::lock},
    ProtectedProgram{"kscreenlocker*", programRole::lock},
    ProtectedProgram{"light-locker", programRole::lock},
    ProtectedProgram{"swaylock", programRole::lock},
    ProtectedProgram{"xfce4-screensaver*", programRole::lock},
    ProtectedProgram{"xscreensaver*", programRole::lock},

    ProtectedProgram{"alacritty", programRole::terminal},
    ProtectedProgram{"contour", programRole::terminal},
    ProtectedProgram{"cool-retro-term", programRole::terminal},
    ProtectedProgram{"foot*", programRole::terminal},
    ProtectedProgram{"ghostty", programRole::terminal},
    ProtectedProgram{"gnome-terminal*", programRole::terminal},
    ProtectedProgram{"guake", programRole::terminal},
    ProtectedProgram{"kgx", programRole::terminal},
    ProtectedProgram{"kitty", programRole::terminal},
    ProtectedProgram{"konsole", programRole::terminal},
    ProtectedProgram{"lxterminal", programRole::terminal},
    ProtectedProgram{"mate-terminal", programRole::terminal},
    ProtectedProgram{"ptyxis*", programRole::terminal},
    ProtectedProgram{"qterminal", programRole::terminal},
    ProtectedProgram{"screen", programRole::terminal},
    ProtectedProgram{"sshd*", programRole::terminal},
    ProtectedProgram{"st", programRole::terminal},
    ProtectedProgram{"terminator", programRole::terminal},
    ProtectedProgram{"terminology", programRole::terminal},
    ProtectedProgram{"tilix", programRole::terminal},
    ProtectedProgram{"tmux*", programRole::terminal},
    ProtectedProgram{"urxvt*", programRole::terminal},
    ProtectedProgram{"wezterm*", programRole::terminal},
    ProtectedProgram{"x-terminal-emul*", programRole::terminal},
    ProtectedProgram{"xfce4-terminal", programRole::terminal},
    ProtectedProgram{"xterm", programRole::terminal},
    ProtectedProgram{"yakuake", programRole::terminal},
};

bool isNamed(const QString& name, const char* program) {
    constexpr qsizetype longestKernelName = 15;
    const QLatin1String wanted(program);
    if (wanted.endsWith(QLatin1Char('*'))) {
        const QLatin1String beginning = wanted.chopped(1);
        return name.startsWith(beginning) ||
               (name.size() == longestKernelName && beginning.startsWith(name));
    }
    return name == wanted || (name.size() == longestKernelName && wanted.startsWith(name));
}

} // namespace

QString roleOfProgram(const QString& name) {
    for (const ProtectedProgram& program : protectedPrograms) {
        if (isNamed(name, program.name)) {
            return QLatin1String(program.role);
        }
    }
    return {};
}

ProtectedProcesses::ProtectedProcesses(const ProcessTable& table, std::int32_t self,
                                       std::uint32_t user)
    : table_(table), self_(self), user_(user) {
    const std::vector<std::int32_t> ancestors = table.ancestorsOf(self);
    ancestors_.insert(ancestors.begin(), ancestors.end());
}

QString ProtectedProcesses::reason(std::int32_t pid, std::int32_t application) const {
    if (pid <= 1) {
        return QStringLiteral("it is no process of an application");
    }
    if (pid == self_) {
        return QStringLiteral("it is Quorvane itself");
    }
    if (ancestors_.contains(pid)) {
        return QStringLiteral("Quorvane was started from it");
    }
    const Process* const process = table_.find(pid);
    if (process == nullptr) {
        return QStringLiteral("there is no such process");
    }
    if (!table_.belongsTo(pid, user_)) {
        return QStringLiteral("it belongs to another user");
    }
    // The executable of a script is its interpreter; the script's own name is the process's.
    for (const QString& name : {table_.executableOf(pid), QString::fromUtf8(process->name)}) {
        if (const QString role = roleOfProgram(name); !role.isEmpty()) {
            return QStringLiteral("%1 is %2").arg(name, role);
        }
    }
    if (table_.isLoginShell(pid)) {
        return QStringLiteral("it is a login's shell");
    }
    if (pid != application && process->leadsSession() && process->hasTerminal) {
        return QStringLiteral("it leads the session of a terminal");
    }
    return {};
}

} // namespace quorvane

#include "platform/linux/ProtectedProcesses.h"

#include <array>

namespace quorvane {

namespace {

struct ProtectedProgram {
    const char* name; ///< a "*" at its end stands for anything
    const char* role;
};

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

constexpr std::array protectedPrograms{
    ProtectedProgram{"quorvane*", ownProgram},
    ProtectedProgram{"com.TarnwickStudios.quorvane*", ownProgram},

    ProtectedProgram{"X", screen},
    ProtectedProgram{"Xorg*", screen},
    ProtectedProgram{"Xwayland*", screen},
    ProtectedProgram{"Xvfb", screen},
    ProtectedProgram{"Xephyr", screen},
    ProtectedProgram{"Xnest", screen},
    ProtectedProgram{"Xvnc", screen},
    ProtectedProgram{"Xtigervnc", screen},
    ProtectedProgram{"xwayland-satellite", screen},

    ProtectedProgram{"awesome", windows},
    ProtectedProgram{"bspwm", windows},
    ProtectedProgram{"cage", windows},
    ProtectedProgram{"cinnamon", windows},
    ProtectedProgram{"compiz", windows},
    ProtectedProgram{"cosmic-comp", windows},
    ProtectedProgram{"dwl", windows},
    ProtectedProgram{"dwm", windows},
    ProtectedProgram{"enlightenment*", windows},
    ProtectedProgram{"fluxbox", windows},
    ProtectedProgram{"gamescope*", windows},
    ProtectedProgram{"gnome-shell", windows},
    ProtectedProgram{"gala", windows},
    ProtectedProgram{"herbstluftwm", windows},
    ProtectedProgram{"hyprland", windows},
    ProtectedProgram{"Hyprland", windows},
    ProtectedProgram{"i3", windows},
    ProtectedProgram{"icewm*", windows},
    ProtectedProgram{"jwm", windows},
    ProtectedProgram{"kwin*", windows},
    ProtectedProgram{"labwc", windows},
    ProtectedProgram{"marco", windows},
    ProtectedProgram{"metacity", windows},
    ProtectedProgram{"miriway*", windows},
    ProtectedProgram{"muffin", windows},
    ProtectedProgram{"mutter*", windows},
    ProtectedProgram{"niri", windows},
    ProtectedProgram{"openbox*", windows},
    ProtectedProgram{"phoc", windows},
    ProtectedProgram{"picom", windows},
    ProtectedProgram{"qtile", windows},
    ProtectedProgram{"river", windows},
    ProtectedProgram{"spectrwm", windows},
    ProtectedProgram{"sway", windows},
    ProtectedProgram{"twm", windows},
    ProtectedProgram{"wayfire", windows},
    ProtectedProgram{"weston*", windows},
    ProtectedProgram{"wmaker", windows},
    ProtectedProgram{"xcompmgr", windows},
    ProtectedProgram{"xfwm4", windows},
    ProtectedProgram{"xmonad*", windows},

    ProtectedProgram{"at-spi*", shell},
    ProtectedProgram{"ayatana-indicator*", shell},
    ProtectedProgram{"budgie-*", shell},
    ProtectedProgram{"cosmic-panel*", shell},
    ProtectedProgram{"dconf-service", shell},
    ProtectedProgram{"gnome-panel", shell},
    ProtectedProgram{"gsd-*", shell},
    ProtectedProgram{"gvfs*", shell},
    ProtectedProgram{"kactivitymanagerd", shell},
    ProtectedProgram{"kded*", shell},
    ProtectedProgram{"kdeinit*", shell},
    ProtectedProgram{"kglobalaccel*", shell},
    ProtectedProgram{"lxpanel", shell},
    ProtectedProgram{"lxqt-panel", shell},
    ProtectedProgram{"mate-panel", shell},
    ProtectedProgram{"phosh", shell},
    ProtectedProgram{"plasmashell", shell},
    ProtectedProgram{"polybar", shell},
    ProtectedProgram{"swaybar", shell},
    ProtectedProgram{"tint2", shell},
    ProtectedProgram{"waybar", shell},
    ProtectedProgram{"wrapper-2.0", shell}, // a part of xfce4-panel
    ProtectedProgram{"xdg-permission-store", shell},
    ProtectedProgram{"xfce4-notifyd", shell},
    ProtectedProgram{"xfce4-panel*", shell},
    ProtectedProgram{"xfconfd", shell},
    ProtectedProgram{"xfdesktop", shell},
    ProtectedProgram{"xfsettingsd", shell},

    ProtectedProgram{"cinnamon-session*", session},
    ProtectedProgram{"gdm*", session},
    ProtectedProgram{"gnome-session*", session},
    ProtectedProgram{"greetd", session},
    ProtectedProgram{"ksmserver", session},
    ProtectedProgram{"lightdm*", session},
    ProtectedProgram{"lxqt-session", session},
    ProtectedProgram{"lxsession", session},
    ProtectedProgram{"mate-session*", session},
    ProtectedProgram{"plasma_session", session},
    ProtectedProgram{"sddm*", session},
    ProtectedProgram{"startplasma*", session},
    ProtectedProgram{"xfce4-session", session},
    ProtectedProgram{"xinit", session},

    ProtectedProgram{"dbus-broker*", bus},
    ProtectedProgram{"dbus-daemon", bus},
    ProtectedProgram{"dbus-launch", bus},
    ProtectedProgram{"dbus-run-session", bus},

    ProtectedProgram{"(sd-pam)", services},
    ProtectedProgram{"dinit", services},
    ProtectedProgram{"init", services},
    ProtectedProgram{"runsvdir", services},
    ProtectedProgram{"systemd", services},
    ProtectedProgram{"systemd-*", services},

    ProtectedProgram{"jackd*", sound},
    ProtectedProgram{"pipewire*", sound},
    ProtectedProgram{"pulseaudio", sound},
    ProtectedProgram{"wireplumber", sound},

    ProtectedProgram{"xdg-desktop-portal*", portal},
    ProtectedProgram{"xdg-document-portal", portal},

    ProtectedProgram{"lxpolkit", rights},
    ProtectedProgram{"lxqt-policykit*", rights},
    ProtectedProgram{"mate-polkit", rights},
    ProtectedProgram{"pkexec", rights},
    ProtectedProgram{"pkttyagent", rights},
    ProtectedProgram{"polkit*", rights},
    ProtectedProgram{"xfce-polkit", rights},

    ProtectedProgram{"gnome-keyring-d*", secrets},
    ProtectedProgram{"gpg-agent", secrets},
    ProtectedProgram{"kwalletd*", secrets},
    ProtectedProgram{"ssh-agent", secrets},

    ProtectedProgram{"fcitx*", input},
    ProtectedProgram{"ibus-*", input},
    ProtectedProgram{"maliit-*", input},
    ProtectedProgram{"onboard", input},

    ProtectedProgram{"hyprlock", lock},
    ProtectedProgram{"i3lock", lock},
    ProtectedProgram{"kscreenlocker*", lock},
    ProtectedProgram{"light-locker", lock},
    ProtectedProgram{"swaylock", lock},
    ProtectedProgram{"xfce4-screensaver*", lock},
    ProtectedProgram{"xscreensaver*", lock},

    ProtectedProgram{"alacritty", terminal},
    ProtectedProgram{"contour", terminal},
    ProtectedProgram{"cool-retro-term", terminal},
    ProtectedProgram{"foot*", terminal},
    ProtectedProgram{"ghostty", terminal},
    ProtectedProgram{"gnome-terminal*", terminal},
    ProtectedProgram{"guake", terminal},
    ProtectedProgram{"kgx", terminal},
    ProtectedProgram{"kitty", terminal},
    ProtectedProgram{"konsole", terminal},
    ProtectedProgram{"lxterminal", terminal},
    ProtectedProgram{"mate-terminal", terminal},
    ProtectedProgram{"ptyxis*", terminal},
    ProtectedProgram{"qterminal", terminal},
    ProtectedProgram{"screen", terminal},
    ProtectedProgram{"sshd*", terminal},
    ProtectedProgram{"st", terminal},
    ProtectedProgram{"terminator", terminal},
    ProtectedProgram{"terminology", terminal},
    ProtectedProgram{"tilix", terminal},
    ProtectedProgram{"tmux*", terminal},
    ProtectedProgram{"urxvt*", terminal},
    ProtectedProgram{"wezterm*", terminal},
    ProtectedProgram{"x-terminal-emul*", terminal},
    ProtectedProgram{"xfce4-terminal", terminal},
    ProtectedProgram{"xterm", terminal},
    ProtectedProgram{"yakuake", terminal},
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

"""What test_helper_installation runs inside of its container: the helper installs itself from the
bundle, is replaced and removed."""

import os
import shutil
import stat
import subprocess

import power_attributes
from container import CHANGED, UNCHANGED
from desktop import PROGRAMS, wait_until
from helper_callers import Session, root
from helper_files import (BUILT, INSTALLATION, INSTALLED, MADE_OF, NAME, PACKAGE, PACKAGED, RUNTIME,
                          STAGED, UNIT, unpack)
from helper_system import HelperSystem, add_user, systemctl

WATCHED = ("/usr", "/etc", "/opt", "/var/lib")


def everything():
    """{path: (owner, group, mode)} of all that is here and not on the machine, which is where an
    installation could leave something. The machine's own files are too many to look at each time."""
    found = {}
    places = [CHANGED + place for place in WATCHED if os.path.isdir(CHANGED + place)]
    for name in (os.path.join(place, name) for top in places
                 for place, folders, files in os.walk(top) for name in folders + files):
        path = name.removeprefix(CHANGED)
        if not os.path.lexists(UNCHANGED + path):
            status = os.lstat(name)
            found[path] = (status.st_uid, status.st_gid, stat.S_IMODE(status.st_mode))
    return found


def is_of_the_helper(path):
    return "quorvane" in path.lower()


class InstallationChecks(HelperSystem):
    def setUp(self):
        super().setUp()
        self.before = everything()

    def run_helper(self, *arguments, program=BUILT, by=()):
        return subprocess.run([*by, program, *arguments], capture_output=True, text=True,
                              check=False)

    def check_done(self, *arguments, **options):
        done = self.run_helper(*arguments, **options)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))

    def check_refused(self, reason, *arguments, **options):
        done = self.run_helper(*arguments, **options)
        self.assertEqual(done.returncode, 1)
        self.assertIn(reason, done.stderr)

    def added(self):
        after = everything()
        return {path: after[path] for path in after.keys() - self.before.keys()}

    def check_installed(self):
        added = self.added()
        files = {path: status for path, status in added.items() if not os.path.isdir(path)}
        self.assertEqual({path: mode for path, (_, _, mode) in files.items()}, INSTALLATION)
        self.assertEqual({status[:2] for status in added.values()}, {(0, 0)})
        self.assertEqual({mode for path, (_, _, mode) in added.items() if os.path.isdir(path)},
                         {0o755})

    def check_contents(self):
        for path, source in MADE_OF.items():
            with open(source, "rb") as file:
                expected = file.read()
            if source != BUILT:
                expected = expected.replace(b"@FOLDER@", INSTALLED.encode())
            with open(path, "rb") as file:
                self.assertEqual(file.read(), expected, path)

    def check_nothing_is_left(self):
        self.assertEqual([path for path in self.added() if is_of_the_helper(path)], [])
        self.assertEqual([path for path in self.added() if not os.path.isdir(path)], [])
        self.assertEqual(systemctl("show", "--property=LoadState", "--value", UNIT), "not-found")

    def check_served(self):
        """The helper that has been installed is what a call starts."""
        caller = root(self)
        self.assertRegex(caller.ask("GetVersion"), r"^\d+$")
        self.assertEqual(os.readlink(f"/proc/{self.process()}/exe"), f"{INSTALLED}/{NAME}")
        self.turn_turbo_off(caller)
        self.unload(caller)
        self.check_nothing_is_changed()
        return caller

    def check_not_served(self):
        self.assertEqual(root(self).ask("GetVersion"),
                         "org.freedesktop.DBus.Error.ServiceUnknown")

    # --- as root

    def install(self):
        self.check_not_served()
        self.check_done("--install")
        self.check_installed()
        self.check_contents()
        self.check_served()

    def install_for_a_user(self):
        self.check_done("--install")
        caller = Session(self, add_user()).caller
        self.turn_turbo_off(caller)
        self.unload(caller)

    def install_twice(self):
        self.check_done("--install")
        self.check_done("--install")
        self.check_installed()
        self.check_served()

    def replace(self):
        self.check_done("--install")
        self.check_served()
        first = self.process()
        os.remove(f"{INSTALLED}/{NAME}")  # a running program cannot be written to
        shutil.copy("/usr/bin/true", f"{INSTALLED}/{NAME}")
        self.check_done("--replace")
        self.assertFalse(os.path.exists(f"/proc/{first}"))
        self.check_installed()
        self.check_contents()
        self.check_served()
        self.assertNotEqual(self.process(), first)

    def replace_with_turbo_off(self):
        self.check_done("--install")
        self.turn_turbo_off(root(self))
        self.check_done("--replace")
        self.check_nothing_is_changed()

    def remove(self):
        self.check_done("--install")
        caller = self.check_served()
        self.turn_turbo_off(caller)
        helper = self.process()
        self.check_done("--remove")
        self.assertFalse(os.path.exists(f"/proc/{helper}"))
        self.check_nothing_is_changed()
        self.check_nothing_is_left()
        self.check_not_served()

    def remove_what_is_not_there(self):
        self.check_done("--remove")
        self.check_nothing_is_left()

    def installed_one_removes_itself(self):
        self.check_done("--install")
        self.check_served()
        self.check_done("--remove", program=f"{INSTALLED}/{NAME}")
        self.check_nothing_is_left()

    def packaged(self):
        self.check_refused("the distribution's package has installed the helper already",
                           "--install")
        self.check_refused("the distribution's package", "--replace")
        self.assertEqual(self.added(), {})
        self.assertEqual({path for path in everything() if is_of_the_helper(path)
                          and not os.path.isdir(path)}, set(PACKAGE))
        root(self).ask("GetVersion")
        self.assertEqual(os.readlink(f"/proc/{self.process()}/exe"), f"{PACKAGED}/{NAME}")

    def packaged_removal(self):
        """What belongs to the package stays."""
        self.check_refused("the distribution's package", "--remove")
        self.assertEqual({path for path in everything() if is_of_the_helper(path)
                          and not os.path.isdir(path)}, set(PACKAGE))
        root(self).ask("GetVersion")
        self.assertEqual(systemctl("is-active", UNIT), "active")

    def packaged_later(self):
        """The installed one stands before the package's until it is removed."""
        self.check_done("--install")
        unpack(STAGED)
        systemctl("daemon-reload")
        self.check_served()
        self.check_done("--remove")
        self.assertEqual({path for path in everything() if is_of_the_helper(path)
                          and not os.path.isdir(path)}, set(PACKAGE))
        root(self).ask("GetVersion")
        self.assertEqual(os.readlink(f"/proc/{self.process()}/exe"), f"{PACKAGED}/{NAME}")

    def half_way(self):
        for folder in ("/etc", "/usr/share", "/usr/local/share", "/usr/local"):
            subprocess.run(["mount", "--bind", folder, folder], check=True)
            subprocess.run(["mount", "-o", "remount,bind,ro", folder], check=True)
            self.check_refused(folder, "--install")
            subprocess.run(["umount", folder], check=True)
            self.check_nothing_is_left()
            self.check_not_served()
        self.check_done("--install")
        self.check_served()

    def full_disk(self):
        os.makedirs(INSTALLED)
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "tmpfs", INSTALLED], check=True)
        self.check_refused(INSTALLED, "--install")
        self.assertEqual(os.listdir(INSTALLED), [])
        subprocess.run(["umount", INSTALLED], check=True)
        os.rmdir(INSTALLED)
        self.check_nothing_is_left()

    # --- not as root

    def not_root(self):
        add_user()
        user = ("setpriv", "--reuid=plain", "--regid=plain", "--init-groups")
        for option in ("--install", "--replace", "--remove", "--put-back"):
            self.check_refused("this has to be run by root", option, by=user)
        self.check_refused("this has to be run by root", by=user)
        self.assertEqual([path for path in self.added() if is_of_the_helper(path)], [])

    # --- as an administrator's client has it done

    def pkexec(self):
        self.check_done("--install", by=("pkexec",))
        self.check_installed()
        self.check_served()
        self.check_done("--remove", by=("pkexec",))
        self.check_nothing_is_left()

    def pkexec_of_a_user(self):
        """Who is no administrator and cannot be asked for a password."""
        add_user()
        refused = self.run_helper("--install", by=(
            "setpriv", "--reuid=plain", "--regid=plain", "--init-groups", "pkexec",
            "--disable-internal-agent"))
        self.assertIn(refused.returncode, (126, 127))
        self.assertEqual([path for path in self.added() if is_of_the_helper(path)], [])

    def pkexec_of_an_administrator(self):
        add_user()
        with open("/etc/polkit-1/rules.d/40-admin.rules", "w", encoding="ascii") as file:
            file.write("""polkit.addRule(function(action, subject) {
    if (action.id == "org.freedesktop.policykit.exec" && subject.user == "plain") {
        return polkit.Result.YES;
    }
});
""")
        self.before = everything()

        def install():
            return self.run_helper("--install", by=(
                "setpriv", "--reuid=plain", "--regid=plain", "--init-groups", "pkexec",
                "--disable-internal-agent")).returncode == 0

        wait_until(install, "the administrator's installation")
        self.check_installed()
        self.check_served()

    def environment(self):
        """Whoever starts it has no say in what root loads or writes."""
        shutil.copytree(PROGRAMS, "/tmp/bundle")
        hostile = {"LD_LIBRARY_PATH": "/tmp", "QT_PLUGIN_PATH": "/tmp", "TMPDIR": "/tmp/there",
                   "QT_LOGGING_RULES": "*=true", "QT_DEBUG_PLUGINS": "1",
                   "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/tmp/bus",
                   "XDG_RUNTIME_DIR": "/tmp/there", "HOME": "/tmp/there"}
        done = subprocess.run(["/tmp/bundle/" + NAME, "--install"], env=hostile, umask=0,
                              capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.check_installed()
        self.assertFalse(os.path.exists("/tmp/there"))
        self.assertTrue(os.path.isdir(RUNTIME) or not os.path.exists(RUNTIME))
        self.assertFalse(power_attributes.is_turbo_off())

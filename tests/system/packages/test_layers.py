"""The check of who includes whom and who waits notices what is forbidden: each arrow is drawn, and
each wait written, in a copy."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[3]
SOURCES = ("plist", "platform", "core", "battery", "helperclient", "mode", "modules", "ui", "app",
           "widgets", "apps")
# From below to above. Rooms of one floor do not know each other.
FLOORS = (("plist",), ("platform",), ("core",), ("battery", "helperclient"), ("mode",),
          ("modules", "ui"), ("app",), ("apps/quorvane", "apps/demo"))
COMMON = "platform/linux/common"
SIMULATED = "platform/simulated"
NEIGHBOURS = {  # of a port, besides what all of them share
    "platform/linux/applications": {"platform/linux/processes"},
    "platform/linux/helperclient": {"platform/linux/processes"},
    "platform/linux/session": {"platform/linux/processes"},
    "platform/linux/windows": {"platform/linux/processes"},
}
WAITS = (  # of a kind each
    "bus.call(m, QDBus::Block);",
    "bus_.call(m);",
    "interface->call(name);",
    "QDBusInterface peer(service, path);",
    "daemon->isServiceRegistered(name);",
    "bus_.registerService(name);",
    "bus_.interface()->servicePid(name);",
    "BusCalls::askAndWait(bus_, call);",
    "calls_.waitForAnswers();",
    "QDBusConnection::systemBus();",
    "bus_.connect(service, path, interface, name, this, slot);",
    "process.waitForStarted();",
    "call.waitForFinished();",
    "pool.waitForDone();",
    "std::this_thread::sleep_for(pause);",
    "::nanosleep(&pause, nullptr);",
    "QThread::msleep(1);",
    "clock.sleep(Seconds(1.0));",
    "while (::poll(&one, 1, -1) == 0) {",
    "::waitpid(child, &status, 0);",
    "::flock(file, LOCK_EX);",
    "::fsync(file);",
    "QSaveFile file(path);",
    "loop.processEvents();",
    "semaphore.tryAcquire(1, 5);",
    "thread.wait();",
    "changed.wait_for(lock, limit);",
    "thread.join();",
    "Qt::BlockingQueuedConnection",
    "::xcb_flush(xcb());",
    "::xcb_intern_atom_reply(xcb(), cookie, nullptr);",
    "QProcess::execute(program);",
    "sd_journal_send(text);",
    "bus_.asyncCall(m);",
    "QDBusPendingCallWatcher watcher(call);",
)
NO_WAITS = (
    "// bus_.call(m) would wait here",
    "    /// Not by QDBus::Block.",
    "::xcb_poll_for_reply(xcb(), sequence, &answer, &error);",
    "lines.join(separator);",
    "connect(&timer_, &QTimer::timeout, this, &Class::slot);",
)
HELPER = "com.TarnwickStudios.quorvane.helper"


def below(room):
    """The rooms of the floors below."""
    for number, floor in enumerate(FLOORS):
        if room in floor:
            return {lower for rooms in FLOORS[:number] for lower in rooms}
    raise ValueError(room)


class LayersTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="quorvane-layers-"))
        self.addCleanup(shutil.rmtree, self.folder)
        os.mkdir(self.folder / ".ci")
        shutil.copy(ROOT / ".ci" / "check-layers", self.folder / ".ci")

    # --- sources

    def copy_sources(self):
        for name in SOURCES:
            shutil.copytree(ROOT / name, self.folder / name)
        os.mkdir(self.folder / "docs")
        shutil.copy(ROOT / "docs" / "architecture.md", self.folder / "docs")
        ports = sorted(str(path.relative_to(ROOT))
                       for path in (ROOT / "platform" / "linux").iterdir() if path.is_dir())
        rooms = {room for floor in FLOORS for room in floor}
        self.ports = [port for port in ports if port != COMMON]
        self.rooms = sorted(rooms | set(ports) | {SIMULATED, "platform/linux", "widgets",
                                                  "apps/window", "apps/helper", "apps/kextstat"})

    def check(self, *arguments):
        done = subprocess.run([str(self.folder / ".ci" / "check-layers"), *arguments],
                              capture_output=True, text=True, check=False)
        return done.returncode, done.stdout + done.stderr

    def header_of(self, room):
        return next(path for path in sorted((self.folder / room).glob("*.h"))
                    if path.name not in ("Log.h", "Result.h", "Arrows.h"))

    def draw(self, arrows):
        """Has a file of one room include a header of the other, for each pair."""
        for room, other in arrows:
            header = self.header_of(other).relative_to(self.folder)
            with open(self.folder / room / "Arrows.h", "a", encoding="ascii") as file:
                file.write(f'#include "{header}"\n')

    def assert_forbidden(self, arrows):
        arrows = sorted(arrows)
        self.assertTrue(arrows)
        self.draw(arrows)
        status, output = self.check("sources")
        self.assertEqual(status, 1, output)
        missed = [arrow for arrow in arrows
                  if f"{arrow[0]} must not know {arrow[1]}: " not in output]
        self.assertEqual(missed, [])

    def test_sources_as_they_are_keep_to_the_order(self):
        self.assertEqual(
            subprocess.run([ROOT / ".ci" / "check-layers", "sources"], check=False).returncode, 0)

    def test_no_room_knows_one_above_or_beside_it(self):
        self.copy_sources()
        rooms = [room for floor in FLOORS for room in floor]
        self.assert_forbidden((room, other) for room in rooms for other in rooms
                              if other != room and other not in below(room) and
                              not other.startswith("apps/"))

    def test_no_class_knows_the_real_or_the_simulated_machine(self):
        self.copy_sources()
        machines = [*self.ports, COMMON, "platform/linux", SIMULATED]
        classes = [room for floor in FLOORS[:-1] for room in floor]
        self.assert_forbidden([(room, machine) for room in classes for machine in machines] +
                              [("apps/quorvane", SIMULATED), ("widgets", COMMON)] +
                              [("apps/demo", machine) for machine in machines
                               if machine != SIMULATED])

    def test_ports_know_their_named_neighbours_only(self):
        self.copy_sources()
        arrows = [(port, other) for port in self.ports for other in self.ports
                  if other != port and other not in NEIGHBOURS.get(port, ())]
        above = [room for floor in FLOORS[2:-1] for room in floor]
        self.assert_forbidden(arrows +
                              [(port, room) for port in self.ports for room in above] +
                              [(port, SIMULATED) for port in self.ports] +
                              [(SIMULATED, port) for port in self.ports])

    def test_what_root_runs_knows_nothing_of_the_user_s_program(self):
        self.copy_sources()
        self.assert_forbidden([(room, other) for room in (COMMON, "apps/helper")
                               for other in self.rooms
                               if other not in (room, COMMON, "plist", "apps/kextstat") and
                               not (room == COMMON and other.startswith("apps/"))])

    def test_windows_know_what_they_share_and_nobody_else_knows_that(self):
        self.copy_sources()
        above = {room for floor in FLOORS[3:-1] for room in floor}
        everybody = set(self.rooms) - {"widgets", "apps/window"}
        self.assert_forbidden([(room, "widgets") for room in everybody] +
                              [(room, other) for room in ("widgets", "apps/window")
                               for other in above])

    def test_folder_without_a_place_is_noticed(self):
        self.copy_sources()
        os.mkdir(self.folder / "apps" / "another")
        (self.folder / "apps" / "another" / "main.cpp").write_text(
            "#include \"core/Words.h\"\n", encoding="ascii")
        status, output = self.check("sources")
        self.assertEqual(status, 1)
        self.assertIn("has no place in the order", output)

    def test_headers_of_services_and_toolkits_are_noticed(self):
        self.copy_sources()
        for room, header in (("core", "systemd/sd-bus.h"), ("platform", "libudev.h"),
                             ("modules", "QDBusConnection"), (SIMULATED, "QtDBus/QDBusMessage"),
                             ("app", "QtWidgets/QWidget"), ("apps/helper", "QtGui/QImage")):
            with self.subTest(room=room, header=header):
                arrows = self.folder / room / "Arrows.h"
                arrows.write_text(f"#include <{header}>\n", encoding="ascii")
                status, output = self.check("sources")
                self.assertEqual(status, 1)
                self.assertIn(f"{room}/Arrows.h:1:#include <{header}>", output)
                arrows.unlink()

    # --- waits

    def test_every_kind_of_wait_is_noticed_where_it_is_not_listed(self):
        self.copy_sources()
        file = "platform/linux/session/QuitService.cpp"
        (self.folder / file).write_text("\n".join(WAITS + NO_WAITS) + "\n", encoding="ascii")
        status, output = self.check("sources")
        self.assertEqual(status, 1, output)
        noticed = [line for number, line in enumerate(WAITS + NO_WAITS, 1)
                   if f"{file}:{number}:" in output]
        self.assertEqual(noticed, list(WAITS))

    def test_file_that_is_listed_for_one_kind_may_not_wait_in_another(self):
        self.copy_sources()
        file = "platform/linux/session/SleepWatch.cpp"
        with open(self.folder / file, "a", encoding="ascii") as source:
            source.write("bus_.call(m);\n")
        self.assertIn("bus_.call(m);", self.check("sources")[1])

    def test_list_and_page_name_nothing_but_what_waits(self):
        self.copy_sources()
        (self.folder / "core/TaskTimeout.cpp").write_text("// nothing\n", encoding="ascii")
        page = self.folder / "docs/architecture.md"
        page.write_text(page.read_text(encoding="utf-8").replace("`apps/helper/Holders.cpp`",
                                                                 "`apps/helper/Others.cpp`"),
                        encoding="utf-8")
        status, output = self.check("sources")
        self.assertEqual(status, 1)
        for file in ("core/TaskTimeout.cpp", "apps/helper/Others.cpp", "apps/helper/Holders.cpp"):
            self.assertIn(file, output)

    # --- programs

    def build(self, uses):
        """Root's program out of one source each, with or without the user's classes in it."""
        for name, text in (
                ("battery.cpp", "int battery() { return 1; }\n"),
                ("parts.cpp", ("int battery();\nint parts() { return battery(); }\n"
                               if uses else "int parts() { return 1; }\n")),
                ("main.cpp", "int parts();\nint main() { return parts(); }\n")):
            (self.folder / name).write_text(text, encoding="ascii")
        (self.folder / "build.ninja").write_text(f"""
rule object
  command = c++ -c $in -o $out
rule library
  command = ar rcs $out $in
rule program
  command = c++ $in -o $out
build battery.o: object battery.cpp
build parts.o: object parts.cpp
build main.o: object main.cpp
build libquorvane_objects.a: library battery.o
build platform/linux/libquorvane_linux.a: library battery.o
build apps/helper/libquorvane_helper_parts.a: library parts.o
build Quorvane.app/Contents/Linux/quorvane: program main.o parts.o battery.o
build Quorvane.app/Contents/Linux/{HELPER}: program main.o $
    apps/helper/libquorvane_helper_parts.a {uses}
""", encoding="ascii")
        subprocess.run(["ninja", "-C", str(self.folder)], check=True, capture_output=True)
        return self.check("programs", str(self.folder))

    def test_root_s_program_of_its_own_parts_is_in_order(self):
        status, output = self.build(uses="")
        self.assertEqual((status, output), (0, ""))

    def test_root_s_program_with_a_class_of_the_user_s_is_noticed(self):
        status, output = self.build(uses="battery.o")
        self.assertEqual(status, 1)
        self.assertIn("battery()", output)

    def test_root_s_program_with_the_user_s_library_is_noticed(self):
        status, output = self.build(uses="libquorvane_objects.a")
        self.assertEqual(status, 1)
        self.assertIn("is linked with libquorvane_objects.a", output)


if __name__ == "__main__":
    unittest.main()

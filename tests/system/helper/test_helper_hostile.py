"""The packaged helper and callers that send it whatever the bus lets through, on a private machine
whose polkit says yes to all of them."""

import os
import random
import unittest

from gi.repository import Gio, GLib

from file_watch import FileWatch
from helper_files import CPU_TUNE, DISABLE_TURBO
from helper_machine import Connection
from hostile_machine import HostileMachine
from hostile_messages import (METHODS, RawConnection, call, hostile_texts, with_descriptors,
                              wrong_arguments)

LIMIT = 20000  # milliseconds
DBUS = "org.freedesktop.DBus.Error."


class HelperHostileTest(HostileMachine):
    def send(self, message):
        """The reply's arguments, or the name of the error."""
        reply, _serial = self.user.bus.send_message_with_reply_sync(
            message, Gio.DBusSendMessageFlags.NONE, LIMIT, None)
        return reply.get_error_name() or reply.get_body().unpack()

    def tearDown(self):
        self.check_unharmed()
        self.check_nothing_is_changed()

    # --- arguments

    def test_arguments_of_every_wrong_type_are_refused(self):
        wrong = wrong_arguments()
        for method in METHODS:
            for name, arguments in wrong.items():
                with self.subTest(method=method, arguments=name):
                    self.assertEqual(self.send(call(method, arguments)), DBUS + "InvalidArgs")

    def test_missing_and_unasked_arguments_are_refused(self):
        text = GLib.Variant("(s)", (DISABLE_TURBO,))
        for method in METHODS:
            takes_text = "Module" in method
            self.assertEqual(self.send(call(method, None if takes_text else text)),
                             DBUS + "InvalidArgs")

    def test_open_files_are_refused_and_closed(self):
        for method in METHODS:
            for count in (1, 4, 16):
                self.assertEqual(self.send(with_descriptors(method, count)),
                                 DBUS + "InvalidArgs")
            self.check_unharmed()

    def test_names_of_no_extension_load_nothing_and_are_not_repeated(self):
        for text in hostile_texts():
            for method in ("LoadModuleNamed", "UnloadModuleNamed"):
                answer = self.send(call(method, GLib.Variant("(s)", (text,))))
                self.assertEqual(answer, ("The helper has no such extension",), text[:40])
        self.assertNotIn("x" * 100, self.log("bus"))

    def test_name_is_what_counts_and_the_path_is_never_opened(self):
        """With bundles of the caller's own there, and a pipe that would hold up who opens it."""
        for name in (DISABLE_TURBO, CPU_TUNE):
            os.makedirs(f"/tmp/own/{name}/Contents")
            os.mkfifo(f"/tmp/own/{name}/Contents/Info.plist")
        watch = FileWatch(FileWatch.OPENED, "/tmp/own", *(f"/tmp/own/{name}{rest}" for name in (
            DISABLE_TURBO, CPU_TUNE) for rest in ("", "/Contents", "/Contents/Info.plist")))
        self.addCleanup(watch.close)
        for path in ("/tmp/own/", "//tmp//own//", "../../../../tmp/own/", "/tmp/own/../own/"):
            for name in (DISABLE_TURBO, CPU_TUNE):
                for end in ("", "/", "///"):
                    text = GLib.Variant("(s)", (path + name + end,))
                    self.assertIn(name, self.send(call("LoadModuleNamed", text))[0])
                    self.assertIn(name, self.send(call("UnloadModuleNamed", text))[0])
        self.assertFalse(watch.has_seen())
        os.listdir("/tmp/own")
        self.assertTrue(watch.has_seen())  # it would have been

    # --- places

    def test_unknown_objects_interfaces_and_methods_are_refused(self):
        version = GLib.Variant("()", ())
        for path in ("/", "/com", "/com/TarnwickStudios/quorvane/helper/x", "/" + "x" * 10000):
            self.assertRegex(str(self.send(call("GetVersion", version, path=path))),
                             "Unknown(Object|Interface|Method)")
        for method in ("getVersion", "GetVersion_", "Quit", "x" * 255):
            self.assertEqual(self.send(call(method)), DBUS + "UnknownMethod")

    def test_other_interfaces_are_refused_by_the_bus(self):
        for interface in ("com.TarnwickStudios.quorvane", "org.freedesktop.DBus.Properties",
                          "org.freedesktop.DBus.ObjectManager", "x.y", None):
            message = call("GetVersion", interface=interface)
            self.assertEqual(self.send(message), DBUS + "AccessDenied", interface)

    def test_signals_and_replies_to_nothing_are_ignored(self):
        for name in (f"{DBUS}NoReply", f"{DBUS}AccessDenied"):
            question = call("GetVersion")
            question.set_serial(4711)
            question.set_sender(self.bus.connection.get_unique_name())
            error = Gio.DBusMessage.new_method_error_literal(question, name, "")
            error.set_destination(self.owner())
            self.user.bus.send_message(error, Gio.DBusSendMessageFlags.NONE)
        for member in ("NameOwnerChanged", "ProfileReleased", "PrepareForSleep"):
            signal = Gio.DBusMessage.new_signal("/org/freedesktop/DBus", "org.freedesktop.DBus",
                                                member)
            signal.set_destination(self.owner())
            self.user.bus.send_message(signal, Gio.DBusSendMessageFlags.NONE)
        self.user.bus.flush_sync(None)

    def test_forged_end_of_another_caller_ends_nothing(self):
        """A signal that says that somebody has left, sent by somebody else than the bus."""
        other = Connection()
        other.ask("LoadModuleNamed", DISABLE_TURBO)
        name = other.bus.get_unique_name()
        signal = Gio.DBusMessage.new_signal("/org/freedesktop/DBus", "org.freedesktop.DBus",
                                            "NameOwnerChanged")
        signal.set_destination(self.owner())
        signal.set_body(GLib.Variant("(sss)", (name, name, "")))
        self.user.bus.send_message(signal, Gio.DBusSendMessageFlags.NONE)
        self.user.bus.flush_sync(None)
        self.check_unharmed()
        self.assertNotEqual(self.snapshot(), self.found)
        other.ask("UnloadModuleNamed", DISABLE_TURBO)
        other.leave()

    def owner(self):
        return self.bus.call("GetNameOwner", GLib.Variant(
            "(s)", ("com.TarnwickStudios.quorvane.helper",)))

    # --- flags and bytes

    def test_calls_that_want_no_reply_get_none_and_are_carried_out(self):
        caller = Connection()
        for text in (DISABLE_TURBO, "nothing", CPU_TUNE):
            for method in METHODS:
                arguments = GLib.Variant("(s)", (text,)) if "Module" in method else None
                message = call(method, arguments)
                message.set_flags(Gio.DBusMessageFlags.NO_REPLY_EXPECTED)
                caller.bus.send_message(message, Gio.DBusSendMessageFlags.NONE)
                # More than its share at a time would be refused, unheard.
                caller.ask("GetVersion")
        caller.ask("UnloadModuleNamed", DISABLE_TURBO)
        caller.ask("UnloadModuleNamed", CPU_TUNE)
        caller.ask("DisableLowPowerMode")
        caller.leave()

    def test_damaged_messages_reach_nobody_or_do_no_harm(self):
        """Each with one byte that is another one, in all places and at random."""
        chance = random.Random(4711)
        whole = RawConnection.bytes_of(
            call("LoadModuleNamed", GLib.Variant("(s)", ("no such extension",))), 2)
        for place in list(range(len(whole))) * 4:
            damaged = bytearray(whole)
            damaged[place] = chance.randrange(256)
            connection = RawConnection()
            connection.send(bytes(damaged))
            connection.close()

    def test_rubbish_instead_of_a_message_reaches_nobody(self):
        chance = random.Random(4712)
        for length in (1, 16, 1000, 100_000):
            connection = RawConnection()
            connection.send(chance.randbytes(length))
            connection.close()

    def test_caller_that_ends_in_the_middle_of_a_message_does_no_harm(self):
        whole = RawConnection.bytes_of(
            call("LoadModuleNamed", GLib.Variant("(s)", (DISABLE_TURBO,))), 2)
        for length in range(1, len(whole)):
            connection = RawConnection()
            connection.send(whole[:length])
            connection.close()

    def test_caller_that_ends_behind_its_call_leaves_nothing(self):
        for method in METHODS * 20:
            arguments = GLib.Variant("(s)", (DISABLE_TURBO,)) if "Module" in method else None
            connection = RawConnection()
            connection.send(RawConnection.bytes_of(call(method, arguments), 2))
            connection.close()


if __name__ == "__main__":
    unittest.main()

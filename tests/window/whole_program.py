#!/usr/bin/python3
"""Starts the program itself and organises two photos with it, as a user does: whole_program.py PROGRAM

Looks at what the program leaves behind: the target, the settings, its log, what it asked the desktop for, and its
exit status. Needs a display and a session bus of its own."""

import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

from accessible import Atspi, GLib, application, below, find
from gi.repository import Gio

SETTINGS = {
    "selectedCopy": "0",
    "selectedFilterPhoto": "0",
    "selectedFilterVideo": "1",
    "selectedFolderFormat": "0",
    "selectedPhotoFormats": "0",
    "selectedResolution": "0",
    "selectedRotate": "1",
}


class ScreenSaver:
    """The desktop's service that can keep the display awake."""

    NAME = "org.freedesktop.ScreenSaver"
    INTERFACE = """<node><interface name="org.freedesktop.ScreenSaver">
        <method name="Inhibit"><arg type="s" direction="in"/><arg type="s" direction="in"/>
          <arg type="u" direction="out"/></method>
        <method name="UnInhibit"><arg type="u" direction="in"/></method></interface></node>"""

    def __init__(self):
        self.calls = []
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        interface = Gio.DBusNodeInfo.new_for_xml(self.INTERFACE).interfaces[0]
        self.bus.register_object("/org/freedesktop/ScreenSaver", interface, self.answer, None, None)
        Gio.bus_own_name_on_connection(self.bus, self.NAME, Gio.BusNameOwnerFlags.NONE)

    def answer(self, _bus, _sender, _path, _interface, method, arguments, invocation):
        self.calls.append((method, *arguments.unpack()))
        invocation.return_value(GLib.Variant("(u)", (7,)) if method == "Inhibit" else None)


class User:
    """Presses and types what a user would."""

    def __init__(self, process):
        self.process = process

    def sees(self, role, name):
        tree = application(self.process.pid)
        return tree and next((node for node in below(tree) if self.matches(node, role, name)), None)

    @staticmethod
    def matches(node, role, name):
        return (node.get_role_name() == role and node.get_name() == name
                and node.get_state_set().contains(Atspi.StateType.ENABLED))

    def waits_for(self, role, name):
        return find(lambda: self.sees(role, name), f"there is no {role} '{name}'")

    def presses(self, role, name):
        node = self.waits_for(role, name)
        try:
            node.do_action(0)
        except GLib.Error:  # a question that it asks keeps its answer waiting
            pass

    def picks(self, folder):
        self.waits_for("text", "Directory:").set_text_contents(str(folder))
        self.presses("push button", "Choose")
        find(lambda: not self.sees("text", "Directory:"), "the folder panel stays open")


def files_below(folder):
    return [str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file()]


def saved_settings(home):
    file = home / ".config/Kestrova/Kestrova.conf"
    lines = file.read_text().splitlines() if file.exists() else []
    return dict(line.split("=", 1) for line in lines if "=" in line)


def archived(value):
    """The bytes of a value, out of their escapes."""
    text = re.sub(r"\\x([0-9a-f]+)", lambda match: chr(int(match[1], 16)), value)
    return text.replace("\\0", "\0").encode("latin-1")


def make_home(home):
    photos = home / "photos"
    photos.mkdir()
    for name, size in (("one.jpg", 1001), ("two.jpg", 1002)):
        (photos / name).write_bytes(b"p" * size)
        os.utime(photos / name, (1420106400, 1420106400))  # 1 January 2015, 10:00:00 UTC
    opener = home / "bin/xdg-open"
    opener.parent.mkdir()
    opener.write_text('#!/bin/sh\necho "$1" >> "$HOME/opened"\n')
    opener.chmod(0o755)
    (home / "target").mkdir()


def organises(user, home):
    user.presses("push button", "Add folder…")
    user.picks(home / "photos")
    user.presses("push button", "Choose…")
    user.picks(home / "target")
    user.presses("check box", "Skip small videos")
    user.presses("push button", "Start")
    user.waits_for("label", "Status: Completed")
    user.presses("push button", "Open target folder")
    find(lambda: (home / "opened").exists(), "the target is not opened")
    user.presses("menu item", "Quit")
    user.presses("push button", "Exit")
    return user.process.wait(60)


def faults(home, screen_saver, status, log):
    folder = "2015/01/01-January-2015 Thursday"
    expected = {
        "the target": (sorted(files_below(home / "target")),
                       [f"{folder}/PHOTO_20150101100000_{size}.JPG" for size in (1001, 1002)]),
        "the photos": (sorted(files_below(home / "photos")), ["one.jpg", "two.jpg"]),
        "what was opened": ((home / "opened").read_text(), f"file://{home}/target\n"),
        "what the screen saver was asked": (screen_saver.calls,
                                            [("Inhibit", "Kestrova", "Kestrova Process"), ("UnInhibit", 7)]),
        "the exit status": (status, 0),
        "the last line of the log": (log.splitlines()[-1:], ["queue has completed"]),
    }
    settings = saved_settings(home)
    for key, folder in (("sourcePathList", "photos"), ("targetPath", "target")):
        url = f"file://{home}/{folder}".encode("utf-16-be")
        if url not in archived(settings.pop(key, "")):
            yield f"{key} does not hold the folder {folder}"
    expected["the settings"] = (settings, SETTINGS)
    for what, (found, wanted) in expected.items():
        if found != wanted:
            yield f"{what}: {found} instead of {wanted}"


def main(program):
    screen_saver = ScreenSaver()
    with tempfile.TemporaryDirectory() as folder:
        home = Path(folder)
        make_home(home)
        environment = dict(os.environ, HOME=folder, PATH=f"{folder}/bin:{os.environ['PATH']}", TZ="UTC", LC_ALL="C.UTF-8",
                           LANGUAGE="en", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_STYLE_OVERRIDE="Fusion")
        environment.pop("XDG_CONFIG_HOME", None)
        with subprocess.Popen([program], env=environment, stderr=subprocess.PIPE, text=True) as process:
            try:
                status = organises(User(process), home)
            finally:
                process.kill()
            found = list(faults(home, screen_saver, status, process.stderr.read()))
    sys.exit("\n".join(found) or 0)


if __name__ == "__main__":
    main(*sys.argv[1:])

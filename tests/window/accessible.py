"""What the tests that meet the program through its accessible tree share."""

import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 60  # seconds


def find(condition, what="nothing came of waiting"):
    """What the condition yields as soon as it yields anything. Requests to this process are answered meanwhile."""
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline:
        while GLib.MainContext.default().iteration(False):
            pass
        try:
            found = condition()
        except GLib.Error:  # the tree is changing
            found = None
        if found:
            return found
        time.sleep(0.1)
    sys.exit(what)


def application(pid):
    desktop = Atspi.get_desktop(0)
    programs = [desktop.get_child_at_index(i) for i in range(desktop.get_child_count())]
    return next((each for each in programs if each and each.get_process_id() == pid and each.get_child_count()), None)


def below(node):
    yield node
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child:
            yield from below(child)

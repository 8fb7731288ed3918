#!/usr/bin/python3
"""Starts the window and meets it as a screen reader does: screen_reader.py PROGRAM en|de

Every control that the keyboard reaches must have a name and a description, and the program must speak the language
of its user. Needs a display and a session bus of its own."""

import os
import subprocess
import sys
import tempfile

from accessible import Atspi, application, below, find

LOCALES = {"en": "en_GB.UTF-8", "de": "de_DE.UTF-8"}
START = {"en": "Start", "de": "Starten"}
CONTROLS = 12  # that are enabled before anything is chosen


def is_control(node):
    states = node.get_state_set()
    reached = states.contains(Atspi.StateType.FOCUSABLE) and states.contains(Atspi.StateType.SHOWING)
    return reached and node.get_role_name() not in ("frame", "filler", "panel", "menu bar", "menu item", "menu", "list item")


def labelled(node):
    return any(r.get_relation_type() == Atspi.RelationType.LABELLED_BY for r in node.get_relation_set())


def faults(window, language):
    controls = [node for node in below(window) if is_control(node)]
    for node in controls:
        what = f"{node.get_role_name()} '{node.get_name()}'"
        print(what, "-", node.get_description())
        if not node.get_name():
            yield f"{what} has no name"
        if not node.get_description():
            yield f"{what} has no description"
        if node.get_role_name() == "combo box" and not labelled(node):
            yield f"{what} has no label"
    if len(controls) < CONTROLS:
        yield f"only {len(controls)} controls are reached"
    if START[language] not in [node.get_name() for node in controls]:
        yield f"there is no button {START[language]}"


def main(program, language):
    with tempfile.TemporaryDirectory() as home:
        environment = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home, LANG=LOCALES[language], LC_ALL=LOCALES[language],
                           LANGUAGE=language, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", QT_STYLE_OVERRIDE="Fusion")
        with subprocess.Popen([program], env=environment) as process:
            try:
                window = find(lambda: application(process.pid))
                find(lambda: START[language] in [node.get_name() for node in below(window)])
                found = list(faults(window, language))
            finally:
                process.terminate()
    sys.exit("\n".join(found) or 0)


if __name__ == "__main__":
    main(*sys.argv[1:])

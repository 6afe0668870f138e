#!/usr/bin/python3
"""Walks the program's accessibility tree as a screen reader sees it.

Starts the driver (a11y_driver), and for every state it reports walks the
AT-SPI tree of its application: every control a student can work with that
is on screen must have a name, and the names the driver expects must be
there. Run under Xvfb and dbus-run-session (atspi_walk.sh sets that up).
"""
import subprocess
import sys
import time

import pyatspi

# Roles of controls that take input; anything that takes the focus counts too.
INTERACTIVE = {
    pyatspi.ROLE_PUSH_BUTTON, pyatspi.ROLE_TOGGLE_BUTTON, pyatspi.ROLE_RADIO_BUTTON,
    pyatspi.ROLE_CHECK_BOX, pyatspi.ROLE_TEXT, pyatspi.ROLE_ENTRY,
    pyatspi.ROLE_PASSWORD_TEXT, pyatspi.ROLE_LIST, pyatspi.ROLE_LIST_BOX,
    pyatspi.ROLE_COMBO_BOX, pyatspi.ROLE_SPIN_BUTTON, pyatspi.ROLE_SLIDER,
    pyatspi.ROLE_TABLE, pyatspi.ROLE_TREE_TABLE, pyatspi.ROLE_PAGE_TAB,
}
# Items inside a list or menu are named by their own text.
ITEMS = {pyatspi.ROLE_LIST_ITEM, pyatspi.ROLE_MENU_ITEM, pyatspi.ROLE_MENU,
         pyatspi.ROLE_TABLE_CELL, pyatspi.ROLE_MENU_BAR}


def find_app(pid, wait=10.0):
    end = time.time() + wait
    while time.time() < end:
        desktop = pyatspi.Registry.getDesktop(0)
        for app in desktop:
            try:
                if app is not None and app.get_process_id() == pid:
                    return app
            except Exception:
                pass
        time.sleep(0.2)
    return None


def walk(node, found, path=""):
    try:
        states = node.getState()
        role = node.getRole()
        name = node.name or ""
        description = node.description or ""
    except Exception:
        return
    if not states.contains(pyatspi.STATE_SHOWING):
        return
    here = f"{path}/{node.getRoleName()}"
    found.append((role, name, description, states, here))
    if role in ITEMS:
        return
    for child in node:
        if child is not None:
            walk(child, found, here)


def front_names(app):
    """Names in reading order in the active window, else the last one."""
    windows = [w for w in app if w is not None]
    front = next((w for w in windows if w.getState().contains(pyatspi.STATE_ACTIVE)),
                 windows[-1] if windows else None)
    found = []
    if front is not None:
        walk(front, found)
    return [name for _, name, _, _, _ in found]


def check_state(app, label, expectations):
    found = []
    for window in app:
        if window is not None:
            walk(window, found)
    problems = []
    for role, name, description, states, where in found:
        interactive = role in INTERACTIVE or (
            states.contains(pyatspi.STATE_FOCUSABLE) and role not in ITEMS)
        if interactive and not name.strip():
            problems.append(f"ohne Namen: {where}")
    names = [name for _, name, _, _, _ in found]
    descriptions = [d for _, _, d, _, _ in found]
    for wanted in expectations:
        if wanted.startswith("<"):
            # A screen reader's reading order is the tree's depth-first order.
            # Only the window in front counts: the form, not the page behind it.
            read = [n.strip() for n in front_names(app)]
            at = 0
            for part in wanted[1:].split("<"):
                hit = next((i for i in range(at, len(read)) if read[i].startswith(part)), None)
                if hit is None:
                    problems.append(f"„{part}“ wird nicht nach dem Vorigen gelesen; gelesen: "
                                    + " / ".join(n for n in read if n))
                    break
                at = hit + 1
        elif wanted.startswith("="):
            if not any(d.startswith(wanted[1:]) for d in descriptions):
                problems.append(f"keine Beschreibung beginnt mit „{wanted[1:]}“")
        elif not any(n.startswith(wanted) for n in names):
            problems.append(f"kein Name beginnt mit „{wanted}“")
    interactive_count = sum(1 for r, *_ in found if r in INTERACTIVE)
    print(f"{label}: {len(found)} Objekte, {interactive_count} Bedienelemente, "
          f"{len(problems)} Probleme", flush=True)
    for p in problems:
        print(f"  {p}", flush=True)
    return not problems


def main():
    driver = sys.argv[1]
    proc = subprocess.Popen([driver], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                            encoding="utf-8")
    ok = True
    states = 0
    app = None
    for line in proc.stdout:
        line = line.rstrip("\n")
        if line == "DONE":
            break
        if not line.startswith("READY "):
            continue
        label, *expectations = line[6:].split("|")
        if app is None:
            app = find_app(proc.pid)
            if app is None:
                print("Das Programm erscheint nicht auf dem Barrierefreiheits-Bus.")
                proc.kill()
                return 1
        ok = check_state(app, label, expectations) and ok
        states += 1
        proc.stdin.write("next\n")
        proc.stdin.flush()
    try:
        proc.wait(timeout=20)
    except subprocess.TimeoutExpired:
        proc.kill()
    if states < 20:
        print(f"nur {states} Zustände durchlaufen")
        return 1
    return 0 if ok else 1


if __name__ == "__main__":
    sys.exit(main())

"""accessibility.py VIEWER FAX: walks the viewer's tree as assistive programs do, and works it by its actions."""
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

failures = []


def check(told, what):
    if not told:
        failures.append(what)
        print(what)


def poll(ask, seconds=10):
    """The first answer that is no false one within the time; a part that goes away meanwhile counts as none."""
    end = time.monotonic() + seconds
    while True:
        try:
            found = ask()
        except GLib.Error:
            found = None
        if found or time.monotonic() > end:
            return found
        time.sleep(0.03)


def children(part):
    return [part.get_child_at_index(i) for i in range(part.get_child_count())]


def walk(part):
    part.clear_cache()
    yield part
    for child in children(part):
        if child is not None:
            yield from walk(child)


def find(part, role, name=None):
    return next((p for p in walk(part) if p.get_role_name() == role and name in (None, p.get_name())), None)


def has(part, state):
    part.clear_cache()
    return part.get_state_set().contains(state)


def press(part):
    action = part.get_action_iface()
    names = [Atspi.Action.get_action_name(action, i).lower() for i in range(Atspi.Action.get_n_actions(action))]
    check("press" in names, f"{part.get_name()!r} can't be pressed, only {names}")
    if "press" in names:
        Atspi.Action.do_action(action, names.index("press"))


def application():
    return next((a for a in children(Atspi.get_desktop(0)) if a is not None and a.get_process_id() == viewer.pid), None)


def main():
    window = poll(lambda: (a := application()) and find(a, "frame"))
    check(window, "no window")
    if not window:
        return
    if "--dump" in sys.argv:
        dump(window)
    page = poll(lambda: find(window, "document frame"))
    check(page and poll(lambda: "Pagina 1 of 3" in page.get_name()), f"page: {page and page.get_name()}")
    bar = find(window, "tool bar")
    for name in ("Prossima pagina", "Ruota a sinistra", "Adatta al meglio", "Page thumbnails"):
        check(bar and find(bar, "push button", name), f"no button {name!r}")
    for name in ("Pagina", "Scala"):
        check(find(window, "combo box", name), f"no combo {name!r}")
    previous, following = (find(bar, "push button", n) for n in ("Pagina precedente", "Prossima pagina"))
    check(poll(lambda: not has(previous, Atspi.StateType.ENABLED)), "page 0 is offered")

    press(following)
    check(poll(lambda: "Pagina 2 of 3" in find(window, "document frame").get_name()), "the button doesn't turn the page")
    check(poll(lambda: find(find(window, "status bar"), "label", "Pagina 2 of 3")), "the page pane says something else")
    check(poll(lambda: has(previous, Atspi.StateType.ENABLED)), "page 1 isn't offered")

    before = page.get_description()
    press(find(bar, "push button", "Adatta in altezza"))
    check(poll(lambda: find(window, "document frame").get_description() != before), f"the scale stays {before!r}")

    press(find(bar, "push button", "Page thumbnails"))
    items = poll(lambda: (s := find(window, "list")) and s.get_child_count() == 3 and children(s))
    check(items, "no strip of three")
    if items:
        check([i.get_name() for i in items] == [f"Pagina {n}" for n in (1, 2, 3)], "items have other names")
        press(items[2])
        check(poll(lambda: has(items[2], Atspi.StateType.SELECTED)), "the item isn't selected")
        check(poll(lambda: "Pagina 3 of 3" in find(window, "document frame").get_name()), "the item shows no page")


def dump(part, depth=0):
    part.clear_cache()
    states = [s.value_nick for s in part.get_state_set().get_states()]
    print("  " * depth, part.get_role_name(), repr(part.get_name()), repr(part.get_description()), states)
    for child in children(part):
        dump(child, depth + 1)


viewer = subprocess.Popen(sys.argv[1:3])
try:
    main()
finally:
    viewer.kill()
    viewer.wait()
sys.exit(1 if failures else 0)

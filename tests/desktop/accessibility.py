"""accessibility.py VIEWER FAX: walks the application's tree as assistive programs do, and works it by its actions."""
import os
import pathlib
import shutil
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
    check(names, f"{part.get_name()!r} can't be pressed")
    if names:
        Atspi.Action.do_action(action, names.index("press") if "press" in names else 0)


def application():
    return next((a for a in children(Atspi.get_desktop(0)) if a is not None and a.get_process_id() == viewer.pid), None)


def item(window, *path):
    """Of the menus; without the name of its key."""
    part = find(window, "menu bar")
    for name in path:
        part = next((p for p in walk(part) if p.get_role_name() == "menu item" and p.get_name().split("\t")[0] == name), None)
        if part is None:
            return None
    return part


def page_is(window, number, of=3):
    return f"Pagina {number} of {of}" in find(window, "document frame").get_name()


def saved(name):
    """A setting, as it is kept for the user."""
    files = pathlib.Path(os.environ["XDG_CONFIG_HOME"]).rglob("registry")
    return next((line.split("=")[1] for f in files for line in f.read_text().splitlines() if f"\\{name}=" in line), "")


def ticked(window, wanted, menu, name):
    """A menu's marks are brought up to date when it opens."""
    press(item(window, menu))
    told = poll(lambda: has(item(window, menu, name), Atspi.StateType.CHECKED) == wanted, 1)
    press(item(window, menu))
    return told


def message(window):
    return find(window, "status bar").get_child_at_index(0).get_name()


def box(title):
    return find(application(), "dialog", title) or find(application(), "alert", title)


def end_box(title, button):
    found = poll(lambda: box(title))
    if not found:
        return False
    press(find(found, "push button", button))
    return bool(poll(lambda: not box(title)))


def commands(window):
    """Each command of menus and bars, and what comes of it."""
    bar = find(window, "tool bar")
    scale = lambda: find(window, "document frame").get_description()
    checked = lambda name: has(find(bar, "push button", name), Atspi.StateType.CHECKED)
    shown = lambda role: (part := find(window, role)) and has(part, Atspi.StateType.SHOWING)
    refitted = lambda: press(find(bar, "push button", "Adatta in larghezza")) or scale()
    dialogs = [(("Pagina", "Vai a ..."), "Vai a...", "Annulla"), (("Pagina", "Proprieta"), "Proprietà", "OK"),
        (("Zoom", "Personalizza..."), "Zoom personalizzato", "Annulla"), (("File", "Esporta..."), "Esporta pagine", "Annulla"),
        (("File", "Apri..."), "Apri", "Annulla"), (("File", "Salva copia ruotata..."), "Salva copia ruotata", "Annulla"),
        (("Aiuto", "Informazioni su..."), "Tessarel", "OK"), ("Stampa", "Stampa", "Annulla"),
        (("File", "Stampa..."), "Stampa", "Annulla")]
    if shutil.which("lpstat") is None or subprocess.run(["lpstat", "-e"], capture_output=True).stdout == b"":
        for path in (("File", "Stampa pagine..."), ("Pagina", "Stampa pagina")):  # no printer, which a box tells
            dialogs.append((path, "Tessarel", "OK"))
    rows = [(("Pagina", "Ultimo"), lambda: page_is(window, 3)), (("Pagina", "Indietro"), lambda: page_is(window, 2)),
        (("Pagina", "Prima"), lambda: page_is(window, 1)), (("Pagina", "Avanti"), lambda: page_is(window, 2)),
        ("Prossima pagina", lambda: page_is(window, 3)), ("Pagina precedente", lambda: page_is(window, 2)),
        *[(path, lambda: scale() != before) for path in (("Zoom", "Zoom In"), ("Zoom", "Zoom Out"), "Zoom In", "Zoom Out",
           "Adatta in larghezza", "Adatta in altezza", "Zoom In", "Adatta al meglio", ("Zoom", "Adatta in Larghezza"),
           ("Zoom", "Adatta in Altezza"), ("Zoom", "Zoom In"), ("Zoom", "Adatta al meglio"))],
        ("Zoom su selezione", lambda: checked("Zoom su selezione")), ("Modo Zoom In", lambda: checked("Modo Zoom In")),
        ("Modo Zoom Out", lambda: checked("Modo Zoom Out")), ("Modo trascinamento", lambda: checked("Modo trascinamento")),
        (("Visualizza", "Mouse Mode", "Zoom In"), lambda: checked("Modo Zoom In")),
        (("Visualizza", "Mouse Mode", "Zoom Out"), lambda: checked("Modo Zoom Out")),
        (("Zoom", "Zoom su Selezione"), lambda: not checked("Zoom su selezione")),
        (("Visualizza", "Mouse Mode", "Trascina"), lambda: checked("Modo trascinamento")),
        *[(("Zoom", "Adattamento costante", name), lambda mode=mode: saved("KeepFit") == mode)
          for name, mode in (("In larghezza", "1"), ("In altezza", "2"), ("Pagina intera", "3"), ("Nessuno", "0"))],
        (("Visualizza", "PagSu e PagGiù voltano pagina"), lambda: saved("TurnAtEnd") == "0"),
        (("Visualizza", "Barra di Stato"), lambda: not shown("status bar")), (("Visualizza", "Barra di Stato"), lambda: shown("status bar")),
        (("Visualizza", "Barra Strumenti"), lambda: not shown("tool bar")), (("Visualizza", "Barra Strumenti"), lambda: shown("tool bar")),
        (("Visualizza", "Thumbnails"), lambda: shown("list")), ("Page thumbnails", lambda: not shown("list")),
        (("Visualizza", "Schermo intero"), lambda: ticked(window, True, "Visualizza", "Schermo intero")),
        (("Visualizza", "Schermo intero"), lambda: ticked(window, False, "Visualizza", "Schermo intero")),
        ("Adatta in larghezza", lambda: scale() != before),
        *[(path, lambda: refitted() != before) for path in (("Pagina", "Ruota a Sinistra"), ("Pagina", "Ruota a Destra"),
                                                            "Ruota a destra", "Ruota a sinistra")],
        (("File", "Sorveglia la cartella"), lambda: message(window).endswith("saranno segnalati")),
        (("File", "Apri subito i nuovi file"), lambda: saved("OpenNewFiles") == "1"),
        (("File", "Sorveglia la cartella"), lambda: message(window).endswith("non sono più segnalati")),
        (("Modifica", "Copia"), lambda: message(window) == "Pagina copiata negli appunti"),
        (("Modifica", "Seleziona una parte"), lambda: message(window).startswith("Trascinare il mouse")),
        *[(path, lambda title=title, button=button: end_box(title, button)) for path, title, button in dialogs],
        (("File", "File successivo"), lambda: window.get_name().startswith("zwei.tif")),
        (("File", "File precedente"), lambda: window.get_name().startswith("uno.tif")),
        (("File", "Ricarica"), lambda: page_is(window, 1)), (("File", "Uscita"), lambda: viewer.poll() == 0)]
    press(item(window, "Aiuto", "Informazioni su..."))
    about = poll(lambda: box("Tessarel"))
    check(about and about.get_description().startswith("Tessarel 12") and find(about, "label", about.get_description()),
          f"the box says {about and about.get_description()!r}")
    end_box("Tessarel", "OK")
    for path, effect in rows:
        part = find(bar, "push button", path) if isinstance(path, str) else item(window, *path)
        check(part, f"no command {path}")
        if part:
            before = scale()
            press(part)
            check(poll(effect, 4), f"{path}: nothing comes of it")


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
        check(poll(lambda: page_is(window, 3)), "the item shows no page")
    press(find(bar, "push button", "Page thumbnails"))
    press(find(bar, "push button", "Zoom In"))
    listener = subprocess.Popen([sys.executable, __file__, "--listen"], stdout=subprocess.PIPE, text=True)
    check(listener.stdout.readline() == "ready\n", "nobody listens")
    press(previous)
    check("Pagina 2 of 3" in (told := listener.communicate(timeout=10)[0]), f"the page's change is announced as {told!r}")
    commands(window)


def dump(part, depth=0):
    part.clear_cache()
    states = [s.value_nick for s in part.get_state_set().get_states()]
    print("  " * depth, part.get_role_name(), repr(part.get_name()), repr(part.get_description()), states)
    for child in children(part):
        dump(child, depth + 1)


def listen():
    """Ends with the first change of a name that is announced, or after a while."""
    def told(event):
        if event.source.get_role_name() == "document frame":
            print(event.source.get_name(), flush=True)
            Atspi.event_quit()
    Atspi.EventListener.new(told).register("object:property-change:accessible-name")
    GLib.timeout_add(5000, Atspi.event_quit)
    print("ready", flush=True)
    Atspi.event_main()


if sys.argv[1] == "--listen":
    listen()
    sys.exit()
folder = pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "faxes"
folder.mkdir()
for name in ("uno.tif", "zwei.tif"):
    shutil.copy(sys.argv[2], folder / name)
viewer = subprocess.Popen([sys.argv[1], folder / "uno.tif"])
try:
    main()
finally:
    viewer.kill()
    viewer.wait()
sys.exit(1 if failures else 0)

# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""One window in a session: second launches, what the desktop asks for over the bus, and no bus at all."""
import signal

from gi.repository import GLib

from brevant import Program
from cases import run
from instance import Foreign, ask, launch, owner, windows
from session import equal, wait_for

TEXT = b"a  {  color : red ; }\n"
SHORT = b"a{color:red}"
ODD = ["a b.css", "100%25 %.css", "größe 日本.css", "two\nlines.css", "\"it's\" $HOME `x`.css", "#?&;=.css",
       "-dash.css"]


def shown(program):
    program.expect_active("Brevant")
    equal(windows(program.session), len(program.windows()), "all windows are those of the first")


def without_files(case):
    program = case.start()
    case.drag_source()
    program.expect_active("drag-source")
    equal(launch(case), (0, b""))
    program.expect_active("Brevant")
    equal(program.names(), [])
    equal(program.messages(), "")


def files_with_odd_names(case):
    paths = [case.file(name) for name in ODD]
    program = case.start(paths[0])
    program.expect_status("1 item")
    # By their whole path, from the folder they are in, and one that is on the list already.
    equal(launch(case, *paths[:4]), (0, b""))
    equal(launch(case, "--", *ODD[4:]), (0, b""))
    program.expect_status(f"{len(ODD)} items")
    equal(launch(case, "--minify"), (0, b""))
    program.expect_status("Well done!")
    for path in paths:
        equal(path.with_suffix(".min.css").read_bytes(), b"a{color:red}", repr(path.name))
    equal(program.messages(), "")


def a_folder_and_nothing_useful(case):
    case.file("site/a.css")
    program = case.start()
    equal(launch(case, "site", "none.css", "notes.txt", "sub/../site"), (0, b""))
    program.expect_status("2 items")  # nobody looks whether a file is there


def minimised(case):
    program = case.start()
    case.session.run("xdotool", "getactivewindow", "windowminimize")
    wait_for("the window to be minimised", lambda: not program.windows())
    equal(launch(case, case.file("a.css")), (0, b""))
    shown(program)
    program.expect_names("a.css")


def hidden_during_a_run(case):
    held = case.held_file("held.css")
    program = case.start(held.path)
    program.expect_names("held.css")
    program.click(program.button("Minify"))
    held.expect_reader()
    program.key("alt+F4")
    wait_for("the window to go", lambda: not program.windows())
    equal(launch(case, case.file("a.css")), (0, b""))
    shown(program)
    held.release(TEXT)
    program.expect_status("Well done!")
    program.expect_names("held.css", "a.css")
    equal(program.process.poll(), None, "the close was taken back")


def during_the_last_file(case):
    held = case.held_file("held.css")
    first = case.start(held.path)
    first.expect_names("held.css")
    first.click(first.button("Minify"))
    held.expect_reader()
    first.process.send_signal(signal.SIGTERM)
    wait_for("the window to go", lambda: not first.windows())
    second = case.start(case.file("a.css"))
    second.expect_names("a.css")
    equal(first.process.poll(), None, "still busy with its file")
    held.release(TEXT)
    first.wait_for_exit()
    equal(owner(case.session), second.process.pid)


def minify_in_the_first(case):
    source = case.file("a b.css")
    program = case.start("--minify", source)
    program.expect_status("Well done!")
    equal(source.with_name("a b.min.css").read_bytes(), SHORT)


def the_launcher_is_told(case):
    """With the time of the click, and told that the launch is over."""
    log = case.session.home / "events"
    with open(log, "wb") as output:
        case.session.start("stdbuf", "-oL", "xev", "-root", "-event", "property", stdout=output)
    program = case.start()
    wait_for("events of the root window", log.read_bytes)
    case.drag_source()
    program.expect_active("drag-source")
    equal(launch(case, DESKTOP_STARTUP_ID="launcher/brevant/1-0-host_TIME1", XDG_ACTIVATION_TOKEN="t"),
          (0, b""))
    program.expect_active("Brevant")
    wait_for("the end of the launch", lambda: b"_NET_STARTUP_INFO_BEGIN" in log.read_bytes())
    equal(program.messages(), "")


def asked_over_the_bus(case):
    program = case.start()
    first = case.file("a b.css")
    ask(case.session, "Open", [first.as_uri(), "https://brevant.example/b.css"])
    program.expect_names("a b.css")
    second = case.file("c.css")
    ask(case.session, "ActivateAction", "minify", [GLib.Variant("as", [second.as_uri()])])
    program.expect_status("Well done!")
    equal(second.with_name("c.min.css").read_bytes(), SHORT)
    ask(case.session, "ActivateAction", "unknown", [])
    ask(case.session, "ActivateAction", "preferences", [])
    program.expect_active("Preferences")
    program.key("Escape")
    ask(case.session, "ActivateAction", "add-files", [])
    program.expect_active("Choose Files or Folders")
    ask(case.session, "ActivateAction", "add-files", [])
    third = case.file("d.css")
    ask(case.session, "Open", [third.as_uri()])  # while the panel is open
    program.expect_names("a b.css", "c.css", "d.css")
    program.key("Escape")
    program.expect_active("Brevant")
    equal(program.messages(), "")


def started_by_the_bus(case):
    services = case.session.folder / "home/data/dbus-1/services"  # of the home that the bus was started in
    services.mkdir(parents=True, exist_ok=True)
    (services / "org.brevant.Brevant.service").write_text(
        f"[D-BUS Service]\nName=org.brevant.Brevant\nExec={case.brevant} --gapplication-service\n")
    case.session.bus.call_sync("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "ReloadConfig", None, None,
                               0, 5000, None)
    source = case.file("a b.css")
    ask(case.session, "Open", [source.as_uri()], start=True)
    program = case.keep(Program(case.session, None, process=Foreign(owner(case.session))))
    program.expect_names("a b.css")
    equal(launch(case, case.file("c.css")), (0, b""))
    program.expect_names("a b.css", "c.css")
    (services / "org.brevant.Brevant.service").unlink()
    program.key("ctrl+q")
    program.wait_for_exit()


def waiting_for_the_bus(case):
    process = case.session.start(case.brevant, "--gapplication-service")
    wait_for("the name", lambda: owner(case.session) == process.pid)
    equal(windows(case.session), 0)
    equal(launch(case, "--gapplication-service"), (0, b""))
    ask(case.session, "Activate")
    wait_for("the window", lambda: windows(case.session) == 1)
    process.terminate()
    equal(process.wait(10), 0)
    idle = case.session.start(case.brevant, "--gapplication-service")
    wait_for("the end of a service that nobody asks", lambda: idle.poll() is not None)
    equal((idle.returncode, owner(case.session)), (0, None))


def without_a_display(case):
    program = case.start()
    equal(launch(case, case.file("a.css"), DISPLAY=None, QT_QPA_PLATFORM=None), (0, b""))
    program.expect_names("a.css")


def without_a_bus(case):
    for address in (None, "unix:path=/nonexistent/bus", "nonsense"):
        environment = {**case.session.environment, "XDG_RUNTIME_DIR": str(case.session.home)}
        environment.pop("DBUS_SESSION_BUS_ADDRESS")
        environment.pop("QT_LINUX_ACCESSIBILITY_ALWAYS_ON")
        if address:
            environment["DBUS_SESSION_BUS_ADDRESS"] = address
        case.session.home.chmod(0o700)
        log = case.session.home / "messages"
        with open(log, "wb") as output:
            started = [case.session.start(case.brevant, case.file("a.css"), env=environment, stderr=output)
                       for _ in range(2)]
        wait_for("a window for each launch", lambda: windows(case.session) == 2)
        for process in started:
            process.terminate()
            equal(process.wait(10), 0)
        equal(log.read_bytes(), b"")


def help_and_wrong_words(case):
    program = case.start()
    status, words = launch(case, "--help")
    equal((status, b"--minify" in words, b"gapplication" in words), (0, True, False))
    status, words = launch(case, "--none")
    equal((status, words.startswith(b"brevant: ")), (2, True))
    equal(owner(case.session), program.process.pid)


run([without_files, files_with_odd_names, a_folder_and_nothing_useful, minimised, hidden_during_a_run,
     during_the_last_file, minify_in_the_first, the_launcher_is_told, asked_over_the_bus, started_by_the_bus,
     waiting_for_the_bus, without_a_display, without_a_bus, help_and_wrong_words])

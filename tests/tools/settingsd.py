"""Runs the settings daemon: what it reports and keeps, and that one copy runs at a time."""

import os
import shlex
import signal
import subprocess
import time

from support.harness import expect, get, main, put

BUILD = os.environ["CC_BUILD_DIR"]
# In an emulator the executable of every other process is the emulator: a running copy is not seen.
EMULATOR = shlex.split(os.environ.get("CC_RUN", ""))
PROGRAM = [*EMULATOR, os.path.join(BUILD, "example_settingsd")]


def start(*arguments):
    environment = dict(os.environ, COMMON_CORE_ETC_DIR=os.path.join(BUILD, "lng/"),
                       COMMON_CORE_DATA_DIR=os.getcwd())
    return subprocess.Popen([*PROGRAM, "in", "state", *arguments], env=environment,
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)


def wait_for_lock(daemon):
    """Waits until the pid file names the daemon: there, but empty, it is still anybody's."""
    deadline = time.monotonic() + 30
    while time.monotonic() < deadline:
        if os.path.exists("settingsd.pid") and int(get("settingsd.pid") or 0) == daemon.pid:
            return
        time.sleep(0.01)


def run(*arguments):
    daemon = start(*arguments)
    out, err = daemon.communicate(timeout=60)
    return daemon.returncode, out, err


def check():
    os.mkdir("in")
    os.mkdir("state")
    put("in/a.xml", '<settings><setting name="volume" kind="Integer" value="7" min="0" max="10" '
        'flags="shown advanced"/><setting name="title" kind="text">caf&amp;e</setting></settings>')
    put("in/b.xml", '<settings>\n  <setting name="night" kind="switch" value="on"/>\n'
        '  <setting name="loud" kind="integer" value="70" min="0" max="10"/>\n</settings>\n')
    put("in/c.xml", "<settings>\n  <>\n</settings>\n")
    put("in/note.txt", "<")

    code, out, err = run("eng", "2")
    expect("output", (0, 'Started: 3 settings, 1 documents without errors.\nnight is now "on".\n'
                      'title is now "caf&e".\nvolume is now "7".\nStopped.\n'), (code, out))
    expect("reports, each once",
           "The document contains an error.\n"
           'The value of the setting "loud" is outside its range, 0 to 10.\n'
           "File: in/b.xml\nLine 3, column 68\n"
           "The document contains an error.\nA tag has no element name.",
           err.split(" The name comes")[0])
    expect("document of the state", '<settings>\n'
           '  <setting name="night" kind="switch" flags="" value="on"/>\n'
           '  <setting name="title" kind="text" flags="" value="caf&amp;e"/>\n'
           '  <setting name="volume" kind="integer" flags="shown advanced" value="7"/>\n'
           "</settings>\n", get("state/settings.xml").decode())

    # The state is known again, so only what changed is news; in the user's language.
    put("in/b.xml", '<settings><setting name="night" kind="switch" value="no"/></settings>')
    code, out, err = run("deu", "1")
    expect("second run", "Gestartet: 3 Einstellungen, 2 fehlerfreie Dokumente.\n"
           "night ist jetzt „no“.\nBeendet.\n", out)
    expect("language of reports", "Das Dokument enthält einen Fehler.\n", err.split("In einem")[0])

    # A copy runs, another one finds it; the next one starts after it was stopped, and after a crash.
    for ending in [signal.SIGTERM, signal.SIGKILL]:
        running = start("eng")
        wait_for_lock(running)
        if not EMULATOR:
            expect("a second copy", (1, "", "Another copy is running already.\n"), run("eng", "1"))
        running.send_signal(ending)
        out, _ = running.communicate(timeout=60)
        stopped = ending == signal.SIGTERM
        expect("stopped", stopped, running.returncode == 0 and out.endswith("Stopped.\n"))
        expect("pid file", stopped, not os.path.exists("settingsd.pid"))
        expect("the next copy", 0, run("eng", "1")[0])


main(check)

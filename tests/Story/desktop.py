# SPDX-FileCopyrightText: the Roamly developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""A desktop of one's own: a screen, a session bus and a window manager that nobody else sees, with folders to go with
them, all gone at the end whatever happens."""

import contextlib
import ctypes
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time

SCREEN = (1600, 1000)
NEEDED_PROGRAMS = ("Xvfb", "dbus-daemon", "openbox")

_SET_DEATH_SIGNAL = 1
_SET_CHILD_SUBREAPER = 36
_libc = ctypes.CDLL(None)


class TimedOut(Exception):
    """Something that was waited for did not come; the text says what."""


def wait_for(what, condition, seconds=20.0):
    """The first true value of the condition; a TimedOut naming `what` when there is none in time."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise TimedOut(f"{what} did not come within {seconds:.0f} s")
        time.sleep(0.02)


def missing_programs():
    return [program for program in NEEDED_PROGRAMS if shutil.which(program) is None]


def _die_with_parent():
    _libc.prctl(_SET_DEATH_SIGNAL, signal.SIGKILL)


def _children():
    listed = pathlib.Path(f"/proc/self/task/{os.getpid()}/children")
    return [int(word) for word in listed.read_text().split()]


def _end_children():
    """What the processes started here started in turn has become a child of this one, and ends too."""
    for kind, patience in ((signal.SIGTERM, 2.0), (signal.SIGKILL, 2.0)):
        end = time.monotonic() + patience
        told = set()
        while _children() and time.monotonic() < end:
            for child in _children():
                if child not in told:
                    told.add(child)
                    with contextlib.suppress(ProcessLookupError):
                        os.kill(child, kind)
            with contextlib.suppress(ChildProcessError):
                while os.waitpid(-1, os.WNOHANG)[0]:
                    pass
            time.sleep(0.02)


class Desktop:
    """The environment of the programs on it is `environment`; their working folder is `folder`."""

    def __init__(self, folder):
        self.folder = folder
        self.environment = {
            "PATH": os.environ["PATH"],
            "HOME": str(folder),
            "LANG": "C.UTF-8",
            "LC_ALL": "C.UTF-8",
            "TZ": "Europe/Lisbon",
            "QT_QPA_PLATFORM": "xcb",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
        }
        for name, variable in (("config", "XDG_CONFIG_HOME"), ("data", "XDG_DATA_HOME"), ("cache", "XDG_CACHE_HOME"),
                               ("state", "XDG_STATE_HOME"), ("runtime", "XDG_RUNTIME_DIR")):
            (folder / name).mkdir(mode=0o700)
            self.environment[variable] = str(folder / name)

    def start(self, *command, **how):
        """Its messages go to a file of its name in the folder."""
        log = open(self.folder / f"{pathlib.Path(command[0]).name}.log", "ab")
        with log:
            return subprocess.Popen(command, env=self.environment, cwd=self.folder, stdin=subprocess.DEVNULL,
                                    stderr=log, preexec_fn=_die_with_parent, **{"stdout": log, **how})

    def run(self, *command):
        """What the program wrote; it must succeed."""
        done = subprocess.run(command, env=self.environment, cwd=self.folder, stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, check=False, timeout=60)
        if done.returncode != 0:
            raise RuntimeError(f"{' '.join(map(str, command))} ended with {done.returncode}: {done.stderr}")
        return done.stdout

    def _start_screen(self):
        reading, writing = os.pipe()
        self.start("Xvfb", "-displayfd", str(writing), "-screen", "0", f"{SCREEN[0]}x{SCREEN[1]}x24", "-nolisten", "tcp",
                   pass_fds=(writing,))
        os.close(writing)
        with os.fdopen(reading) as answer:
            self.environment["DISPLAY"] = f":{int(answer.readline())}"

    def _start_bus(self):
        bus = self.start("dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1",
                         stdout=subprocess.PIPE, text=True)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def _start_window_manager(self):
        # It runs the command once it manages windows; without it no window is ever the active one.
        ready = self.folder / "window-manager-is-ready"
        self.start("openbox", "--sm-disable", "--startup", f"touch {ready}")
        wait_for("the window manager", ready.exists)


@contextlib.contextmanager
def desktop():
    """This process's environment becomes the desktop's, so that it can be read through the accessibility bus: one
    desktop a process."""
    _libc.prctl(_SET_CHILD_SUBREAPER, 1)
    with tempfile.TemporaryDirectory(prefix="roamly-desktop-", ignore_cleanup_errors=True) as folder:
        here = Desktop(pathlib.Path(folder))
        try:
            here._start_screen()
            here._start_bus()
            here._start_window_manager()
            os.environ.update(here.environment)
            yield here
        finally:
            _end_children()

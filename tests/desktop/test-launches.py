# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Launches at the same moment: one window, and no file lost."""
import subprocess

from cases import run
from instance import Badges, owner, windows
from session import Failure, equal, wait_for

PAIRS, ENDINGS = 200, 50


class Launches:
    """Programs with one file each, started without waiting for anything."""

    def __init__(self, case):
        self.case, self.badges, self.processes = case, Badges(case.session), []
        self.environment = dict(case.session.environment)
        self.environment.pop("QT_LINUX_ACCESSIBILITY_ALWAYS_ON")

    def start(self, *arguments):
        self.processes.append(self.case.session.start(self.case.brevant, *arguments, env=self.environment,
                                                      stdout=subprocess.PIPE, stderr=subprocess.STDOUT))
        return self.processes[-1]

    def running(self):
        return [process for process in self.processes if process.poll() is None]

    def end(self):
        """All that still run are ended; nobody has complained."""
        self.badges.end()
        for process in self.processes:
            if process.poll() is None:
                process.terminate()
            process.wait(10)
            equal((process.returncode, process.stdout.read()), (0, b""))
            process.stdout.close()
            self.case.session.processes.remove(process)


def pairs(case):
    files = case.file("a.css"), case.file("b.css")
    for number in range(PAIRS):
        launches = Launches(case)
        for file in files:
            launches.start(file)
        wait_for(f"one of pair {number} to end", lambda: len(launches.running()) == 1)
        launches.badges.expect(2)
        equal(owner(case.session), launches.running()[0].pid)
        equal(windows(case.session), 1)
        launches.end()


def while_the_first_ends(case):
    file = case.file("a.css")
    for number in range(ENDINGS):
        launches = Launches(case)
        first = launches.start()
        wait_for("the first window", lambda: owner(case.session) == first.pid and windows(case.session) == 1)
        if number % 2:
            first.terminate()
        second = launches.start(file)
        if not number % 2:
            first.terminate()
        try:
            launches.badges.expect(1)  # in the first before it ended, or in a window of its own
        except Failure as failure:
            raise Failure(f"ending {number}: {failure}") from failure
        # Only then does it know how to be ended.
        wait_for("the second to hand its file over, or to show it", lambda: second.poll() is not None or (
            owner(case.session) == second.pid and windows(case.session) == 1))
        launches.end()


run([pairs, while_the_first_ends])

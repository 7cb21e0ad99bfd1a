# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The sound at the end of a run, as a sound server gets it."""
import re
import subprocess

from cases import run
from session import end, equal, wait_for

RATE = 44100
BYTES = 2 * RATE  # of one second


class Recording:
    """What the sound server plays, as the bytes of 16-bit samples."""

    def __init__(self, session):
        self.session = session
        self.file = session.home / "recording.raw"
        # A sink that nobody plays to sleeps, and loses the first moments when it is woken.
        self.silence = session.start("pacat", "--playback", "--raw", "--latency-msec=30", "-d", "probe",
                                     "/dev/zero")
        with open(self.file, "wb") as output:
            self.recorder = session.start("parec", "--latency-msec=30", f"--rate={RATE}", "--channels=1",
                                          "--format=s16le", "-d", "probe.monitor", stdout=output)
        self.listen(0.3)

    def listen(self, seconds):
        """Goes on until that much more has been recorded."""
        wanted = self.file.stat().st_size + seconds * BYTES
        wait_for(f"{seconds} s of sound", lambda: self.file.stat().st_size >= wanted)

    def heard(self):
        """Length in seconds and loudest sample, 0 to 1, of all that is not silence."""
        raw = ["-t", "raw", "-r", str(RATE), "-e", "signed", "-b", "16", "-c", "1", str(self.file)]
        cut = ["silence", "1", "1s", "0.1%", "reverse"]
        done = subprocess.run(["sox", *raw, "-n", *cut, *cut, "stat"], capture_output=True, check=True,
                              timeout=30, stdin=subprocess.DEVNULL)
        facts = dict(re.findall(r"^([^:\n]+):\s+([-0-9.]+)$", done.stderr.decode(), re.M))
        facts = {re.sub(r"\s+", " ", key): float(value) for key, value in facts.items()}
        if not facts.get("Samples read"):
            return 0.0, 0.0
        return facts["Length (seconds)"], facts["Maximum amplitude"]

    def stop(self):
        end(self.recorder)
        end(self.silence)


def minified(case):
    recording = Recording(case.session)
    program = case.start(case.file("a.css"))
    program.expect_names("a.css")
    program.click(program.button("Minify"))
    program.expect_status("Well done!")
    recording.listen(1.5)
    recording.stop()
    equal(program.messages(), "")
    return recording.heard()


def it_is_heard(case):
    seconds, loudest = minified(case)
    print(f"      heard for {seconds:.2f} s, loudest {loudest:.2f}")
    equal(0.2 < seconds < 1.2 and loudest > 0.05, True, f"a short sound, not {seconds} s of {loudest}")


def it_is_not_heard_when_it_is_off(case):
    case.settings('{"soundCheckerKeyString": false}')
    equal(minified(case), (0.0, 0.0))


run([it_is_heard, it_is_not_heard_when_it_is_off], sound=True)

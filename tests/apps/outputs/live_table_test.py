# SPDX-License-Identifier: MIT
"""live_table_test.py DRIVER RECORDING SCREENS [--write]: looks at the live table in a terminal of tmux as a user would,
and compares each screen with the file of its name in the folder SCREENS. Prints each fault; exits 1 if there is one."""
import os
import pathlib
import subprocess
import sys
import time

DRIVER, RECORDING, SCREENS = sys.argv[1:4]
WRITES = "--write" in sys.argv
PATIENCE = 20  # seconds
faults = 0


def tmux(*arguments):
    return subprocess.run(["tmux", "-L", f"trevallo-{os.getpid()}", "-f", os.devnull, *arguments], check=True,
                          capture_output=True, text=True, timeout=PATIENCE).stdout


def screen():
    return tmux("capture-pane", "-p")


def settled(done):
    """The screen as soon as it is as wanted, or after all patience."""
    end = time.monotonic() + PATIENCE
    while not done(screen()) and time.monotonic() < end:
        time.sleep(0.05)
    return screen()


def expect(what, wanted, seen):
    global faults
    if wanted != seen:
        faults += 1
        print(f"FAILED: {what}\n--- wanted\n{wanted}\n--- seen\n{seen}")


def expect_screen(name):
    file = pathlib.Path(SCREENS, f"{name}.txt")
    if WRITES:
        time.sleep(1)
        file.write_text(screen())
    wanted = file.read_text()
    expect(name, wanted, settled(lambda text: text == wanted))


def press(*keys):
    tmux("send-keys", *keys)


environment = {key: value for key, value in os.environ.items() if key != "NO_COLOR"}
os.environ.clear()
os.environ.update(environment, LC_ALL="C.UTF-8", TZ="Asia/Kathmandu")
command = f"echo before; '{DRIVER}' '{RECORDING}'; echo after $?; exec sleep {10 * PATIENCE}"
tmux("new-session", "-d", "-x", "80", "-y", "24", command)
try:
    expect_screen("table")
    press("a", "r", "Down", "Down")
    expect_screen("by-altitude")
    press("Enter", "PageDown")
    expect_screen("details")
    press("Escape")
    expect_screen("by-altitude")
    press("/", "4", "1", "Enter")
    expect_screen("filtered")
    tmux("resize-window", "-x", "120", "-y", "12")
    expect_screen("filtered-wide")
    tmux("resize-window", "-x", "50", "-y", "30")
    press("Escape")
    expect_screen("narrow")
    press("?")
    expect_screen("help")
    press("q", "q")
    after = settled(lambda text: "after" in text)
    expect("the terminal is as it was", "before\nafter 0\n", after.rstrip("\n") + "\n")
finally:
    tmux("kill-server")
sys.exit(1 if faults else 0)

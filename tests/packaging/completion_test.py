# SPDX-License-Identifier: MIT
"""completion_test.py PROGRAM SHELL COMPLETION: what the completion of this shell offers. Prints each fault; exits 1 if
there is one."""
import os
import pathlib
import subprocess
import sys
import tempfile

PROGRAM, SHELL, COMPLETION = sys.argv[1:4]

# Bash splits words at = and calls a function, which leaves its offers in a variable.
BASH = r"""
source "$1"; shift
COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
_trevallo "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
printf '%s\n' "${COMPREPLY[@]}"
"""

# Zsh hands over through functions of its completion system, of which these have what the script uses.
ZSH = r"""
setopt extended_glob
script=$1; shift
words=("$@") CURRENT=$# word=${@[-1]}
compset() { word=${word#*=} }
offer() { local each; for each; do [[ $each != $word* ]] || print -r -- $each; done }
compadd() { shift; offer "$@" }
_files() { [[ $1 == -/ ]] && offer *(N/) || offer *(N) }
_message() { : }
complete_words() { source $script }
complete_words
"""

faults = 0


def offers(*words):
    if SHELL.endswith("zsh"):
        command = [SHELL, "-fc", ZSH, "zsh", COMPLETION, PROGRAM, *words]
    else:
        split = [part for word in words for part in word.replace("=", " = ").split(" ") if part or word == ""]
        command = [SHELL, "--norc", "-c", BASH, "bash", COMPLETION, PROGRAM, *split]
    return subprocess.run(command, capture_output=True, text=True, timeout=300).stdout.split()


def expect(what, condition, words, offered):
    global faults
    if not condition:
        faults += 1
        print(f"FAILED: {what}\n  {' '.join(words)} -> {offered}")


def expect_offers(what, words, *wanted):
    """Offers these among others, all of which start as the last word does."""
    offered = offers(*words)
    start = words[-1].rpartition("=")[2]
    expect(what, set(wanted) <= set(offered) and all(offer.startswith(start) for offer in offered), words, offered)


def expect_only(what, words, *wanted):
    offered = offers(*words)
    expect(what, sorted(offered) == sorted(wanted), words, offered)


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    pathlib.Path("pages").mkdir()
    pathlib.Path("monday.avr").touch()

    expect_offers("commands come first", [""], "track", "simulate")
    expect_offers("a command is completed", ["tr"], "track")
    expect_offers("the program's own options", ["--"], "--help", "--version")
    expect_offers("the options of a command", ["track", "--"], "--format", "--html", "--help")
    expect_offers("the options of another command", ["simulate", "--"], "--seed", "--truth")
    expect_offers("an option is completed", ["simulate", "--aircraft", "5", "--ou"], "--output")
    expect_offers("commands of a command", ["db", ""], "check", "show")
    expect_offers("the options of a command of a command", ["db", "merge", "--"], "--output")
    expect_only("files for a command of a command", ["db", "show", ""], "monday.avr", "pages")
    expect_only("files for an option's short form", ["db", "merge", "-o", "mon"], "monday.avr")
    expect_only("files for an option that takes ports too", ["track", "--sbs", "mon"], "monday.avr")
    expect_only("words among an option's values", ["track", "--speed", ""], "max")
    expect_offers("the values of an option", ["track", "--format", ""], "auto", "avr", "beast")
    expect_offers("a value is completed", ["track", "--format", "be"], "beast")
    expect_offers("values behind an equals sign", ["simulate", "--format=avr-"], "avr-time")
    expect_offers("all values behind an equals sign", ["track", "--log="], "debug", "error")
    expect_only("a number is the user's", ["track", "--timeout", ""])
    expect_only("folders for an option that takes one", ["track", "--html", ""], "pages")
    expect_only("files for an option that takes one", ["simulate", "--truth", "mon"], "monday.avr")
    expect_only("files for a command", ["track", "--merge", ""], "monday.avr", "pages")
sys.exit(faults != 0)

# SPDX-License-Identifier: MIT
import subprocess
import sys
import threading

import pytest

import trevallo
from trevallo import Log

from frames import IDENTITY

Lines = list[tuple[Log.Level, str]]


def test_a_callable_takes_level_and_line(lines: Lines) -> None:
    Log.log(Log.Warning, "Host", "it rains")
    [(level, line)] = lines
    assert level is Log.Level.Warning
    assert line.split() == ["[Host", "]", "it", "rains"]


def test_lines_below_the_show_level_are_not_called_for(lines: Lines) -> None:
    Log.setShowLevel(Log.Error)
    Log.log(Log.Warning, "Host", "it rains")
    assert lines == []


def test_a_derived_handler_takes_the_lines_of_the_library() -> None:
    class Handler(trevallo.LogHandler):
        def __init__(self) -> None:
            super().__init__()
            self.taken: Lines = []

        def handle(self, level: Log.Level, line: str) -> None:
            self.taken.append((level, line))

    handler = Handler()
    Log.setLogHandler(handler)
    trevallo.ModeSDecoder()
    assert [(level, line.split("] ")[1]) for level, line in handler.taken] == [(Log.Info, "Initialized.")]


def test_a_handler_that_does_not_say_what_it_does_raises() -> None:
    Log.setLogHandler(trevallo.LogHandler())
    with pytest.raises(NotImplementedError):
        Log.log(Log.Error, "Host", "it rains")


@pytest.mark.parametrize("sink", [42, "stderr", object()])
def test_what_cannot_be_called_is_no_handler_and_leaves_the_one_that_is_there(sink: object, lines: Lines) -> None:
    with pytest.raises(TypeError):
        Log.setLogHandler(sink)  # type: ignore[arg-type]
    Log.log(Log.Error, "Host", "still here")
    assert len(lines) == 1


class Refused(Exception):
    pass


def refuse(level: Log.Level, line: str) -> None:
    raise Refused(line)


def test_what_a_handler_raises_reaches_the_caller_of_the_library() -> None:
    decoder = trevallo.ModeSDecoder()
    Log.setLogHandler(refuse)
    damaged = bytes([IDENTITY[0], *(byte ^ 0xFF for byte in IDENTITY[1:])])
    with pytest.raises(Refused, match="Parity check failed"):
        decoder.decode(trevallo.ModeSMessage.DOWNLINK, damaged)
    with pytest.raises(Refused):
        trevallo.ADSBTracker()
    with pytest.raises(Refused):
        trevallo.ModeSEncapsulation.extractAvr(bytearray(b"*no frame;\n"))
    Log.setLogHandler(lambda level, line: None)
    assert decoder.decode(trevallo.ModeSMessage.DOWNLINK, IDENTITY) is not None


def test_what_a_handler_raises_ends_decode_stream(sample: bytes) -> None:
    Log.setLogHandler(refuse)
    with pytest.raises(Refused):
        trevallo.decode_stream(sample, values="library")
    Log.setLogHandler(None)
    Log.setShowLevel(Log.Error)
    assert len(trevallo.decode_stream(sample, values="library")) > 0


def test_reading_by_the_standards_logs_nothing(sample: bytes, lines: Lines) -> None:
    assert len(trevallo.decode_stream(sample)) > 0
    assert not lines


def test_handlers_are_called_from_threads_that_do_not_hold_the_interpreter(sample: bytes, lines: Lines) -> None:
    threads = [threading.Thread(target=lambda: trevallo.decode_stream(sample, values="library")) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert sum("Initialized." in line for _, line in lines) == 4 * 3


def test_a_handler_may_put_another_in_its_place() -> None:
    second: list[str] = []

    def first(level: Log.Level, line: str) -> None:
        Log.setLogHandler(lambda level, line: second.append(line))

    Log.setLogHandler(first)
    Log.log(Log.Error, "Host", "one")
    Log.log(Log.Error, "Host", "two")
    assert len(second) == 1 and second[0].endswith("two")


def test_a_handler_may_log_itself(lines: Lines) -> None:
    def handler(level: Log.Level, line: str) -> None:
        lines.append((level, line))
        if level == Log.Error:
            Log.log(Log.Info, "Host", "an error was logged")

    Log.setLogHandler(handler)
    Log.log(Log.Error, "Host", "it rains")
    assert [level for level, _ in lines] == [Log.Error, Log.Info]


def test_lines_that_quote_what_is_no_text_arrive(lines: Lines) -> None:
    Log.setShowLevel(Log.Debug)
    with pytest.raises(trevallo.DatabaseFileError):
        trevallo.AircraftDB().save(b"/nowhere/\xff\xfe".decode("utf-8", "surrogateescape"))
    assert lines[-1][1].endswith("/nowhere/\\xff\\xfe")


def test_without_a_handler_lines_go_to_standard_error() -> None:
    run = subprocess.run([sys.executable, "-c", "import trevallo; trevallo.ModeSDecoder()"], capture_output=True,
                         text=True, check=True)
    assert run.stderr == "[ModeSDecoder] Initialized.\n"


def test_the_interpreter_goes_down_in_peace_with_a_handler_installed() -> None:
    program = "import trevallo; trevallo.Log.setLogHandler(lambda level, line: print(line)); trevallo.ADSBTracker()"
    run = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, check=True)
    assert "Initialized." in run.stdout and run.stderr == ""

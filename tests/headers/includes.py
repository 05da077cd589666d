# SPDX-License-Identifier: MIT
"""Includes run one way: core <- modes <- adsb <- track -> report. Apps, examples and bindings see public headers only.
The library starts no thread, waits for nothing, opens no socket, and reads the clock in one place."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
SEES = {  # folder -> internal folders that its files may include from
    "include": set(),
    "src/core": {"core"},
    "src/modes": {"core", "modes"},
    "src/report": {"core", "report"},
    "src/adsb": {"core", "modes", "adsb"},
    "src/track": {"core", "modes", "adsb", "track", "report"},
    "apps/host": {"host"},
    "apps/inspect": {"host", "inspect", "outputs"},
    "apps/outputs": {"host", "outputs"},
    "apps/run": {"host", "outputs", "run"},
    "apps/simulate": {"simulate"},
    "apps/trevallo": {"host", "inspect", "outputs", "run", "simulate", "trevallo"},
    "examples": set(),
    "bench": {"support"},
    "python/src": {"binding.h", "casters.h", "host", "text.h", "texts.h"},
}
LIBRARY_BLIND = {"apps/simulate"}  # the encoder includes no header of the library
GENERATED = {"build_id.h"}
LIBRARY = ("include", "src/")
RESERVED = {  # headers of the system -> files of the library that may include them
    r"thread|stop_token|mutex|shared_mutex|condition_variable|future|semaphore|latch|barrier|pthread\.h": set(),
    r"sys/socket\.h|sys/select\.h|sys/epoll\.h|poll\.h|netdb\.h|(netinet|arpa)/.*": set(),
    r"chrono|sys/time\.h": {"src/core/clock.h", "src/core/clock.cpp"},
}

faults = []
for folder, allowed in SEES.items():
    for path in sorted((ROOT / folder).rglob("*")):
        if path.suffix not in {".h", ".cpp"}:
            continue
        name = path.relative_to(ROOT)
        includes = re.findall(r'^#include ([<"])([^>"]+)[>"]', path.read_text(encoding="utf-8"), re.M)
        for kind, included in includes:
            if kind == '"' and included not in GENERATED and included.split("/")[0] not in allowed:
                faults.append(f'{name} must not include "{included}"')
            if kind == "<" and (ROOT / "src" / included).is_file():
                faults.append(f"{name} must not see inside the library (<{included}>)")
            for headers, users in RESERVED.items():
                if folder.startswith(LIBRARY) and re.fullmatch(headers, included) and str(name) not in users:
                    faults.append(f"{name} must not include <{included}>: the library leaves that to hosts")
            if folder in LIBRARY_BLIND and included.startswith("modes/"):
                faults.append(f"{name} must not see the library (<{included}>)")
        own = f"{folder.split('/')[-1]}/{path.stem}.h"
        public = f"modes/{path.stem}.h"
        headers = [included for _, included in includes]
        if path.suffix == ".cpp" and (own in headers or public in headers) and headers[0] not in {own, public}:
            faults.append(f"{name} must include its own header first")

sys.exit("\n".join(faults) if faults else 0)

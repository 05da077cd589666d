# SPDX-License-Identifier: MIT
"""Decoder and tracker for 1090 MHz aircraft transponder replies.

Classes, functions and enumerations have the names of the C++ library. Readers without arguments are properties; setters
of one value are there under their own names, and assigning to the property does the same. What is empty in C++ is None
here, bytes are bytes, and text is text.

decode_stream decodes a whole recording to a numpy array. The module airspace has what hosts of live receivers need: streams of
frames, and a sky of aircraft.
"""
import sys as _sys

from . import _trevallo
from ._trevallo import *  # noqa: F403
from ._trevallo import __version__, airspace, html

__all__ = [name for name in dir(_trevallo) if not name.startswith("_")]

_sys.modules |= {f"{__name__}.airspace": airspace, f"{__name__}.html": html}

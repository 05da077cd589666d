# SPDX-License-Identifier: MIT
"""How long the tests wait for the program: far longer than it takes, on a busy machine and with sanitizers too."""

PATIENCE = 300  # seconds

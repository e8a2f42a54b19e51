"""Stand-ins for both ends of the plug-in, and the tools that work on its repository.

Arrows run one way: `wire` knows what travels and is kept; `companion` speaks it; `drawings` and `report` show what an
export leaves; `stage` plays a whole conversation; the rest uses these. Both ends are written from the wire upwards and
share nothing with the plug-in, so that each checks the other.
"""

import signal
import sys

# A command (python3 -m vernoxa...) that is still reading its modules ends by Ctrl-C without a word: command.run is not there
# yet to keep Python from showing where it was.
if sys.argv[:1] == ["-m"] and signal.getsignal(signal.SIGINT) is signal.default_int_handler:
    signal.signal(signal.SIGINT, signal.SIG_DFL)

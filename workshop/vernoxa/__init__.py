"""Stand-ins for both ends of the plug-in, and the tools that work on its repository.

Arrows run one way: `wire` knows what travels and is kept; `companion` speaks it; `drawings` and `report` show what an
export leaves; `stage` plays a whole conversation; the rest uses these. Both ends are written from the wire upwards and
share nothing with the plug-in, so that each checks the other.
"""

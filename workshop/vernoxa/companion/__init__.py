"""A stand-in for the companion desktop program: the server on port 9601 that the plug-in talks to.

It is written from the wire upwards on its own, sharing nothing with the plug-in, so that each checks the other.
"""

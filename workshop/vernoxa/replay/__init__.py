"""Recorded conversations, held again with the built plug-in."""

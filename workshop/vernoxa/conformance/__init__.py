"""Somebody's companion or host scripts, tried from the other end."""

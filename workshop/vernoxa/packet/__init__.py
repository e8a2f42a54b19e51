"""Packet texts and traffic logs, readable."""

"""The zip for the users."""

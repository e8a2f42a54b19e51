"""What shows that the editor survives."""

"""What judges the sources and their tests."""

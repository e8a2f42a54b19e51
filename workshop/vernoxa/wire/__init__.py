"""What travels between the ends and is kept of it: frames, JSON in the code page, messages, recorded conversations."""

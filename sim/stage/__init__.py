"""The demo: the stand-in companion and the stand-in host play a scene on a design, with the plug-in between them."""

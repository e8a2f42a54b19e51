"""A scene that shows all: the stand-ins play it on a design, with the plug-in between them."""

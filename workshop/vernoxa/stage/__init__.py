"""A whole conversation: the plug-in's installation, the stand-in host, the companion, and what is seen of them."""

"""Page files of a drawing export, and pictures of them."""

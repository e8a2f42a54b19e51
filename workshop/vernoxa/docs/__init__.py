"""The pages that are printed."""

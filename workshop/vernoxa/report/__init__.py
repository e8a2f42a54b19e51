"""The report of a design, for people who review it: what the companion was told, as one page for any browser."""

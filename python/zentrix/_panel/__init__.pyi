"""The package's own parts have no types; zentrix.panel is in ../__init__.pyi."""

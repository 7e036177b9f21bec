"""Output parameters."""


class Ref:
    """An output parameter: holds a value that a script function may read and writes anew.

    value   what the function stored, or what it is to find; None: nothing yet
    """

    __slots__ = ("value",)

    def __init__(self, initial=None):
        self.value = initial

    def __repr__(self):
        return f"Ref({self.value!r})"

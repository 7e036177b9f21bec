"""Output parameters."""


class Ref:
    """An output parameter, whose value a script function may read and replaces.

    value   the initial value, then the one that the function stored; None: no value
    """

    __slots__ = ("value",)

    def __init__(self, initial=None):
        self.value = initial

    def __repr__(self):
        return f"Ref({self.value!r})"

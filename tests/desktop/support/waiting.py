"""Waiting for what comes about by itself. A deadline only ever ends in a failure."""

import time

PATIENCE = 20.0
PAUSE = 0.01


def wait_until(condition, what, patience=PATIENCE):
    """Asks again and again until the condition gives something true, and returns that."""
    deadline = time.monotonic() + patience
    while True:
        found = condition()
        if found:
            return found
        if time.monotonic() > deadline:
            raise AssertionError(f"not within {patience:g} s: {what() if callable(what) else what}")
        time.sleep(PAUSE)

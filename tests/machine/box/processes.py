"""Processes that do not outlive the one that started them."""

import ctypes
import signal

_C = ctypes.CDLL(None)
PR_SET_PDEATHSIG = 1


def end_with_us():
    """In a child before it becomes its program: it is killed when the thread that started it is gone, however that
    ended."""
    _C.prctl(PR_SET_PDEATHSIG, signal.SIGKILL)

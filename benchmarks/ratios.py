"""The table that the benchmarks in Python print: a line for each ratio, beside its goal."""

from __future__ import annotations


def show_titles() -> None:
    """Print the line above all others."""
    print(f"{'ours / theirs':<72} {'ratio':>6} {'goal':>5} {'ours':>9} {'theirs':>9}")


def show(name: str, goal: float, times: tuple[float, float]) -> None:
    """Print the ratio of two times in seconds, ours and theirs."""
    ours, theirs = times
    now = ours / theirs
    missed = "  missed" if now > goal else ""
    print(f"{name:<72} {now:>6.3f} {goal:>5} {ours * 1e3:>6.3g} ms {theirs * 1e3:>6.3g} ms{missed}", flush=True)

"""The table that the benchmarks in Python print: a line for each ratio, beside its goal."""

from __future__ import annotations


def show_titles() -> None:
    """Print the line above all others."""
    print(f"{'ours / theirs':<72} {'ratio':>6} {'goal':>5} {'ours':>10} {'theirs':>10}")


def milliseconds(seconds: float) -> str:
    """Three digits, or all before the point."""
    value = seconds * 1e3
    return f"{value:.0f} ms" if value >= 100 else f"{value:.3g} ms"


def show(name: str, goal: float, times: tuple[float, float]) -> None:
    """Print the ratio of two times in seconds, ours and theirs."""
    ours, theirs = times
    now = ours / theirs
    missed = "  missed" if now > goal else ""
    print(f"{name:<72} {now:>6.3f} {goal:>5} {milliseconds(ours):>10} {milliseconds(theirs):>10}{missed}", flush=True)

#!/usr/bin/env python3
"""Reads Google Benchmark JSON results and prints one line per compared figure:

    figure NAME VALUE UNIT

Two conventions make a figure:
  * Ratio to a baseline. A benchmark BM_<x>[/args] measured next to BM_<x>_baseline[/args]
    (same arguments) gives "figure <x>[_<args>]_ratio <median(x) / median(baseline)> x",
    from real time.
  * A user counter named figure_<name> gives "figure <name>[_<args>] <median> <unit>", the unit
    read from the end of the name: _per_s 1/s, _ns ns, _us us, _ms ms, _s s, _bytes B,
    _mib MiB, _ratio x, anything else 1.
Medians come from the median aggregate when the run had repetitions, else from the single run.
"""

import json
import re
import sys

TIME_UNIT_NS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
COUNTER_UNITS = [("_per_s", "1/s"), ("_ns", "ns"), ("_us", "us"), ("_ms", "ms"),
                 ("_bytes", "B"), ("_mib", "MiB"), ("_ratio", "x"), ("_s", "s")]
# Run-name parts that say how a benchmark was run, not what it measured.
RUN_OPTION = re.compile(r"^(real_time|process_time|manual_time|"
                        r"(min_time|min_warmup_time|iterations|repeats):.*)$")


def split_run_name(run_name):
    """'BM_send/64/real_time' -> ('send', '64'); the BM_ prefix and run options dropped."""
    base, *args = run_name.split("/")
    args = [re.sub(r"[^A-Za-z0-9]+", "", a) for a in args if not RUN_OPTION.match(a)]
    return base.removeprefix("BM_"), "_".join(a for a in args if a)


def medians(results):
    """Maps run name to its median entry."""
    picked = {}
    for entry in results.get("benchmarks", []):
        if entry.get("error_occurred"):
            continue
        run_name = entry.get("run_name", entry["name"])
        if entry.get("run_type") == "aggregate":
            if entry.get("aggregate_name") == "median":
                picked[run_name] = entry
        else:
            picked.setdefault(run_name, entry)
    return picked


def real_time_ns(entry):
    return entry["real_time"] * TIME_UNIT_NS[entry.get("time_unit", "ns")]


def counter_unit(name):
    return next((unit for suffix, unit in COUNTER_UNITS if name.endswith(suffix)), "1")


def figures(runs):
    by_key = {split_run_name(run_name): entry for run_name, entry in runs.items()}
    for (base, args), entry in sorted(by_key.items()):
        suffix = f"_{args}" if args else ""
        baseline = by_key.get((base + "_baseline", args))
        if baseline is not None and real_time_ns(baseline) > 0:
            yield f"{base}{suffix}_ratio", real_time_ns(entry) / real_time_ns(baseline), "x"
        for key, value in sorted(entry.items()):
            if key.startswith("figure_") and isinstance(value, (int, float)):
                name = key.removeprefix("figure_")
                yield f"{name}{suffix}", value, counter_unit(name)


def main(paths):
    for path in paths:
        with open(path, encoding="utf-8") as stream:
            for name, value, unit in figures(medians(json.load(stream))):
                print(f"figure {name} {value:.4g} {unit}")


if __name__ == "__main__":
    main(sys.argv[1:])

#!/usr/bin/env python3
"""Turns the results of varnel_bench into the page docs/performance.md with its picture, or prints the ratios."""

import argparse
import csv
import json
import re
import statistics
import subprocess
import sys
from collections import namedtuple
from fnmatch import fnmatchcase
from math import log10
from pathlib import Path
from string import Template

HERE = Path(__file__).resolve().parent
NANOSECONDS = {"ns": 1, "us": 1e3, "µs": 1e3, "ms": 1e6, "s": 1e9}

# An operation with one input, compared with one peer. Times are in nanoseconds.
Row = namedtuple("Row", "operation input kind peer ours theirs ratio")


def warn(text):
    print(f"report.py: {text}", file=sys.stderr)


def read_results(path):
    """The median times by (operation, input, kind, peer) in the order of registration, and the context."""
    document = json.loads(path.read_text())
    times = {}
    for run in sorted(document["benchmarks"], key=lambda run: run["family_index"]):
        if run["run_type"] != "iteration":
            continue
        if run.get("error_occurred"):
            sys.exit(f'{run["name"]}: {run["error_message"]}')
        clock = "real_time" if run["run_name"].endswith("/real_time") else "cpu_time"
        fields = re.sub(r"/(real_time|repeats:\d+|min_time:[^/]*)", "", run["run_name"]).split("/", 3)
        times.setdefault(tuple(fields), []).append(run[clock] * NANOSECONDS[run["time_unit"]])
    return {fields: statistics.median(all_times) for fields, all_times in times.items()}, document["context"]


def rows_of(times):
    return [Row(operation, case, kind, peer, times[operation, case, "ours", ""], theirs,
                theirs / times[operation, case, "ours", ""])
            for (operation, case, kind, peer), theirs in times.items()
            if kind != "ours" and (operation, case, "ours", "") in times]


def duration(nanoseconds):
    unit = next((unit for unit in ("s", "ms", "µs") if nanoseconds >= NANOSECONDS[unit]), "ns")
    return f"{significant(nanoseconds / NANOSECONDS[unit])} {unit}"


def significant(number):
    digits = 0 if number >= 100 else 1 if number >= 10 else 2
    return f"{number:.{digits}f}" if number >= 0.1 else f"{number:.2g}"


def table(head, rows):
    return "\n".join("| " + " | ".join(row) + " |" for row in [head, ["---"] * len(head), *rows])


def read_csv(name):
    with open(HERE / name, newline="", encoding="utf-8") as file:
        return list(csv.DictReader(file))


def bounds_table(times):
    cells = []
    for bound in read_csv("bounds.csv"):
        found = [time for (operation, case, kind, _), time in times.items() if kind == "ours"
                 and operation == bound["operation"] and fnmatchcase(case, bound["input"])]
        if not found:
            warn(f'no input {bound["input"]!r} of {bound["operation"]} was measured')
        holds = found and max(found) <= float(bound["bound"]) * NANOSECONDS[bound["unit"]]
        cells.append([f'`{bound["operation"]}`, {bound["input"].replace("*", "")}'.rstrip(", "),
                      f'{bound["bound"]} {bound["unit"]}', duration(max(found, default=0)), "yes" if holds else "**no**"])
    return table(["Operation", "Bound", "Ours", "Holds"], cells)


def by_operation(rows):
    groups = {}
    for row in rows:
        groups.setdefault(row.operation, []).append(row)
    return groups


def compared(rows):
    """All rows but the limits, the slowest first."""
    return sorted((row for row in rows if row.kind != "limit"), key=lambda row: row.ratio)


def ratio_cell(row):
    mark = "\\*" if row.kind == "other" else ""
    return f"**{significant(row.ratio)}** {row.peer}{mark}, {row.input}"


def limit_cell(rows):
    best = max((row for row in rows if row.kind == "limit"), key=lambda row: row.ratio, default=None)
    return f"{significant(best.ratio)} {best.peer}" if best else ""


def operations_table(rows):
    cells = []
    for operation, group in by_operation(rows).items():
        ranked = compared(group)
        if ranked:
            worst = ranked[0]
            cells.append([f"`{operation}`", ratio_cell(ranked[-1]), ratio_cell(worst),
                          f"{duration(worst.ours)}, {duration(worst.theirs)}", limit_cell(group)])
    return table(["Operation", "Best row", "Worst row", "There ours, theirs", "Limit"], cells)


def notes_list(rows):
    slow = {operation for operation, group in by_operation(rows).items()
            if any(row.ratio < 1 for row in compared(group))}
    lines = []
    for note in read_csv("notes.csv"):
        named = [operation for operation in note["operations"].split(", ") if operation in slow]
        slow -= set(named)
        if named:
            lines.append("- " + ", ".join(f"`{operation}`" for operation in named) + f': {note["text"]}')
    for operation in sorted(slow):
        warn(f"notes.csv does not explain why {operation} is slower than a peer")
    return "\n".join(lines)


def sizing_text(times):
    try:
        event, message, heads, description, command = (times[operation, case, "ours", ""] for operation, case in (
            ("IsMyEvt and HandleReport", "1000000 events alive"), ("NEMsgParse", "100000 messages alive"),
            ("readZEPFileHead", "short texts"), ("CPkgFile", "10 entries"), ("varnel", "package, folder of 10000")))
    except KeyError as missing:
        warn(f"sizing needs {missing}")
        return "Not measured."
    follow = {name: f"{float(f'{seconds * 1e9 / (event + message):.2g}'):,.0f}"
              for name, seconds in (("second", 1), ("minute", 60), ("hour", 3600))}
    million = 10**6
    return f"""\
A report costs {duration(event + message)}: `IsMyEvt` of its event and `HandleReport` {duration(event)}, `NEMsgParse` {duration(message)}.
One core can follow **{follow["second"]} elements** that send a report every second, {follow["minute"]} with one a
minute, {follow["hour"]} with one an hour. This assumes reports of 300 bytes, messages of 520 bytes, 1,000,000 events
and 100,000 messages alive, an owner that knows which event a report belongs to, and nothing else to do: receiving,
storing and showing reports comes on top.

One core reads the heads of a million packages in {duration(heads * million)} (`readZEPFileHead`) and their descriptions of ten
entries in {duration(description * million)} (`CPkgFile`); `varnel package` checks all of it in {duration(command * million / 10000)}."""


def cache_value(build, key):
    found = re.search(rf"^{key}:\w+=(.*)$", (build / "CMakeCache.txt").read_text(), re.MULTILINE)
    return found.group(1) if found else ""


def machine_of(context):
    model = re.search(r"^model name\s*: (.*)$", Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    caches = ", ".join(f'L{cache["level"]} {cache["size"] >> 10} KB' for cache in context["caches"]
                       if cache["type"] != "Instruction")
    return f'{model.group(1) if model else "unknown"}, {context["num_cpus"]} cores, {caches}'


def compiler_of(build):
    answer = subprocess.run([cache_value(build, "CMAKE_CXX_COMPILER"), "--version"], capture_output=True, text=True,
                            check=True)
    return answer.stdout.splitlines()[0]


def write_rows(path, rows):
    with open(path, "w", newline="", encoding="utf-8") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow([*Row._fields[:4], "ours_ns", "theirs_ns", "ratio"])
        writer.writerows([*row[:4], *(f"{number:.4g}" for number in row[4:])] for row in rows)


def picture(rows):
    """One line per operation, one dot per row on a logarithmic scale from 0.01 to 1,000; hollow for other contracts."""
    def x(ratio):
        return f"{250 + 130 * (log10(min(max(ratio, 0.01), 1000)) + 2):.0f}"

    groups = {operation: compared(group) for operation, group in by_operation(rows).items() if compared(group)}
    height = 20 * len(groups) + 30
    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" width="930" height="{height}" font-family="sans-serif" '
             'font-size="13">', '<rect width="100%" height="100%" fill="white"/>']
    for ratio in (0.01, 0.1, 1, 10, 100, 1000):
        colour = "black" if ratio == 1 else "lightgrey"
        lines.append(f'<path d="M{x(ratio)} 22V{height}" stroke="{colour}"/><text x="{x(ratio)}" y="16" '
                     f'text-anchor="middle">{ratio}</text>')
    for i, (operation, group) in enumerate(groups.items()):
        y = 20 * i + 38
        dots = "".join(f'<circle cx="{x(row.ratio)}" cy="{y - 4}" r="4" '
                       f'fill="{"none" if row.kind == "other" else "firebrick" if row.ratio < 1 else "seagreen"}" '
                       'stroke="dimgrey"/>' for row in group)
        lines.append(f'<text x="240" y="{y}" text-anchor="end">{operation}</text>{dots}')
    return "\n".join([*lines, "</svg>", ""])


def write_page(path, times, context, rows, build, repetitions):
    template = Template((HERE / "performance.md.in").read_text(encoding="utf-8"))
    flags = " ".join([cache_value(build, "CMAKE_CXX_FLAGS_" + cache_value(build, "CMAKE_BUILD_TYPE").upper()), "-O3"])
    path.write_text(template.substitute(
        rows=len(rows), machine=machine_of(context), date=context["date"][:10], compiler=compiler_of(build),
        flags=flags, repetitions=f"{repetitions} runs" if repetitions > 1 else "1 run", bounds=bounds_table(times), operations=operations_table(rows),
        notes=notes_list(rows), sizing=sizing_text(times)), encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--print", action="store_true", dest="only_print", help="print the ratios and write nothing")
    parser.add_argument("--docs", type=Path, default=HERE.parent / "docs", help="folder of the page")
    parser.add_argument("--build", type=Path, default=HERE.parent / "build/bench", help="folder of the build")
    parser.add_argument("results", type=Path, help="JSON output of varnel_bench")
    options = parser.parse_args()
    times, context = read_results(options.results)
    rows = rows_of(times)
    if options.only_print:
        for row in rows:
            print(f"{row.operation}, {row.input}: {duration(row.ours)}; {row.kind} {row.peer} {duration(row.theirs)}; "
                  f"ratio {significant(row.ratio)}")
        return
    write_rows(options.build / "rows.csv", rows)
    (options.docs / "performance.svg").write_text(picture(rows), encoding="utf-8")
    write_page(options.docs / "performance.md", times, context, rows, options.build,
               max(run.get("repetitions", 1) for run in json.loads(options.results.read_text())["benchmarks"]))
    print(f"{len(rows)} rows: {options.docs}/performance.md, {options.build}/rows.csv")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Turns what varnel_bench measured into docs/performance.csv, .svg and .md, or prints its ratios."""

import argparse
import csv
import json
import re
import statistics
import subprocess
import sys
from fnmatch import fnmatchcase
from pathlib import Path
from string import Template

HERE = Path(__file__).resolve().parent
NANOSECONDS = {"ns": 1, "us": 1e3, "µs": 1e3, "ms": 1e6, "s": 1e9}
LARGE_INPUT = 64 << 10
SECOND = 1e9


def warn(text):
    print(f"report.py: {text}", file=sys.stderr)


class Measurement:
    """What all repetitions of one benchmark gave, in nanoseconds."""

    def __init__(self, name, order):
        parts = re.sub(r"(/(real_time|threads:\d+|repeats:\d+|min_time:[^/]*))+$", "", name).split("/")
        self.service, self.case, self.kind = parts[:3]
        self.against = "/".join(parts[3:])
        self.clock = "real_time" if "/real_time" in name else "cpu_time"
        self.times = []
        self.bytes = 0
        self.order = order

    def add(self, run):
        time = run[self.clock] * NANOSECONDS[run["time_unit"]]
        self.times.append(time)
        self.bytes = max(self.bytes, round(run.get("bytes_per_second", 0) * time / SECOND))

    @property
    def time(self):
        return statistics.median(self.times)


class Row:
    """One comparison: another's time, or what linear cost would be, beside ours."""

    def __init__(self, ours, service, case, against, kind, time):
        self.service, self.case, self.against, self.kind = service, case, against, kind
        self.ours, self.time = ours.time, time
        self.ratio = time / ours.time
        self.goal = self.goal_for(ours.bytes)

    def goal_for(self, size):
        limit = 0.67 if size >= LARGE_INPUT else 0.5
        return {"peer": 1, "obvious": 3, "other": None, "limit": limit, "linear": 0.67}[self.kind]

    @property
    def missed(self):
        return self.goal is not None and self.ratio < self.goal

    @property
    def csv_kind(self):
        return "limit" if self.kind in ("limit", "linear") else "peer"


def read_runs(paths):
    """The measurements by name, and the context of the first file."""
    measurements, context, failures = {}, None, []
    for path in paths:
        document = json.loads(Path(path).read_text())
        context = context or document["context"]
        for run in document["benchmarks"]:
            if run["run_type"] != "iteration":
                continue
            if run.get("error_occurred"):
                failures.append(f'{run["name"]}: {run["error_message"]}')
            else:
                measurement = Measurement(run["run_name"], run["family_index"])
                measurements.setdefault(run["name"], measurement).add(run)
    if failures or not measurements:
        sys.exit("\n".join(failures) or "report.py: nothing was measured")
    return sorted(measurements.values(), key=lambda m: m.order), context


def compared_rows(measurements):
    ours = {(m.service, m.case): m for m in measurements if m.kind == "ours"}
    rows = []
    for m in measurements:
        if m.kind == "ours":
            continue
        if (m.service, m.case) in ours:
            rows.append(Row(ours[m.service, m.case], m.service, m.case, m.against, m.kind, m.time))
        else:
            warn(f"{m.service}, {m.case}: there is no measurement of ours beside {m.against}")
    order = {case: i for i, case in enumerate(dict.fromkeys((m.service, m.case) for m in measurements))}
    return sorted(rows, key=lambda row: (row.service.lower(), order[row.service, row.case]))


def scaling_rows(measurements):
    rows = []
    for field, unit in (("threads", "thread"), ("objects", "object")):
        points = {}
        for m in measurements:
            if m.service == field:
                points.setdefault(m.case, {})[int(m.against)] = m
        for service, counts in points.items():
            for count, m in sorted(counts.items()):
                if count == 1 or 1 not in counts:
                    continue
                share = count if field == "threads" else 1
                rows.append(Row(m, service, f"{count} {unit}s", "linear", "linear", counts[1].time / share))
    return rows


def growth_points(measurements):
    points = {}
    for m in measurements:
        if m.service == "growth":
            points.setdefault(m.case, []).append((int(m.against), m.time))
    return {service: sorted(series) for service, series in sorted(points.items())}


def is_plain(measurement):
    return measurement.service not in ("growth", "threads", "objects")


def read_csv(name):
    with open(HERE / name, newline="", encoding="utf-8") as file:
        return list(csv.DictReader(file))


def duration(nanoseconds):
    for unit in ("s", "ms", "µs"):
        if nanoseconds >= NANOSECONDS[unit]:
            return f"{significant(nanoseconds / NANOSECONDS[unit])} {unit}"
    return f"{significant(nanoseconds)} ns"


def significant(number):
    if number >= 100:
        return f"{number:.0f}"
    if number >= 10:
        return f"{number:.1f}"
    return f"{number:.2f}" if number >= 0.1 else f"{number:.2g}"


def cell(text):
    return text.replace("|", "\\|")


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" * len(head)]
    return "\n".join(lines + ["| " + " | ".join(map(cell, row)) + " |" for row in rows])


def ratio_cell(row):
    return f"**{significant(row.ratio)}**, goal {row.goal}" if row.missed else significant(row.ratio)


class Notes:
    """The explanations of rows that miss their goal."""

    def __init__(self):
        self.notes = read_csv("notes.csv")
        self.used = set()

    def explain(self, rows):
        """The notes for the rows of one table, each once."""
        found = []
        for row in rows:
            matches = [i for i, note in enumerate(self.notes) if self.fits(note, row)]
            self.used.update(matches)
            if row.missed and not matches:
                warn(f"no note explains {row.service}, {row.case} beside {row.against}: {significant(row.ratio)}")
            if row.missed:
                found += [self.notes[i]["text"] for i in matches]
        return "".join(f"\n- {text}" for text in dict.fromkeys(found))

    @staticmethod
    def fits(note, row):
        return all(fnmatchcase(getattr(row, field), note[field]) for field in ("service", "case", "against"))

    def warn_unused(self):
        for i, note in enumerate(self.notes):
            if i not in self.used:
                warn(f'no row belongs to the note on {note["service"]}, {note["case"]}, {note["against"]}')


def service_tables(rows, notes):
    parts = []
    for service in dict.fromkeys(row.service for row in rows):
        mine = [row for row in rows if row.service == service]
        cells, last = [], None
        for row in mine:
            first = row.case != last
            last = row.case
            cells.append([row.case if first else "", duration(row.ours) if first else "", row.against, row.kind,
                          duration(row.time), ratio_cell(row)])
        text = f"### {service}\n\n" + table(["Case", "Ours", "Against", "Kind", "Theirs", "Ratio"], cells)
        explained = notes.explain(mine)
        parts.append(text + (f"\n{explained}" if explained else ""))
    return "\n\n".join(parts)


def scaling_table(rows, notes):
    cells = [[row.service, row.case, duration(row.ours), duration(row.time), ratio_cell(row)] for row in rows]
    text = table(["Service", "With", "Ours", "Linear", "Ratio"], cells)
    explained = notes.explain(rows)
    return text + (f"\n{explained}" if explained else "")


def bound_cells(bound, measurements):
    """Operation, bound, our worst figure and whether it holds; also whether anything was measured."""
    found = [m for m in measurements if m.kind == "ours" and fnmatchcase(m.service, bound["service"])
             and fnmatchcase(m.case, bound["case"])]
    limit, unit = float(bound["bound"]), bound["unit"]
    shown = [bound["operation"], f'{bound["bound"]} {unit}']
    if not found:
        warn(f'bound "{bound["operation"]}": no case {bound["case"]!r} of {bound["service"]!r} was measured')
        return shown + ["**not measured**", ""]
    if unit == "MB/s":
        rate = min(m.bytes / m.time * 1e3 for m in found)
        return shown + [f"{significant(rate)} MB/s", "yes" if rate >= limit else "**no**"]
    time = max(m.time for m in found)
    return shown + [duration(time), "yes" if time <= limit * NANOSECONDS[unit] else "**no**"]


def bounds_table(measurements):
    rows = [bound_cells(bound, measurements) for bound in read_csv("bounds.csv")]
    return table(["Operation", "Bound", "Ours", "Holds"], rows)


def largest(measurements, case):
    """The operation with the most objects alive."""
    return max((m for m in measurements if m.service == "objects" and m.case == case), key=lambda m: int(m.against),
               default=None)


def ours_of(measurements, service, case):
    return next((m for m in measurements if m.kind == "ours" and (m.service, m.case) == (service, case)), None)


def sizing_text(measurements):
    event, message = largest(measurements, "CVNPackGuageEvt"), largest(measurements, "CTL1NEMsgParse")
    heads = ours_of(measurements, "readZEPFileHead", "short texts")
    description = ours_of(measurements, "CPkgFile", "10 entries")
    command = ours_of(measurements, "varnel", "package, folder of 10000")
    if None in (event, message, heads, description, command):
        warn("sizing: objects, readZEPFileHead, CPkgFile and varnel package are needed for it")
        return "**Not measured.**"
    report = event.time + message.time
    every = (("second", 1), ("minute", 60), ("hour", 3600))
    elements = table(["One report a", "Elements that one core can follow"],
                     [[name, f"{float(f'{seconds * SECOND / report:.3g}'):,.0f}"] for name, seconds in every])
    million = 10**6
    files = table(["A check of a million files", "Takes"], [
        ["their heads, `readZEPFileHead`", duration(heads.time * million)],
        ["their descriptions of ten entries, `CPkgFile::ParsePkgFile`", duration(description.time * million)],
        ["everything that `varnel package` looks at", duration(command.time * million / 10000)]])
    return f"""\
One report costs {duration(report)}: {duration(event.time)} to offer it to its own event with `IsMyEvt` and to read its
numbers with `HandleReport`, and {duration(message.time)} to take it apart with `NEMsgParse`. Assumed are TL1 progress
reports of 300 bytes for the event and messages of 520 bytes for the parser, {int(event.against):,} events and
{int(message.against):,} messages alive, an owner that knows which event a report belongs to, and a core that has
nothing else to do: receiving, storing and showing reports is not part of it.

{elements}

Packages lie in the page cache, ten entries each; one core checks them one after the other.

{files}"""


def cache_value(build, key):
    found = re.search(rf"^{key}:\w+=(.*)$", (build / "CMakeCache.txt").read_text(), re.MULTILINE)
    return found.group(1) if found else ""


def flags_of(build):
    kind = cache_value(build, "CMAKE_BUILD_TYPE")
    flags = f'{cache_value(build, "CMAKE_CXX_FLAGS")} {cache_value(build, f"CMAKE_CXX_FLAGS_{kind.upper()}")}'
    return f"`{flags.strip()} -O3` ({kind}), for the libraries and for what stands beside them here alike"


def compiler_of(build):
    answer = subprocess.run([cache_value(build, "CMAKE_CXX_COMPILER"), "--version"], capture_output=True, text=True,
                            check=True)
    return answer.stdout.splitlines()[0]


def machine_of(context):
    model = re.search(r"^model name\s*: (.*)$", Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    caches = {(c["type"], c["level"]): c["size"] >> 10 for c in context["caches"]}
    sizes = ", ".join(f"L{level} {kind.lower()} {size} KB" for (kind, level), size in caches.items())
    return f'{model.group(1) if model else "unknown"}, {context["num_cpus"]} cores, {sizes}'


def write_csv(path, rows):
    with open(path, "w", newline="", encoding="utf-8") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(["service", "case", "against", "kind", "ratio"])
        writer.writerows([r.service, r.case, r.against, r.csv_kind, f"{r.ratio:.4g}"] for r in rows)


def write_plot(path, points):
    if not points:
        warn("no growth was measured, so there is no plot")
        return
    blocks = [f"$series{i} << END\n" + "".join(f"{size} {time}\n" for size, time in series) + "END\n"
              for i, series in enumerate(points.values())]
    curves = ", ".join(f"$series{i} with linespoints title '{name}'" for i, name in enumerate(points))
    script = "".join(blocks) + f"""
set terminal svg noenhanced size 1000,560 font 'sans-serif,13' background 'white'
set output '{path}'
set logscale xy
set format '1e%T'
set xlabel 'input size in bytes'
set ylabel 'time in ns'
set key outside right
set grid
plot {curves}
"""
    subprocess.run(["gnuplot"], input=script, text=True, check=True)


def write_page(path, measurements, context, rows, scaling, build):
    notes = Notes()
    plain = [m for m in measurements if is_plain(m)]
    template = Template((HERE / "performance.md.in").read_text(encoding="utf-8"))
    path.write_text(template.substitute(
        machine=machine_of(context), date=context["date"][:10], compiler=compiler_of(build), flags=flags_of(build),
        repetitions=max(len(m.times) for m in measurements), bounds=bounds_table(plain),
        services=service_tables(rows, notes), scaling=scaling_table(scaling, notes),
        sizing=sizing_text(measurements)), encoding="utf-8")
    notes.warn_unused()


def print_rows(measurements, rows):
    compared = {(row.service, row.case) for row in rows}
    for m in measurements:
        if m.kind == "ours" and (m.service, m.case) not in compared:
            print(f"{m.service}, {m.case} {m.against}: {duration(m.time)}")
    for row in rows:
        mark = f", goal {row.goal}" if row.missed else ""
        print(f"{row.service}, {row.case}: {duration(row.ours)}; {row.kind} {row.against} {duration(row.time)}; "
              f"ratio {significant(row.ratio)}{mark}")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--print", action="store_true", dest="only_print", help="print ratios and write nothing")
    parser.add_argument("--docs", type=Path, default=HERE.parent / "docs", help="folder to write into")
    parser.add_argument("--build", type=Path, default=HERE.parent / "build/bench", help="folder of the build")
    parser.add_argument("runs", nargs="+", help="JSON of varnel_bench")
    options = parser.parse_args()
    measurements, context = read_runs(options.runs)
    rows = compared_rows([m for m in measurements if is_plain(m)])
    scaling = scaling_rows(measurements)
    if options.only_print:
        print_rows(measurements, rows + scaling)
        return
    write_csv(options.docs / "performance.csv", rows + scaling)
    write_plot(options.docs / "performance.svg", growth_points(measurements))
    write_page(options.docs / "performance.md", measurements, context, rows, scaling, options.build)
    missed = sum(row.missed for row in rows + scaling)
    print(f"{len(rows) + len(scaling)} rows, {missed} miss their goal: {options.docs}/performance.md")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Writes what the benchmarks measured into the chapter on performance.

report.py RESULTS ROWS CHAPTER: RESULTS is a folder of files PROGRAM.json or PROGRAM.NUMBER.json in
Google Benchmark's format, ROWS a folder of lists of comparisons, CHAPTER a Markdown file in which the
text between two comments is replaced.

A comparison is an object with
  row, work     the row of the table that it belongs to, and what is measured
  program       whose file holds the cases
  own           the case of this library, "name/argument"
  peer, base    the case it is compared with: another library's, or this library's at a small size
  peerName      how the table names the peer
  scale         the peer's figure is multiplied by it (1)
  counter       compares this counter of the cases instead of their time per item
  kind          "ratio": own / peer; "growth": own / base; "bytes": the counter, beside the peer's
                where there is one; "mustPass": the case has to end without an error
  target        what the figure may reach; without it the line is only shown
A row is met when all of its comparisons are. Medians are taken where a file holds repetitions.
"""

import json
import platform
import re
import subprocess
import sys
from datetime import date
from pathlib import Path

BEGIN = "<!-- measured: written by scripts/bench -->"
END = "<!-- end of what was measured -->"
UNITS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


class Case:
    """One case of a program: its time per item in nanoseconds, and its counters."""

    def __init__(self, entry):
        self.failed = bool(entry.get("error_occurred"))
        self.entry = entry

    def time(self):
        if "items_per_second" in self.entry:
            return 1e9 / self.entry["items_per_second"]
        return self.entry["cpu_time"] * UNITS[self.entry["time_unit"]]

    def value(self, counter):
        if self.failed:
            return None
        return self.entry.get(counter) if counter else self.time()


class Results:
    """The cases of all programs that ran."""

    def __init__(self, folder):
        self.context = {}
        self.cases = {}
        for path in sorted(Path(folder).glob("*.json")):
            content = json.loads(path.read_text())
            self.context = content["context"]
            for entry in content["benchmarks"]:
                self.add(path.name.split(".")[0], entry)

    def add(self, program, entry):
        key = program, entry["run_name"]
        if entry.get("error_occurred") or entry.get("aggregate_name") == "median":
            self.cases[key] = Case(entry)
        elif entry["run_type"] == "iteration":
            self.cases.setdefault(key, Case(entry))

    def find(self, program, name):
        return self.cases.get((program, name)) if name else None

    def value(self, program, name, counter):
        case = self.find(program, name)
        return case.value(counter) if case else None


class Comparison:
    """One line of the table."""

    def __init__(self, line, results):
        self.line = line
        self.counter = line.get("counter")
        program = line["program"]
        self.own = results.value(program, line["own"], self.counter)
        self.other = results.value(program, line.get("peer") or line.get("base"), self.counter)
        if self.other is not None:
            self.other *= line.get("scale", 1.0)
        self.target = line.get("target")
        self.figure = self.find_figure(results.find(program, line["own"]))

    def find_figure(self, case):
        if self.line["kind"] == "mustPass":
            return None if case is None else float(case.failed)
        if self.line["kind"] == "bytes" and not self.line.get("peer"):
            return self.own
        if self.own is None or not self.other:
            return None
        return self.own / self.other

    def limit(self):
        return 0.0 if self.line["kind"] == "mustPass" else self.target

    def is_met(self):
        return self.limit() is None or (self.figure is not None and self.figure <= self.limit())

    def is_near(self):
        return self.is_met() or (self.figure is not None and self.figure <= 1.5 * self.limit())

    def is_measured(self):
        return self.figure is not None

    def verdict(self):
        if not self.is_measured():
            return "not measured"
        if self.limit() is None:
            return ""
        return "met" if self.is_met() else "**missed**"

    def cells(self):
        line = self.line
        other = amount(self.other, self.counter)
        if line.get("peerName") and other:
            other += " " + line["peerName"]
        has_ratio = line["kind"] != "mustPass" and (line.get("peer") or line.get("base"))
        return [line["row"], line["work"], amount(self.own, self.counter), other,
                number(self.figure) if has_ratio else "",
                "" if self.target is None else f"&le; {self.target:g}", self.verdict()]


def number(value):
    if value is None:
        return ""
    return f"{value:.0f}" if value >= 100 else f"{value:.3g}"


def amount(value, counter):
    if value is None:
        return ""
    if counter:
        return number(value)
    if value >= 1e6:
        return number(value / 1e6) + " ms"
    return number(value / 1e3) + " us" if value >= 1e4 else number(value) + " ns"


def read_comparisons(folder, results):
    lines = []
    for path in sorted(Path(folder).glob("*.json")):
        lines += json.loads(path.read_text())
    return [Comparison(line, results) for line in lines]


def summary(comparisons):
    rows = {}
    for comparison in comparisons:
        numbered = comparison.line["row"][-1].isdigit()  # The others are shown beside the rows.
        if numbered and comparison.limit() is not None:
            rows.setdefault(comparison.line["row"], []).append(comparison)
    met = [row for row, parts in rows.items() if all(part.is_met() for part in parts)]
    near = [row for row, parts in rows.items() if all(part.is_near() for part in parts)]
    unknown = [row for row, parts in rows.items() if not all(part.is_measured() for part in parts)]
    text = f"{len(met)} of {len(rows)} rows are met, {len(near)} within 1.5 times of their target."
    if unknown:
        text += " Not measured in full, for want of a peer: " + ", ".join(unknown) + "."
    return text


def first_line(command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout.split("\n")[0]
    except (OSError, subprocess.CalledProcessError):
        return "an unknown compiler"


def processor():
    found = re.search(r"^model name\s*:\s*(.*)$", Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    return found.group(1) if found else platform.machine()


def conditions(results):
    context = results.context
    return (f"{date.today().isoformat()}, {context.get('num_cpus', '?')} cores of {processor()}, "
            f"{first_line(['c++', '--version'])}, load {context.get('load_avg', ['?'])[0]:.1f} "
            "at the start of the last program.")


def table(comparisons):
    rows = [["", "Work", "Ours", "Other", "Ratio", "Target", ""], ["---"] * 7]
    rows += [comparison.cells() for comparison in comparisons]
    return "\n".join("| " + " | ".join(cells) + " |" for cells in rows)


def main(results_folder, rows_folder, chapter):
    results = Results(results_folder)
    comparisons = read_comparisons(rows_folder, results)
    path = Path(chapter)
    before, rest = path.read_text().split(BEGIN, 1)
    after = rest.split(END, 1)[1]
    text = "\n\n".join([summary(comparisons), conditions(results), table(comparisons)])
    path.write_text(f"{before}{BEGIN}\n\n{text}\n\n{END}{after}")
    print(summary(comparisons))


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])

#!/usr/bin/env python3
"""Measures the cases that the lists of comparisons name.

measure.py PROGRAMS RESULTS ROWS: PROGRAMS is the folder of the benchmarks, RESULTS the one that gets
their files PROGRAM.NUMBER.json, ROWS that of the lists that report.py describes.

Cases that are compared, directly or through a third one, run in one process, and their repetitions
in turn: a machine that changes its speed changes it for all of them.
"""

import json
import re
import subprocess
import sys
from pathlib import Path

OPTIONS = ["--benchmark_min_time=0.05", "--benchmark_repetitions=9",
           "--benchmark_report_aggregates_only=true", "--benchmark_enable_random_interleaving=true",
           "--benchmark_out_format=json"]


def read_cases(folder):
    """The program and the cases of each comparison."""
    for path in sorted(Path(folder).glob("*.json")):
        for line in json.loads(path.read_text()):
            yield line["program"], {line[key] for key in ("own", "peer", "base") if line.get(key)}


def join_groups(comparisons):
    """The programs with sets of cases, none of which is compared with one of another set."""
    groups = []
    for program, cases in comparisons:
        touched = [group for group in groups if group[0] == program and group[1] & cases]
        groups = [group for group in groups if group not in touched]
        groups.append((program, cases.union(*(group[1] for group in touched))))
    return sorted(groups, key=lambda group: (group[0], sorted(group[1])))


def measure(programs, program, cases, output):
    names = "|".join(re.escape(case) for case in sorted(cases))
    command = [str(Path(programs) / f"vantorix_{program}_bench"), f"--benchmark_filter=^({names})$",
               f"--benchmark_out={output}", *OPTIONS]
    done = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=False)
    output.with_suffix(".txt").write_text(done.stdout)
    if done.returncode != 0:
        sys.exit(f"{command[0]} failed with {', '.join(sorted(cases))}")


def main(programs, results, rows):
    for number, (program, cases) in enumerate(join_groups(read_cases(rows))):
        print(f"{program}: {', '.join(sorted(cases))}", flush=True)
        measure(programs, program, cases, Path(results) / f"{program}.{number}.json")


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])

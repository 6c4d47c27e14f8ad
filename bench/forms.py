"""Times every built list of points against the floor: a million points written, and read back where the form has a reader.

usage: forms.py BUILD [RUNS]

BUILD is the build folder, with bin/alidade and bench/. A line a form: medians of RUNS runs (3) for 100,000 and 1,000,000
points in seconds of processor time, and how often the larger one holds the floor's time for the same number of points.
"""

import glob
import json
import os
import subprocess
import sys
import tempfile

import compare

SMALL, LARGE = compare.SIZES
MOST_READ = {"binary-points": 100000}  # its reader takes no larger point numbers


def point_forms(program):
    """Built forms of points alone, as (key, import code or None, export code)."""
    rows = json.loads(subprocess.run([program, "formats", "--json"], capture_output=True, check=True).stdout)
    built = [row for row in rows if row["built"] and "points" in row["carries"]]
    reads = {row["key"]: row["code"] for row in built if row["direction"] == "import"}
    return [(row["key"], reads.get(row["key"]), row["code"]) for row in built if row["direction"] == "export"]


def median_of(runs, *command):
    return compare.median([compare.run(*command) for _ in range(runs)], "work_cpu")


def main():
    build = sys.argv[1]
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 3
    floor, library = (os.path.join(build, "bench", name) for name in ("floor", "alidade_points"))
    with tempfile.TemporaryDirectory() as scratch:
        made = os.path.join(scratch, "made")
        compare.run(floor, "make", made, str(LARGE))
        least = {"read": median_of(runs, floor, "read", made),
                 "write": median_of(runs, floor, "write", os.path.join(scratch, "reference"), str(LARGE))}
        print(f"floor: read {least['read']:.3f} s, write {least['write']:.3f} s")
        for key, read_code, write_code in point_forms(os.path.join(build, "bin", "alidade")):
            times = {"write": [], "read": []}
            for size in (SMALL, LARGE):
                target = os.path.join(scratch, "out")
                times["write"].append(median_of(runs, library, "write", target, str(size), str(write_code)))
                if read_code is not None and size <= MOST_READ.get(key, size):
                    times["read"].append(median_of(runs, library, "read", target, str(read_code)))
            for direction, values in times.items():
                if len(values) == 1:
                    print(f"{direction:5} {key:20} {values[0]:.3f}", flush=True)
                elif values:
                    print(f"{direction:5} {key:20} {values[0]:.3f} {values[1]:.3f}, "
                          f"times ten: {values[1] / values[0]:.1f}, ratio {values[1] / least[direction]:.2f}", flush=True)
            for name in glob.glob(os.path.join(scratch, "out*")):
                os.remove(name)


if __name__ == "__main__":
    main()

"""Compares the library with the floor: what reading and writing a list of points costs at the least.

usage: compare.py FOLDER [RUNS]

FOLDER holds the built programs floor and alidade_points. Both run in turns, RUNS times (5), on lists of 100,000 and of
1,000,000 points; the medians are shown. Processor time is user and system together, as each program asks the system for it.
"""

import os
import statistics
import subprocess
import sys
import tempfile

SIZES = (100_000, 1_000_000)


def run(*command):
    """The values that a program prints."""
    answer = subprocess.run(command, capture_output=True, check=True, text=True)
    return {key: float(value) for key, value in (word.split("=") for word in answer.stdout.split())}


def measure(commands, runs):
    """For each command the values of all its runs; the commands take turns."""
    results = [[] for _ in commands]
    for _ in range(runs):
        for command, values in zip(commands, results):
            values.append(run(*command))
    return results


def median(values, key):
    return statistics.median(value[key] for value in values)


def spread(values, key):
    numbers = [value[key] for value in values]
    return f"{min(numbers):.3f} to {max(numbers):.3f}"


def compare(title, floor_command, library_command, size, runs):
    floor, library = measure([floor_command, library_command], runs)
    for values in (floor, library):
        assert all(value["records"] == size for value in values)
    low, high = median(floor, "work_cpu"), median(library, "work_cpu")
    print(f"{title} {size:>9,}: floor {low:.3f} s ({spread(floor, 'work_cpu')}), "
          f"library {high:.3f} s ({spread(library, 'work_cpu')}), ratio {high / low:.2f}; whole process "
          f"{median(library, 'process_cpu') / median(floor, 'process_cpu'):.2f}; "
          f"peak memory {median(floor, 'peak_mb'):.0f} and {median(library, 'peak_mb'):.0f} MB")
    return high


def main():
    folder = sys.argv[1]
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 5
    floor, library = os.path.join(folder, "floor"), os.path.join(folder, "alidade_points")
    with tempfile.TemporaryDirectory() as scratch:
        made, written, reference = (os.path.join(scratch, name) for name in ("made", "written", "reference"))
        seconds = {"import": [], "export": []}
        for size in SIZES:
            run(floor, "make", made, str(size))
            seconds["import"].append(compare("import", (floor, "read", made), (library, "read", made), size, runs))
            seconds["export"].append(compare("export", (floor, "write", reference, str(size)),
                                             (library, "write", written, str(size)), size, runs))
            with open(reference, "rb") as left, open(written, "rb") as right:
                assert left.read() == right.read(), "both write the same bytes"
        for title, (small, large) in seconds.items():
            print(f"{title}: ten times the points, {large / small:.2f} times the time")
        memory = run(library, "memory", str(SIZES[-1]))
        print(f"a plain point takes {memory['bytes_per_point']:.0f} bytes ({memory['sizeof_point']:.0f} itself, the rest is "
              f"the heap's and the list's), one with a code {memory['bytes_with_code']:.0f}")


if __name__ == "__main__":
    main()

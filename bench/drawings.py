"""Compares the reader of drawings with the floor: what splitting a drawing into groups and numbers costs at the least.

usage: drawings.py FOLDER [RUNS]

FOLDER holds the built programs dxf_floor and alidade_points. Both run in turns, RUNS times (5), on drawings of 50,000 and of
500,000 entities; the medians of processor time are shown, user and system together.
"""

import os
import sys
import tempfile

import compare

SIZES = (50_000, 500_000)
IMPORT_CODE = "4"


def main():
    folder = sys.argv[1]
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 5
    floor, library = os.path.join(folder, "dxf_floor"), os.path.join(folder, "alidade_points")
    seconds = []
    with tempfile.TemporaryDirectory() as scratch:
        for size in SIZES:
            drawing = os.path.join(scratch, "drawing.dxf")
            compare.run(floor, "make", drawing, str(size))
            least, ours = compare.measure([(floor, "read", drawing), (library, "read", drawing, IMPORT_CODE)], runs)
            low, high = compare.median(least, "work_cpu"), compare.median(ours, "work_cpu")
            seconds.append(high)
            print(f"{size:>8,} entities, {os.path.getsize(drawing) / 1e6:.0f} MB: floor {low:.3f} s "
                  f"({compare.spread(least, 'work_cpu')}), library {high:.3f} s ({compare.spread(ours, 'work_cpu')}), "
                  f"ratio {high / low:.2f}; peak memory {compare.median(ours, 'peak_mb'):.0f} MB")
    print(f"ten times the entities, {seconds[1] / seconds[0]:.2f} times the time")


if __name__ == "__main__":
    main()

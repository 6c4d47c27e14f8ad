"""Compares writing points as a drawing with the least that those bytes can cost.

usage: dxf_write.py FOLDER [COUNT] [RUNS]

FOLDER holds the built program dxf_write. The floor and the library write COUNT points (500,000) in turns, RUNS times (5); both
must write the same bytes. The last line is of the same points with a code each, which go out as blocks.
"""

import os
import sys
import tempfile

import compare


def main():
    program = os.path.join(sys.argv[1], "dxf_write")
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 500_000
    runs = int(sys.argv[3]) if len(sys.argv) > 3 else 5
    with tempfile.TemporaryDirectory() as scratch:
        names = {mode: os.path.join(scratch, mode + ".dxf") for mode in ("floor", "library", "coded")}
        compare.compare("write", *((program, mode, names[mode], str(count)) for mode in ("floor", "library")), count, runs)
        with open(names["floor"], "rb") as left, open(names["library"], "rb") as right:
            assert left.read() == right.read(), "both write the same bytes"
        coded = compare.measure([(program, "coded", names["coded"], str(count))], runs)[0]
        print(f"coded {count:>9,}: {compare.median(coded, 'work_cpu'):.3f} s, "
              f"{os.path.getsize(names['coded']) / 1e6:.0f} MB against {os.path.getsize(names['library']) / 1e6:.0f} MB")


if __name__ == "__main__":
    main()

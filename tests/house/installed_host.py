"""Installs into a scratch folder and builds and runs examples/host against that, as a stranger would: once through
find_package, once through pkg-config. Each installed header must also compile by itself.

usage: installed_host.py ROOT BUILD CXX
"""

import concurrent.futures
import os
import subprocess
import sys
import tempfile


def run(*command, cwd=None, **environment):
    # what the environment says about compilers and flags belongs to the build under test, not to the stranger
    env = {key: value for key, value in os.environ.items() if key not in ("CXX", "CXXFLAGS", "LDFLAGS", "LD_LIBRARY_PATH")}
    result = subprocess.run(command, cwd=cwd, env=env | environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            text=True, check=False)
    if result.returncode != 0:
        print("failed:", " ".join(command))
        print(result.stdout)
        sys.exit(1)
    return result.stdout


def check_headers(compiler, include):
    headers = sorted(os.path.relpath(os.path.join(folder, name), include)
                     for folder, _, names in os.walk(include) for name in names)
    if not headers:
        sys.exit("no header was installed")

    def check(header):
        return run(compiler, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Werror", f"-I{include}",
                   "-include", header, "-x", "c++", "/dev/null")

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for _ in pool.map(check, headers):
            pass
    return len(headers)


def main():
    root, build, compiler = sys.argv[1:4]
    with tempfile.TemporaryDirectory() as scratch:
        prefix = os.path.join(scratch, "prefix")
        run("cmake", "--install", build, "--prefix", prefix)
        # a moved tree must work too
        moved = os.path.join(scratch, "moved here")
        os.rename(prefix, moved)
        include = os.path.join(moved, "include")
        count = check_headers(compiler, include)
        print(f"{count} headers compile by themselves")

        if os.path.exists(os.path.join(build, "bin/alidade")):
            run(os.path.join(moved, "bin/alidade"), "--version")

        host = os.path.join(scratch, "host")
        run("cmake", "-S", os.path.join(root, "examples/host"), "-B", host, "-G", "Ninja",
            f"-DCMAKE_PREFIX_PATH={moved}", f"-DCMAKE_CXX_COMPILER={compiler}", "-DCMAKE_BUILD_TYPE=Release")
        run("cmake", "--build", host)
        work = os.path.join(scratch, "work")
        os.mkdir(work)
        print(run(os.path.join(host, "host"), cwd=work), end="")

        pkgconfig = next(folder for folder, _, names in os.walk(moved) if "alidade.pc" in names)
        # pkg-config escapes the blanks of the folder's name, so the shell takes its words apart
        second = os.path.join(scratch, "host-pkg-config")
        run("bash", "-c",
            f'set -e; flags=$(pkg-config --cflags --libs alidade); libdir=$(pkg-config --variable=libdir alidade); '
            f'eval "$0 -std=c++20 -o \'{second}\' \'{root}/examples/host/host.cpp\' $flags"; '
            f'cd \'{work}\'; LD_LIBRARY_PATH="${{libdir//\\\\/}}" \'{second}\'',
            compiler, PKG_CONFIG_PATH=pkgconfig)
    print("the host runs, by find_package and by pkg-config")
    return 0


if __name__ == "__main__":
    sys.exit(main())

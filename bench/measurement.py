"""What the measurements share: the programs, program folders, alternating runs and their medians."""

import argparse
import contextlib
import os
import pathlib
import sqlite3
import statistics
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
ROWS_PER_PHONE = 22
"""Of the sample database: a range, a phone and its parameters."""
SEEDED_TABLES = ("RANGES", "PHONES", "PHONES_PARAMETERS")


def absolute(path):
    """The path as the programs find it from wherever they are."""
    return pathlib.Path(path).resolve()


def options(description):
    """A parser with the options that every measurement takes."""
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("--build", type=absolute, default=HERE.parent / "build" / "release",
                        help="the build folder whose programs are measured (default: %(default)s)")
    parser.add_argument("--folder", type=absolute, help="where the files of a measurement lie (default: the build "
                        "folder, which is on a disk as a temporary folder might not be)")
    parser.add_argument("--runs", type=int, default=5, help="runs of which the median counts (default: %(default)s)")
    return parser


@contextlib.contextmanager
def scratch_folder(chosen):
    """A folder that is gone afterwards, where the options have it."""
    with tempfile.TemporaryDirectory(prefix="bench-", dir=chosen.folder or chosen.build) as folder:
        yield pathlib.Path(folder)


def program(build, name):
    """The command that starts a program of the build."""
    return [build / "bin" / name]


def yardstick(name):
    """The command that starts a yardstick script."""
    return [sys.executable, HERE / name]


def run(command):
    """What a command prints; one that fails ends the measurement with its own words."""
    result = subprocess.run([str(word) for word in command], capture_output=True, text=True, check=False)
    if result.returncode != 0:
        sys.exit(f"{command[0]} ended with {result.returncode}: {result.stderr}")
    return result.stdout


def seconds(command):
    """The seconds that a command prints of itself, before anything else."""
    # What earlier runs left to be written would otherwise be written during this one.
    os.sync()
    return float(run(command).split()[0])


def medians(contestants, runs):
    """The median seconds of each contestant, the contestants taking turns. `contestants` maps names to
    callables that do one run and return its seconds."""
    times = {name: [] for name in contestants}
    for _ in range(runs):
        for name, contestant in contestants.items():
            times[name].append(contestant())
    return {name: statistics.median(values) for name, values in times.items()}


def sample_database(build, file, phones, *options):
    """Writes the database that the measurements work on."""
    run(program(build, "bench_sample_database") + [file, phones, *options])


def write_seed_file(earlier, path):
    """Every phone of the earlier database as lines of a seed file. Returns the number of lines."""
    database = sqlite3.connect(earlier)
    (version,) = database.execute("SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$BASEVER'").fetchone()
    lines = [";".join((version + "V", table) + row)
             for table in SEEDED_TABLES for row in database.execute(f"SELECT * FROM {table}")]
    path.write_text("\n".join(lines) + "\n", encoding="utf-8")
    return len(lines)


def user_list(folder, entries):
    """Writes confUsers.ini."""
    lines = ["[Users]"]
    for number in range(10000, 10000 + entries):
        lines += [f"[User{number}]", f"Name=First{number * 7919 % 100003}", "Surname=of the hall",
                  f"Extension={number}"]
    (folder / "confUsers.ini").write_text("\r\n".join(lines) + "\r\nend\r\n", encoding="cp1252", newline="")


def phone_list(folder, phones):
    """Writes phones.csv as a spreadsheet does: columns in an order of its own, addresses with separators."""
    lines = ["PH_CODE,PH_DESC,PH_MAC,CO_CODE,EQ_CODE"]
    for code in range(10000, 10000 + phones):
        digits = f"0200A0{code * 7919 % 0x1000000:06X}"
        address = ":".join(digits[at:at + 2] for at in range(0, 12, 2))
        lines.append(f'{code},"Büro {code}, hall ""{code % 7}""",{address},ACME,GXP2000')
    (folder / "phones.csv").write_text("\r\n".join(lines) + "\r\n", encoding="utf-8", newline="")


def make_program_folder(folder):
    """A program folder whose working database is velmora.db, created from earlier.db."""
    folder.mkdir()
    (folder / "ParamDB.txt").write_text("Provider=SQLite;Data Source=$$APPPATH$$/velmora.db\n"
                                        "Provider=SQLite;Data Source=$$APPPATH$$/earlier.db\n")
    return folder


def new_folder(scratch, name):
    """A new, empty folder. It stays until the whole measurement is over: some file systems are slow to make files
    for minutes after many have been removed, which would count against whoever comes next."""
    return pathlib.Path(tempfile.mkdtemp(prefix=f"{name}-", dir=scratch))

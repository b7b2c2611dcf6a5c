"""What a range of phone codes costs in a plain Python script: adds every code from 0 to LAST to a company that has a
phone for every hundredth one, adds them again and removes them. Prints the seconds of each, and leaves the lines of all
three in lines.txt.

    yardstick_ranges.py FOLDER LAST
"""

import pathlib
import sqlite3
import sys
import time

CODES_TOGETHER = 1000
TABLES = ("CREATE TABLE RANGES (CO_CODE TEXT, PH_CODE TEXT NOT NULL, PRIMARY KEY (CO_CODE, PH_CODE))",
          "CREATE TABLE PHONES (CO_CODE TEXT, PH_CODE TEXT, PRIMARY KEY (CO_CODE, PH_CODE), FOREIGN KEY (CO_CODE, PH_CODE) "
          "REFERENCES RANGES (CO_CODE, PH_CODE))")


def add(database, code):
    """The line that tells what became of the code."""
    if database.execute("SELECT * FROM PHONES WHERE CO_CODE = 'ACME' AND PH_CODE = ?", (code,)).fetchone():
        return ["not added"]
    try:
        database.execute("INSERT INTO RANGES VALUES('ACME', ?)", (code,))
    except sqlite3.IntegrityError:
        return ["not added"]
    return ["added"]


def remove(database, code):
    """The line that tells that the code is removed, if it is."""
    if not database.execute("SELECT * FROM RANGES WHERE CO_CODE = 'ACME' AND PH_CODE = ?", (code,)).fetchone():
        return []
    try:
        database.execute("DELETE FROM RANGES WHERE CO_CODE = 'ACME' AND PH_CODE = ?", (code,))
    except sqlite3.IntegrityError:
        return []
    return ["removed"]


def treat(database, last, work, lines):
    """Every code, some in one transaction."""
    for first in range(0, last + 1, CODES_TOGETHER):
        database.execute("BEGIN IMMEDIATE")
        for number in range(first, min(first + CODES_TOGETHER, last + 1)):
            lines.append(f"Code {number}")
            lines += work(database, str(number))
        database.execute("COMMIT")


def main():
    folder = pathlib.Path(sys.argv[1])
    last = int(sys.argv[2])
    database = sqlite3.connect(folder / "yardstick.db", isolation_level=None)
    for pragma in ("journal_mode = WAL", "synchronous = FULL", "foreign_keys = ON"):
        database.execute("PRAGMA " + pragma)
    for table in TABLES:
        database.execute(table)
    database.execute("BEGIN IMMEDIATE")
    for code in range(0, last + 1, 100):
        for table in ("RANGES", "PHONES"):
            database.execute(f"INSERT INTO {table} VALUES('ACME', ?)", (str(code),))
    database.execute("COMMIT")
    lines = []
    for work in (add, add, remove):
        start = time.perf_counter()
        treat(database, last, work, lines)
        print(time.perf_counter() - start)
    (folder / "lines.txt").write_text("\n".join(lines), encoding="utf-8")


main()

"""What it costs to take phones from a file of separated values into a table, in a plain Python script. Prints the seconds
of taking in phones.csv, with the verdict on every line, of taking it in once more, and of writing the table to export.csv.

    yardstick_table.py FOLDER PHONES
"""

import csv
import pathlib
import sqlite3
import sys
import time

TABLES = ("CREATE TABLE COMPANY (CO_CODE TEXT PRIMARY KEY, CO_DESC TEXT NOT NULL)",
          "CREATE TABLE EQUIPMENT (EQ_CODE TEXT PRIMARY KEY, EQ_DESC TEXT NOT NULL, EQ_MODULE TEXT NOT NULL)",
          "CREATE TABLE RANGES (CO_CODE TEXT, PH_CODE TEXT NOT NULL, PRIMARY KEY (CO_CODE, PH_CODE))",
          "CREATE TABLE PHONES (CO_CODE TEXT REFERENCES COMPANY, PH_CODE TEXT, EQ_CODE TEXT REFERENCES EQUIPMENT, "
          "PH_DESC TEXT NOT NULL, PH_MAC TEXT NOT NULL, PRIMARY KEY (CO_CODE, PH_CODE), "
          "FOREIGN KEY (CO_CODE, PH_CODE) REFERENCES RANGES (CO_CODE, PH_CODE))")
COLUMNS = ("CO_CODE", "PH_CODE", "EQ_CODE", "PH_DESC", "PH_MAC")
WIDTHS = (5, 5, 10, 50, 12)
SEPARATORS = str.maketrans("", "", ":-. ")
HEXADECIMAL = frozenset("0123456789abcdefABCDEF")


def timed(work):
    """Prints the seconds that the work took."""
    start = time.perf_counter()
    work()
    print(time.perf_counter() - start)


def why_refused(values, keys, references):
    """Why a new or changed phone can't be stored; nothing otherwise."""
    companies, models, ranges = references
    for column, value, width in zip(COLUMNS, values, WIDTHS):
        if len(value) > width:
            return f"{column} holds at most {width} characters"
    if not values[0] or not values[1]:
        return "the key is required"
    if (values[0], values[1]) in keys:
        return f"the same key stands on line {keys[values[0], values[1]]}"
    if values[4] and (len(values[4]) != 12 or not HEXADECIMAL.issuperset(values[4])):
        return f"{values[4]} is no MAC address"
    if values[0] not in companies:
        return f"there is no company {values[0]}"
    if values[2] not in models:
        return f"there is no model {values[2]}"
    if (values[0], values[1]) not in ranges:
        return "the code is not in its company's range"
    return None


def verdicts(database, file):
    """The verdict on every line: its number, the verdict, what to know, and the values."""
    references = ({code for (code,) in database.execute("SELECT CO_CODE FROM COMPANY")},
                  {code for (code,) in database.execute("SELECT EQ_CODE FROM EQUIPMENT")},
                  set(database.execute("SELECT CO_CODE, PH_CODE FROM RANGES")))
    stored = {row[:2]: row for row in database.execute("SELECT * FROM PHONES")}
    owners = {row[4]: row[:2] for row in stored.values()}
    keys, found = {}, []
    lines = csv.reader(file)
    places = [COLUMNS.index(name) for name in next(lines)]
    for fields in lines:
        number = lines.line_num
        values = [""] * len(COLUMNS)
        for place, value in zip(places, fields):
            values[place] = value
        values[4] = values[4].translate(SEPARATORS)
        values = tuple(values)
        key = values[:2]
        reason = why_refused(values, keys, references)
        keys[key] = number
        if reason:
            found.append((number, "refused", reason, values))
        elif key not in stored:
            owner = owners.setdefault(values[4], key)
            found.append((number, "new", f"{owner} has this address" if owner != key else "", values))
        elif stored[key] == values:
            found.append((number, "same", "", values))
        else:
            found.append((number, "changed", list(zip(stored[key], values)), values))
    return found


def take_in(database, folder, expected):
    """Brings the table up to the file, in one transaction."""
    database.execute("BEGIN IMMEDIATE")
    with open(folder / "phones.csv", encoding="utf-8", newline="") as file:
        lines = verdicts(database, file)
    if any(line[1] != expected for line in lines):
        sys.exit("Not every line has the expected verdict.")
    database.executemany("INSERT INTO PHONES VALUES(?, ?, ?, ?, ?)", [line[3] for line in lines if line[1] == "new"])
    database.executemany("UPDATE PHONES SET EQ_CODE = ?, PH_DESC = ?, PH_MAC = ? WHERE CO_CODE = ? AND PH_CODE = ?",
                         [line[3][2:] + line[3][:2] for line in lines if line[1] == "changed"])
    database.execute("COMMIT")


def write_out(database, folder):
    """Writes the table."""
    with open(folder / "export.csv", "w", encoding="utf-8", newline="") as file:
        writer = csv.writer(file)
        writer.writerow(COLUMNS)
        writer.writerows(database.execute("SELECT * FROM PHONES ORDER BY CO_CODE, PH_CODE"))


def main():
    folder, phones = pathlib.Path(sys.argv[1]), int(sys.argv[2])
    database = sqlite3.connect(folder / "yardstick.db", isolation_level=None)
    for statement in ("PRAGMA journal_mode = WAL", "PRAGMA synchronous = FULL", "PRAGMA foreign_keys = ON", "BEGIN"):
        database.execute(statement)
    for statement in TABLES:
        database.execute(statement)
    database.execute("INSERT INTO COMPANY VALUES('ACME', 'Acme')")
    database.execute("INSERT INTO EQUIPMENT VALUES('GXP2000', 'Desk phone', 'GRANDSTREAM')")
    database.executemany("INSERT INTO RANGES VALUES('ACME', ?)", [(str(code),) for code in range(10000, 10000 + phones)])
    database.execute("COMMIT")
    timed(lambda: take_in(database, folder, "new"))
    timed(lambda: take_in(database, folder, "same"))
    timed(lambda: write_out(database, folder))


main()

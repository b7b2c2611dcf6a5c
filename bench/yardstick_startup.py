"""What the start-up's bulk work costs in a plain Python script. Prints the seconds it took.

    yardstick_startup.py create FOLDER     fills velmora.db with the rows of earlier.db
    yardstick_startup.py seed FOLDER       takes the lines of tarvel.csv into velmora.db
"""

import os
import shutil
import sqlite3
import sys
import time

COPIED_TABLES = ("SYSTEM_PARAMETERS", "CREATION_FLAGS", "LEVELS", "RANGES", "TYPES", "COMPANY", "EQUIPMENT", "PHONES",
                 "EQUIPMENT_PARAMETERS", "PHONES_PARAMETERS", "COMPANY_PARAMETERS", "PHONE_BOOK")


def opened(file):
    """The database with the settings that Velmora gives it, without implicit transactions."""
    database = sqlite3.connect(file, isolation_level=None)
    database.execute("PRAGMA journal_mode = WAL")
    database.execute("PRAGMA synchronous = FULL")
    database.execute("PRAGMA foreign_keys = ON")
    return database


def create(folder):
    earlier = sqlite3.connect(os.path.join(folder, "earlier.db"))
    database = opened(os.path.join(folder, "velmora.db"))
    database.execute("BEGIN IMMEDIATE")
    for (statement,) in earlier.execute("SELECT sql FROM sqlite_master WHERE type = 'table' ORDER BY rowid"):
        database.execute(statement)
    for table in COPIED_TABLES:
        rows = earlier.execute(f"SELECT * FROM {table}")
        places = ", ".join("?" * len(rows.description))
        database.executemany(f"INSERT INTO {table} VALUES({places})", rows)
    database.execute("COMMIT")
    database.close()


def seed(folder):
    path = os.path.join(folder, "tarvel.csv")
    database = opened(os.path.join(folder, "velmora.db"))
    (version,) = database.execute("SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$BASEVER'").fetchone()
    columns = {}
    database.execute("BEGIN IMMEDIATE")
    with open(path, encoding="utf-8") as lines:
        for line in lines:
            tag, table, *values = line.rstrip("\n").split(";")
            if tag not in (version + "V", "All"):
                continue
            if table not in columns:
                columns[table] = len(database.execute(f"PRAGMA table_info({table})").fetchall())
            try:
                places = ", ".join("?" * columns[table])
                database.execute(f"INSERT INTO {table} VALUES({places})", values[:columns[table]])
            except sqlite3.Error as error:
                print(error, file=sys.stderr)
    shutil.copyfile(path, os.path.join(folder, f"tarvel_{version}.csv"))
    database.execute("COMMIT")
    os.remove(path)
    database.close()


start = time.perf_counter()
{"create": create, "seed": seed}[sys.argv[1]](sys.argv[2])
print(time.perf_counter() - start)

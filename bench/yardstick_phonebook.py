"""What a phone book costs in a plain Python script. Prints the seconds of an import of confUsers.ini into a new
database, of a second import, of writing the address book, and of writing the CSV file; then of reading and writing the
same files without anything in between.

    yardstick_phonebook.py FOLDER
"""

import pathlib
import sqlite3
import sys
import time

TABLES = """
CREATE TABLE CREATION_FLAGS (FL_CODE nvarchar(1), FL_DESC nvarchar(50) NOT NULL, FL_SYS nvarchar(1) NOT NULL,
    PRIMARY KEY (FL_CODE));
CREATE TABLE PHONE_BOOK (CO_CODE nvarchar(5), BK_NUM nvarchar(50), BK_NAME nvarchar(50) NOT NULL,
    BK_FLAG nvarchar(1) NOT NULL, BK_EXTNUM nvarchar(20) NOT NULL, BK_FAX nvarchar(20) NOT NULL,
    BK_GSM nvarchar(20) NOT NULL, BK_MAIL nvarchar(100) NOT NULL, PRIMARY KEY (CO_CODE, BK_NUM),
    FOREIGN KEY (BK_FLAG) REFERENCES CREATION_FLAGS(FL_CODE) ON UPDATE CASCADE);
INSERT INTO CREATION_FLAGS VALUES('V', 'x', 'Y'), ('W', 'x', 'Y'), ('H', 'x', 'Y');
"""


def timed(work):
    """Prints the seconds that the work took."""
    start = time.perf_counter()
    work()
    print(time.perf_counter() - start)


def users(folder):
    """The entries of the list: name and number."""
    lines = (folder / "confUsers.ini").read_text(encoding="cp1252").splitlines()
    return [(lines[at + 1][5:] + " " + lines[at + 2][8:] + " ", lines[at + 3][10:])
            for at in range(1, len(lines) - 3, 4)]


def import_users(database, folder):
    """Brings the table up to the list, in one transaction."""
    database.execute("BEGIN IMMEDIATE")
    database.execute("UPDATE PHONE_BOOK SET BK_FLAG = 'W' WHERE BK_FLAG = 'V'")
    flags = dict(database.execute("SELECT BK_NUM, BK_FLAG FROM PHONE_BOOK"))
    for name, number in users(folder):
        if number not in flags:
            database.execute("INSERT INTO PHONE_BOOK VALUES('ACME', ?, ?, 'V', '', '', '', '')", (number, name))
        elif flags[number] == "W":
            database.execute("UPDATE PHONE_BOOK SET BK_NAME = ?, BK_FLAG = 'V' WHERE CO_CODE = 'ACME' AND BK_NUM = ?",
                             (name, number))
    database.execute("UPDATE PHONE_BOOK SET BK_FLAG = 'H' WHERE BK_FLAG = 'W'")
    database.execute("COMMIT")


def address_book(database, folder):
    """Writes gs_phonebook.xml."""
    rows = database.execute("SELECT BK_NAME, BK_NUM FROM PHONE_BOOK WHERE CO_CODE = 'ACME' AND BK_FLAG <> 'H' "
                            "ORDER BY BK_NAME")
    parts = ['<?xml version="1.0"?>\r\n<AddressBook>\r\n']
    for index, (name, number) in enumerate(rows):
        parts.append(f"<Contact>\r\n<LastName>{name}</LastName>\r\n<FirstName></FirstName>\r\n<Phone>\r\n"
                     f"<phonenumber>{number}</phonenumber>\r\n<accountindex>{index}</accountindex>\r\n"
                     "</Phone>\r\n</Contact>\r\n")
    parts.append("</AddressBook>\r\n")
    (folder / "gs_phonebook.xml").write_bytes("".join(parts).encode("cp1252"))


def csv_file(database, folder):
    """Writes Phone_Book.csv."""
    rows = database.execute("SELECT * FROM PHONE_BOOK WHERE CO_CODE = 'ACME'")
    text = "".join(";".join(row) + "\r\n" for row in rows)
    (folder / "Phone_Book.csv").write_bytes(text.encode("cp1252"))


def copy_files(folder):
    """Reads the list and writes files of the sizes of the others."""
    (folder / "confUsers.ini").read_bytes()
    for name in ("gs_phonebook.xml", "Phone_Book.csv"):
        (folder / "copy").write_bytes(b"x" * (folder / name).stat().st_size)


def main():
    folder = pathlib.Path(sys.argv[1])
    database = sqlite3.connect(folder / "yardstick.db", isolation_level=None)
    database.execute("PRAGMA journal_mode = WAL")
    database.execute("PRAGMA synchronous = FULL")
    database.execute("PRAGMA foreign_keys = ON")
    database.executescript(TABLES)
    timed(lambda: import_users(database, folder))
    timed(lambda: import_users(database, folder))
    timed(lambda: address_book(database, folder))
    timed(lambda: csv_file(database, folder))
    timed(lambda: copy_files(folder))


main()

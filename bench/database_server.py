"""A MariaDB server of a measurement's own."""

import os
import pathlib
import signal
import subprocess
import tempfile
import time

CONTROL = pathlib.Path(__file__).resolve().parent.parent / "tests" / "support" / "mariadb-server"
DATABASE = "bench"


class Server:
    """Writes every commit to the disk, as real ones do. To be used in a "with" statement."""

    def __init__(self):
        # Not below a scratch folder, which the account that the server runs under can't enter.
        self.folder = pathlib.Path(tempfile.gettempdir()) / f"velmora-bench-{os.getpid()}"

    def __enter__(self):
        subprocess.run([CONTROL, "start", self.folder, "durable"], check=True)
        return self

    def __exit__(self, *failure):
        subprocess.run([CONTROL, "stop", self.folder], check=True)

    def kill(self):
        """Ends the server as a power cut does."""
        process = int((self.folder / "pid").read_text())
        os.kill(process, signal.SIGKILL)
        while pathlib.Path(f"/proc/{process}/stat").exists():
            if ") Z " in pathlib.Path(f"/proc/{process}/stat").read_text():
                break
            time.sleep(0.01)

    def resume(self):
        subprocess.run([CONTROL, "resume", self.folder], check=True)

    def client(self, program, *arguments, statements=""):
        """What a client program of the server prints."""
        return subprocess.run([program, "--no-defaults", f"--socket={self.folder}/socket", "--user=root", *arguments],
                              input=statements, check=True, capture_output=True, text=True).stdout

    def execute(self, statements, database="mysql"):
        return self.client("mariadb", "--skip-column-names", database, statements=statements)

    def connection_string(self):
        host, port, user, password = (self.folder / "connection").read_text().strip().split(";")
        return (f"Provider=MariaDB;Data Source={host};Port={port};User ID={user};Password={password};"
                f"Initial Catalog={DATABASE}")

    def new_database(self, content=""):
        """Its connection string; the database that had the name before is gone."""
        self.execute(f"DROP DATABASE IF EXISTS {DATABASE}; CREATE DATABASE {DATABASE}")
        self.execute(content, DATABASE)
        return self.connection_string()

    def content(self):
        """Every table and row of the database, as statements."""
        return self.client("mariadb-dump", "--skip-comments", "--order-by-primary", DATABASE)

    def sent(self):
        """What was sent to the server so far: statements, and preparations of statements."""
        rows = self.execute("SHOW GLOBAL STATUS WHERE Variable_name IN "
                            "('Questions', 'Com_stmt_prepare', 'Com_stmt_reset', 'Com_stmt_close')")
        return sum(int(row.split()[1]) for row in rows.splitlines())


def folder_for(scratch, working, earlier):
    """A program folder whose working database is created from the file `earlier`."""
    folder = pathlib.Path(tempfile.mkdtemp(prefix="program-", dir=scratch))
    (folder / "ParamDB.txt").write_text(f"{working}\nProvider=SQLite;Data Source={earlier}\n")
    return folder

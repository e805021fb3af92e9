#!/usr/bin/env python3
"""Programs of two systems at work on one database.

    mixedSystems.py SECONDS FOLDER NATIVE-CLI WINDOWS-CLI [WORKERS]

Half of the workers run vellums-cli natively, half the Windows one under Wine (to be started through
scripts/withWine). Each adds, changes and deletes records of its own and searches in between. Afterwards every
record must be there as its worker left it, the file must be sound, and nobody may have been kept waiting:
exit code 0. What was refused must not have happened.
"""
import os
import random
import subprocess
import sys
import threading
import time

WINE = "/usr/lib/wine/wine64"


class Worker(threading.Thread):
    def __init__(self, name, command, database, end):
        super().__init__()
        self.name, self.command, self.database, self.end = name, command, database, end
        self.random = random.Random(name)
        self.records, self.done, self.refused, self.longest = {}, 0, [], 0.0

    def call(self, verb, *arguments, text=None):
        """What the program prints; None when it refused."""
        start = time.monotonic()
        result = subprocess.run([*self.command, verb, self.database, *arguments], input=text,
                                capture_output=True, text=True, errors="replace", check=False)
        self.longest = max(self.longest, time.monotonic() - start)
        if result.returncode != 0:
            self.refused.append(result.stderr.strip())
            return None
        self.done += 1
        return result.stdout

    def run(self):
        while time.monotonic() < self.end:
            choice = self.random.randrange(10)
            text = f"{self.name} {self.done} " + "word " * self.random.randrange(900)
            if choice < 5 or not self.records:
                printed = self.call("add", text=text)
                if printed is not None:
                    self.records[int(printed.split()[0])] = text.strip()
                continue
            number = self.random.choice(sorted(self.records))
            if choice < 7:
                if self.call("sql", f"UPDATE [Notes] SET VLTEXT='{text.strip()}' WHERE ID={number}") is not None:
                    self.records[number] = text.strip()
            elif choice < 8:
                if self.call("sql", f"DELETE FROM [Notes] WHERE ID={number}") is not None:
                    del self.records[number]
            else:
                self.call("search", self.name)


def stored(native, database):
    rows = subprocess.run([native, "sql", database, "SELECT ID, VLTEXT FROM [Notes]"],
                          capture_output=True, text=True, check=True).stdout.splitlines()[1:]
    return {int(row.split("\t")[0]): row.split("\t")[1].strip() for row in rows}


def main():
    seconds, folder, native, windows = float(sys.argv[1]), sys.argv[2], sys.argv[3], sys.argv[4]
    workers = int(sys.argv[5]) if len(sys.argv) > 5 else 4
    database = os.path.join(os.path.abspath(folder), "mixed.accdb")
    for name in os.listdir(folder):
        if name.startswith("mixed."):
            os.remove(os.path.join(folder, name))
    subprocess.run([native, "create", database, "--table", "Notes"], check=True)
    end = time.monotonic() + seconds
    all_workers = [
        Worker(f"native{i}", [native], database, end) if i % 2 == 0 else
        Worker(f"windows{i}", [WINE, windows], "Z:" + database.replace("/", "\\"), end) for i in range(workers)]
    for worker in all_workers:
        worker.start()
    for worker in all_workers:
        worker.join()
    faults = []
    for worker in all_workers:
        print(f"{worker.name}: {worker.done} done, {len(worker.refused)} refused, the longest {worker.longest:.2f} s")
        if worker.done < 5 or len(worker.refused) * 50 > worker.done:
            faults.append(f"{worker.name} was kept waiting: {sorted(set(worker.refused))[:3]}")
    expected = {number: text for worker in all_workers for number, text in worker.records.items()}
    if sum(len(worker.records) for worker in all_workers) != len(expected):
        faults.append("an ID was given out twice")
    found = stored(native, database)
    wrong = [number for number in expected.keys() | found.keys() if expected.get(number) != found.get(number)]
    if wrong:
        faults.append(f"{len(wrong)} records are not as they were left, the first {min(wrong)}")
    check = subprocess.run([native, "check", database], capture_output=True, text=True, check=False)
    if check.returncode != 0:
        faults.append("the file is not sound: " + check.stdout[:300])
    print("\n".join(faults) if faults else f"All {len(found)} records are as they were left.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

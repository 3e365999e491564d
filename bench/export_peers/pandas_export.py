"""The export of a postal code table with pandas, code page 932. Reading isn't timed.
Usage: pandas_export.py SOURCE TARGET TIMES"""
import csv
import sys
import time

import pandas

source, target, times = sys.argv[1], sys.argv[2], int(sys.argv[3])
table = pandas.read_csv(
    source,
    header=None,
    encoding="cp932",
    dtype={**{i: str for i in range(9)}, **{i: "uint8" for i in range(9, 15)}},
    keep_default_na=False,
)
started = time.perf_counter()
with open(target, "w", encoding="cp932", newline="") as file:
    for _ in range(times):
        table.to_csv(file, header=False, index=False, quoting=csv.QUOTE_NONNUMERIC, lineterminator="\r\n")
print(f"rows={len(table) * times} seconds={time.perf_counter() - started:.4f}")

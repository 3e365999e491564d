"""The import of a postal code table with pandas, code page 932. Usage: pandas_import.py FILE"""
import sys

import pandas

table = pandas.read_csv(
    sys.argv[1],
    header=None,
    encoding="cp932",
    dtype={**{i: str for i in range(9)}, **{i: "uint8" for i in range(9, 15)}},
    keep_default_na=False,
)
total = int(table[8].str[0].map(ord).sum()) + int(table[list(range(9, 15))].sum().sum())
print(f"rows={len(table)} bad=0 sum={total}")

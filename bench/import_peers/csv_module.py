"""The import of a postal code table with Python's csv module, code page 932. Usage: csv_module.py FILE"""
import csv
import sys

rows = 0
total = 0
with open(sys.argv[1], encoding="cp932", newline="") as file:
    for row in csv.reader(file):
        numbers = [int(text) for text in row[9:15]]
        rows += 1
        total += ord(row[8][0]) + sum(numbers)
print(f"rows={rows} bad=0 sum={total}")

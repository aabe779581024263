"""Independent order and filter of a table for the tree grid's tests.

Usage: table_oracle.py TABLE.tsv JOBS.json RESULT.txt

The table's first line is "name:type" per column (type text or number); numbers are Python
float texts ("nan" for undefined). Each job sorts (a list of [column, ascending]) and filters
(discrete texts, numerical bounds with None open, inverted columns, rows suppressed by hand);
the result has one line per job: the rows that remain, in their order, separated by spaces.

Sorting: texts compare by their UTF-8 bytes after lowering A-Z only; numbers as numbers with NaN
after every number in both directions; rows that tie keep their order in the table. This is done
with Python's stable sort, one pass per column from the last to the first.
"""
import json
import math
import sys

ASCII_LOWER = {c: c + 32 for c in range(ord("A"), ord("Z") + 1)}


def read_table(path):
    with open(path, encoding="utf-8", newline="\n") as f:
        lines = f.read().split("\n")
    header = [h.split(":") for h in lines[0].split("\t")]
    columns = [[] for _ in header]
    for line in lines[1:]:
        if line == "" and len(header) > 1:
            continue
        cells = line.split("\t")
        for i, (name, kind) in enumerate(header):
            columns[i].append(float(cells[i]) if kind == "number" else cells[i])
    return header, columns


def sort_rows(rows, header, columns, sorts, case_sensitive):
    for col, ascending in reversed(sorts):
        values = columns[col]
        if header[col][1] == "number":
            def key(r, v=values, a=ascending):
                x = v[r]
                if math.isnan(x):
                    return (1, 0.0)
                return (0, x if a else -x)
            rows.sort(key=key)
        else:
            def key(r, v=values):
                s = v[r] if case_sensitive else v[r].translate(ASCII_LOWER)
                return s.encode("utf-8")
            rows.sort(key=key, reverse=not ascending)
    return rows


def keep(row, header, columns, job):
    inverted = set(job.get("inverted", []))
    for col, texts in job.get("discrete", {}).items():
        col = int(col)
        inside = columns[col][row] in set(texts)
        if inside == (col in inverted):
            return False
    for col, (low, high) in job.get("numeric", {}).items():
        col = int(col)
        v = columns[col][row]
        inside = not (high is not None and v > high) and not (low is not None and v < low)
        if inside == (col in inverted):
            return False
    return True


def main():
    header, columns = read_table(sys.argv[1])
    with open(sys.argv[2]) as f:
        jobs = json.load(f)
    count = len(columns[0]) if columns else 0
    results = []
    for job in jobs:
        rows = sort_rows(list(range(count)), header, columns, job.get("sort", []), job.get("case", False))
        suppressed = set(job.get("suppressed", []))
        results.append([r for r in rows if r not in suppressed and keep(r, header, columns, job)])
    with open(sys.argv[3], "w") as f:
        for rows in results:
            f.write(" ".join(map(str, rows)) + "\n")


main()

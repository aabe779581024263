"""Independent matches of a find in a table for the tree grid's tests.

Usage: find_oracle.py TABLE.tsv JOBS.json RESULT.txt

The table is tab-separated with a header line (ignored). Each job holds "text" and the flags
"regex", "case" and "word"; the result has one line per job: the matching cells "row:col" in
reading order (row by row, columns left to right), separated by spaces. Plain text is matched
literally; a whole word needs a non-word character or the edge of the cell on both sides.
"""
import json
import re
import sys


def main():
    table_path, jobs_path, result_path = sys.argv[1:4]
    with open(table_path, encoding="utf-8") as f:
        rows = [line.rstrip("\n").split("\t") for line in f][1:]
    with open(jobs_path, encoding="utf-8") as f:
        jobs = json.load(f)
    out = []
    for job in jobs:
        pattern = job["text"] if job.get("regex") else re.escape(job["text"])
        if job.get("word"):
            pattern = r"\b(?:" + pattern + r")\b"
        flags = 0 if job.get("case") else re.IGNORECASE
        matcher = re.compile(pattern, flags | re.ASCII)
        cells = []
        for r, row in enumerate(rows):
            for c, text in enumerate(row):
                if matcher.search(text):
                    cells.append(f"{r}:{c}")
        out.append(" ".join(cells))
    with open(result_path, "w", encoding="utf-8") as f:
        f.write("\n".join(out) + "\n")


if __name__ == "__main__":
    main()

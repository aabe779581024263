#!/usr/bin/python3
"""Reads the HTML table of the control panel's drag source with Python's own HTML parser and
compares it with the CSV form of the same data: usage html_table_check.py TABLE.html DATA.csv.
Prints "ok", or the first difference and exits 1."""
import csv
import sys
from html.parser import HTMLParser

import numpy


class TableReader(HTMLParser):
    def __init__(self):
        super().__init__()
        self.declarations = []
        self.start_tags = []
        self.table_attributes = None
        self.rows = []
        self.cell = None

    def handle_decl(self, decl):
        self.declarations.append(decl)

    def handle_starttag(self, tag, attrs):
        self.start_tags.append(tag)
        if tag == "table":
            self.table_attributes = attrs
        elif tag == "tr":
            self.rows.append([])
        elif tag == "td":
            self.cell = ""

    def handle_endtag(self, tag):
        if tag == "td" and self.cell is not None:
            self.rows[-1].append(self.cell.strip())
            self.cell = None

    def handle_data(self, data):
        if self.cell is not None:
            self.cell += data


def fail(reason):
    print(reason)
    sys.exit(1)


def main():
    with open(sys.argv[1], encoding="utf-8") as f:
        html = f.read()
    with open(sys.argv[2], encoding="utf-8", newline="") as f:
        table = list(csv.reader(f))
    reader = TableReader()
    reader.feed(html)
    reader.close()
    if reader.declarations != ['DOCTYPE HTML PUBLIC "-//W3C//DTD HTML 3.2//EN"']:
        fail("declarations: %r" % reader.declarations)
    if reader.start_tags[:4] != ["html", "body", "table", "tbody"]:
        fail("outer tags: %r" % reader.start_tags[:4])
    if reader.table_attributes != [("cols", "2"), ("border", "1")]:
        fail("table attributes: %r" % reader.table_attributes)
    if "<TD>x</TD>" not in html or "<TD>y</TD>" not in html:
        fail("the first row is not written as <TD>x</TD> and <TD>y</TD>")
    if reader.rows != table:
        fail("rows differ from the CSV: %r against %r" % (reader.rows[:3], table[:3]))
    if table[0] != ["x", "y"] or len(table) < 3:
        fail("CSV header or length: %r" % table[:2])
    values = numpy.array(table[1:], dtype=float)
    if not numpy.allclose(values[:, 1], numpy.sin(2 * numpy.pi * values[:, 0]), atol=1e-5):
        fail("y is not one period of a sine over x")
    if not (numpy.all(numpy.diff(values[:, 0]) > 0) and values[0, 0] == 0.0 and values[-1, 0] == 1.0):
        fail("x does not rise from 0 to 1")
    print("ok")


if __name__ == "__main__":
    main()

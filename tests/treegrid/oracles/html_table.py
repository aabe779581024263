"""Reads an HTML table with Python's html.parser for the tree grid's export test.

Usage: html_table.py IN.html OUT.txt
Writes tab-separated lines: "doctype", "generator" (META NAME=GENERATOR), "cols" and "border" of
the TABLE, "header" with the TH texts, then one "row" line per TR with its TD texts.
"""
import sys
from html.parser import HTMLParser


class TableReader(HTMLParser):
    def __init__(self):
        super().__init__(convert_charrefs=True)
        self.result = {"doctype": None, "generator": None, "cols": None, "border": None, "header": [], "rows": []}
        self.cell = None
        self.row = None

    def handle_decl(self, decl):
        self.result["doctype"] = decl

    def handle_starttag(self, tag, attrs):
        attrs = dict(attrs)
        if tag == "meta" and attrs.get("name") == "GENERATOR":
            self.result["generator"] = attrs.get("content")
        elif tag == "table":
            self.result["cols"] = int(attrs["cols"])
            self.result["border"] = int(attrs["border"])
        elif tag == "tr":
            self.row = []
        elif tag in ("td", "th"):
            self.cell = ""

    def handle_endtag(self, tag):
        if tag in ("td", "th"):
            self.row.append((tag, self.cell))
            self.cell = None
        elif tag == "tr":
            if self.row and all(kind == "th" for kind, _ in self.row):
                self.result["header"] = [text for _, text in self.row]
            else:
                self.result["rows"].append([text for _, text in self.row])
            self.row = None

    def handle_data(self, data):
        if self.cell is not None:
            self.cell += data


reader = TableReader()
with open(sys.argv[1], encoding="utf-8") as f:
    reader.feed(f.read())
reader.close()
r = reader.result
with open(sys.argv[2], "w", encoding="utf-8") as f:
    f.write("doctype\t%s\n" % r["doctype"])
    f.write("generator\t%s\n" % r["generator"])
    f.write("cols\t%s\n" % r["cols"])
    f.write("border\t%s\n" % r["border"])
    f.write("\t".join(["header"] + r["header"]) + "\n")
    for row in r["rows"]:
        f.write("\t".join(["row"] + row) + "\n")

#!/usr/bin/python3
"""Reads a curve-list XML with xml.etree and writes its content as one line per element
("tag key=value ..." with keys sorted), or writes a curve list of its own.
Usage: curve_list_xml.py read <in.xml> <out.txt> | write <out.xml> <section> <section_id>"""
import sys
import xml.etree.ElementTree as ET

if sys.argv[1] == "read":
    root = ET.parse(sys.argv[2]).getroot()
    with open(sys.argv[3], "w", encoding="utf-8") as out:
        out.write("root %s instance_id=%s\n" % (root.tag, root.get("instance_id")))
        for element in root:
            fields = " ".join("%s=%s" % (k, element.get(k)) for k in sorted(element.keys()))
            out.write("%s %s\n" % (element.tag, fields))
else:
    root = ET.Element("vx_zelwave_curve_list", instance_id="host-7")
    section, section_id = sys.argv[3], sys.argv[4]
    # By name only, by a wrong index that the name corrects, a whole section, an instance, and a
    # curve that isn't there.
    ET.SubElement(root, "curve", section_id=section_id, section=section, name="i(R<1>)")
    ET.SubElement(root, "curve", section_id="999", section=section, name="v(a&b)", index="0")
    ET.SubElement(root, "curve", section_id=section_id, section=section, name="*")
    ET.SubElement(root, "instance", name="top.x1")
    ET.SubElement(root, "curve", section_id=section_id, section=section, name="missing")
    ET.ElementTree(root).write(sys.argv[2], encoding="utf-8", xml_declaration=True)

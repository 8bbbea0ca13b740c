#!/usr/bin/python3
"""The demo report "Deals by value" drawn by the peer PDF library of
bench/pdf_peer.sh on its fastest road: canvas drawing with an embedded
TrueType font, the rows read from the same SQLite file as `orvex export`.

    deals_by_value.py DATABASE OUT.pdf

Prints the seconds it took and its peak memory in MB on one line."""

import datetime
import math
import resource
import sqlite3
import sys
import time

from reportlab.pdfbase import pdfmetrics
from reportlab.pdfbase.ttfonts import TTFont
from reportlab.pdfgen import canvas

FONT_DIR = "/usr/share/fonts/truetype/dejavu/"
PAGE_WIDTH, PAGE_HEIGHT = 595.3, 841.9  # A4 in points
MARGIN = 72
ROW = 15
# Left edges of the columns in points, as the demo layout sets them in twips.
DEAL, COMPANY, VALUE_RIGHT, STAGE = 0, 175, 400, 410
STAGES = {0: "Lead", 1: "Qualified", 2: "Proposal", 3: "Negotiation", 4: "Won", 5: "Lost"}


def main():
    database, out = sys.argv[1], sys.argv[2]
    start = time.perf_counter()
    pdfmetrics.registerFont(TTFont("DejaVu", FONT_DIR + "DejaVuSans.ttf"))
    pdfmetrics.registerFont(TTFont("DejaVu-Bold", FONT_DIR + "DejaVuSans-Bold.ttf"))
    rows = sqlite3.connect(database).execute(
        "SELECT d.name, c.name, d.value / 10000, d.stage FROM deal d "
        "JOIN company c ON c.idcompany = d.company ORDER BY d.value DESC").fetchall()

    body_top = PAGE_HEIGHT - MARGIN - 60
    per_page = int((body_top - MARGIN - 30) // ROW)
    pages = max(1, math.ceil(len(rows) / per_page))
    today = datetime.date.today().isoformat()
    pdf = canvas.Canvas(out, pagesize=(PAGE_WIDTH, PAGE_HEIGHT), pageCompression=1)
    pdf.setTitle("Deals by value")
    total = 0
    for page in range(pages):
        pdf.setFont("DejaVu-Bold", 14)
        pdf.drawString(MARGIN, PAGE_HEIGHT - MARGIN - 14, "Deals by value")
        pdf.setFont("DejaVu", 10)
        pdf.drawRightString(PAGE_WIDTH - MARGIN, PAGE_HEIGHT - MARGIN - 10, today)
        y = PAGE_HEIGHT - MARGIN - 40
        for text, x in (("Deal", DEAL), ("Company", COMPANY), ("Stage", STAGE)):
            pdf.drawString(MARGIN + x, y, text)
        pdf.drawRightString(MARGIN + VALUE_RIGHT, y, "Value")
        pdf.line(MARGIN, y - 4, PAGE_WIDTH - MARGIN, y - 4)
        y = body_top
        for name, company, value, stage in rows[page * per_page:(page + 1) * per_page]:
            pdf.drawString(MARGIN + DEAL, y, name)
            pdf.drawString(MARGIN + COMPANY, y, company)
            pdf.drawRightString(MARGIN + VALUE_RIGHT, y, f"{value:,.0f}")
            pdf.drawString(MARGIN + STAGE, y, STAGES.get(stage, ""))
            total += value
            y -= ROW
        if page == pages - 1:
            pdf.setFont("DejaVu-Bold", 10)
            pdf.drawRightString(MARGIN + COMPANY + 145, y - 10, "Total")
            pdf.drawRightString(MARGIN + VALUE_RIGHT, y - 10, f"{total:,.0f}")
            pdf.setFont("DejaVu", 10)
        pdf.line(MARGIN, MARGIN + 20, PAGE_WIDTH - MARGIN, MARGIN + 20)
        pdf.drawRightString(PAGE_WIDTH - MARGIN, MARGIN + 6, f"Page {page + 1} of {pages}")
        pdf.showPage()
    pdf.save()
    seconds = time.perf_counter() - start
    peak = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / 1024
    print(f"{seconds:.2f} {peak:.0f}")


if __name__ == "__main__":
    main()

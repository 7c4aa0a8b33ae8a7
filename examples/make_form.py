#!/usr/bin/env python3
"""Writes form.pdf, the sample form: one page with a field of every kind, drawn by nobody yet.

It is written as plain text, without appearance streams: what the filled form looks like is all jackdaw's doing.
"""
# SPDX-License-Identifier: MIT
import pathlib

objects = ['', '', '',  # catalog, pages, page: filled in at the end
           '<< /Type /XObject /Subtype /Form /BBox [0 0 15 15] /Length 0 >>\nstream\n\nendstream']  # an empty face
kids = []               # object numbers of the widgets, in tab order
roots = []              # object numbers of the fields
labels = []


def add(body):
    objects.append(body)
    return len(objects)


def label(x, y, text, size=10, font='F1'):
    labels.append(f'BT /{font} {size} Tf {x} {y} Td ({text}) Tj ET')


def widget(x, y, w, h, entries):
    return (f'/Type /Annot /Subtype /Widget /F 4 /P 3 0 R /Rect [{x} {y} {x + w} {y + h}] {entries}')


def field(name, x, y, w, h, entries):
    number = add(f'<< /T ({name}) {widget(x, y, w, h, entries)} >>')
    kids.append(number)
    roots.append(number)


def look(background='0.95 0.97 1', border='0.35 0.45 0.6', more=''):
    return f'/MK << /BC [{border}] /BG [{background}] {more} >>'


def text(name, title, x, y, w=200, h=20, entries='', style='S', width=1, more='', flags=0, da='/Helv 11 Tf 0 g'):
    label(x, y + h + 4, title)
    bs = f'/BS << /W {width} /S /{style} >>'
    field(name, x, y, w, h, f'/FT /Tx /Ff {flags} /DA ({da}) {bs} {look(more=more)} {entries}')


label(50, 740, 'Course registration', 20, 'F2')
label(50, 722, 'A sample form of every kind of field', 10)
text('given', 'Given name', 50, 675)
text('family', 'Family name (beveled)', 300, 675, style='B')
text('email', 'E-mail (dashed)', 50, 630, style='D', entries='/MaxLen 60')
text('born', 'Date of birth (inset, centred)', 300, 630, w=120, style='I', entries='/Q 1')
text('fee', 'Fee (right)', 440, 630, w=60, entries='/Q 2', da='/Cour 11 Tf 0 0.3 0 rg')
text('pin', 'PIN (password)', 50, 585, w=90, flags=0x2000)
text('phone', 'Phone (underlined)', 160, 585, w=90, style='U')
text('motto', 'Motto (automatic size)', 300, 585, w=200, da='/TiIt 0 Tf 0.4 0 0.3 rg')
text('notes', 'Notes (several lines)', 50, 480, h=80, flags=0x1000, da='/Helv 10 Tf 0 g')

label(300, 564, 'Country (choice)')
field('country', 300, 540, 200, 20, '/FT /Ch /Ff 131072 /DA (/Helv 11 Tf 0 g) /V (at) /DV (at) '
      f'/Opt [[(at) (Austria)] [(fr) (France)] [(in) (India)] [(jp) (Japan)]] {look()}')
label(300, 524, 'Subject (list)')
field('subject', 300, 460, 200, 60, '/FT /Ch /Ff 0 /DA (/Helv 10 Tf 0 g) '
      f'/Opt [(Algebra) (Geometry) (Logic) (Probability) (Topology) (Number theory)] {look()}')

label(50, 442, 'Level')
group = len(objects) + 1
objects.append('')
roots.append(group)
members = []
for i, (state, title) in enumerate((('beginner', 'beginner'), ('middle', 'intermediate'), ('advanced', 'advanced'))):
    x = 50 + 85 * i
    label(x + 20, 425, title)
    members.append(add(f'<< /Parent {group} 0 R {widget(x, 421, 15, 15, "/DA (/ZaDb 0 Tf 0 g)")} '
                       f'{look("1", more="/CA (l)")} /AS /Off /AP << /N << /{state} 4 0 R >> >> >>'))
kids.extend(members)
refs = ' '.join(f'{m} 0 R' for m in members)
for name, y, mark, title in (('newsletter', 395, '4', 'Send me the newsletter'), ('terms', 372, '8', 'I accept the terms')):
    label(72, y + 4, title)
    field(name, 50, y, 15, 15, f'/FT /Btn /DA (/ZaDb 0 Tf 0 0.25 0.5 rg) {look("1", more=f"/CA ({mark})")} '
          '/AS /Off /AP << /N << /Yes 4 0 R >> >>')

label(300, 442, 'Turned by 90, 180 and 270 degrees')
for angle, x, y, w, h in ((90, 300, 350, 20, 85), (180, 340, 385, 110, 20), (270, 480, 350, 20, 85)):
    field(f'turned.r{angle}'.replace('.', '_'), x, y, w, h,
          f'/FT /Tx /DA (/Helv 10 Tf 0 g) {look(more=f"/R {angle}")}')
field('send', 50, 320, 90, 24, f'/FT /Btn /Ff 65536 /H /P /DA (/HeBo 11 Tf 0 g) /BS << /W 2 /S /B >> '
      f'{look("0.85", "0.4", "/CA (Send)")}')
field('signature', 300, 280, 200, 45, f'/FT /Sig {look("1")}')
label(300, 268, 'Signature')

fonts = {'Helv': 'Helvetica', 'HeBo': 'Helvetica-Bold', 'TiIt': 'Times-Italic', 'Cour': 'Courier', 'ZaDb': 'ZapfDingbats'}
dr = ' '.join(f'/{n} << /Type /Font /Subtype /Type1 /Name /{n} /BaseFont /{b} >>' for n, b in fonts.items())
content = '\n'.join(labels)
contents = add(f'<< /Length {len(content)} >>\nstream\n{content}\nendstream')
objects[group - 1] = (f'<< /T (level) /FT /Btn /Ff 49152 /Kids [{refs}] >>')
objects[0] = ('<< /Type /Catalog /Pages 2 0 R /AcroForm << /NeedAppearances true /DA (/Helv 0 Tf 0 g) '
              f'/DR << /Font << {dr} >> >> /Fields [{" ".join(f"{r} 0 R" for r in roots)}] >> >>')
objects[1] = '<< /Type /Pages /Kids [3 0 R] /Count 1 >>'
objects[2] = ('<< /Type /Page /Parent 2 0 R /MediaBox [0 0 550 780] /Resources << /Font << '
              '/F1 << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> '
              '/F2 << /Type /Font /Subtype /Type1 /BaseFont /Helvetica-Bold >> >> >> '
              f'/Contents {contents} 0 R /Annots [{" ".join(f"{k} 0 R" for k in kids)}] >>')

out = b'%PDF-1.4\n'
offsets = []
for i, body in enumerate(objects):
    offsets.append(len(out))
    out += f'{i + 1} 0 obj\n{body}\nendobj\n'.encode('latin-1')
start = len(out)
out += f'xref\n0 {len(objects) + 1}\n0000000000 65535 f \n'.encode()
out += b''.join(b'%010d 00000 n \n' % o for o in offsets)
out += f'trailer\n<< /Size {len(objects) + 1} /Root 1 0 R >>\nstartxref\n{start}\n%%EOF\n'.encode()
pathlib.Path(__file__).with_name('form.pdf').write_bytes(out)

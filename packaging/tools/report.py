#!/usr/bin/env python3
"""Makes one page of what scripts/accept has found, with everything in it, so that a person can send it.

usage: report.py FACTS EYES PAGE

FACTS has a line for each finding: its kind, its name and its value, with tabs between them. Kinds: "machine" and
"figure" (the value is shown), "ok" and "fail" (a check; the value is what it said), "note", "picture" and "text" (the
value is a file). EYES is the document whose section "What only eyes can decide" has the questions for the person.
"""
import base64
import html
import pathlib
import re
import sys

STYLE = '''
body { font: 15px/1.5 system-ui, sans-serif; max-width: 60rem; margin: 2rem auto; padding: 0 1rem; color: #222; }
table { border-collapse: collapse; } td { padding: .2rem 1rem .2rem 0; vertical-align: top; }
.ok { color: #18794e; } .fail { color: #c0271d; font-weight: 600; }
figure { display: inline-block; margin: 0 1.5rem 1.5rem 0; vertical-align: top; }
figcaption { color: #666; } img { max-width: 100%; border: 1px solid #ccc; }
pre { background: #f4f4f5; padding: 1rem; overflow-x: auto; font-size: 12px; }
li { list-style: none; margin: .3rem 0; } ul { padding: 0; } textarea { width: 100%; height: 6rem; }
'''


def table(rows):
    cells = ''.join(f'<tr><td>{html.escape(name)}</td><td>{html.escape(value)}</td></tr>' for name, value in rows)
    return f'<table>{cells}</table>'


def check(kind, name, value):
    said = f'<pre>{html.escape(pathlib.Path(value).read_text(errors="replace"))}</pre>' if kind == 'fail' else ''
    mark = '[OK]' if kind == 'ok' else '[FAIL]'
    return f'<li><span class="{kind}">{mark}</span> {html.escape(name)}{said}</li>'


def picture(name, path):
    data = base64.b64encode(pathlib.Path(path).read_bytes()).decode()
    return (f'<figure><img alt="{html.escape(name)}" src="data:image/png;base64,{data}">'
            f'<figcaption>{html.escape(name)}</figcaption></figure>')


def questions(document):
    section = re.search(r'(?ms)^## What only eyes can decide$(.*?)(?=^## |\Z)', document)[1]
    items = re.findall(r'(?m)^- (.*(?:\n  .*)*)', section)
    return [re.sub(r'\s+', ' ', item).replace('`', '') for item in items]


def page(facts, eyes):
    def of(*kinds):
        return [(kind, name, value) for kind, name, value in facts if kind in kinds]

    parts = ['<!doctype html><html lang="en"><meta charset="utf-8"><title>ostrel-menubar on this machine</title>',
             f'<style>{STYLE}</style><h1>ostrel-menubar on this machine</h1>',
             table((name, value) for _, name, value in of('machine')),
             '<h2>Checks</h2><ul>', *(check(*fact) for fact in of('ok', 'fail')), '</ul>',
             '<h2>Figures</h2>', table((name, value) for _, name, value in of('figure')),
             '<h2>Pictures</h2>', *(f'<p>{html.escape(value)}</p>' for _, _, value in of('note')),
             *(picture(name, value) for _, name, value in of('picture')),
             '<h2>For your eyes</h2><ul>',
             *(f'<li><label><input type="checkbox"> {html.escape(item)}</label></li>' for item in questions(eyes)),
             '</ul><textarea placeholder="What was not so"></textarea><h2>Texts</h2>']
    for _, name, value in of('text'):
        text = pathlib.Path(value).read_text(errors='replace')
        parts.append(f'<h3>{html.escape(name)}</h3><pre>{html.escape(text)}</pre>')
    return '\n'.join(parts) + '</html>\n'


def main():
    lines = pathlib.Path(sys.argv[1]).read_text(errors='replace').splitlines()
    facts = [line.split('\t', 2) for line in lines]
    eyes = pathlib.Path(sys.argv[2]).read_text(encoding='utf-8')
    pathlib.Path(sys.argv[3]).write_text(page(facts, eyes), encoding='utf-8')


if __name__ == '__main__':
    main()

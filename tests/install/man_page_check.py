#!/usr/bin/python3
"""Checks that the manual page of vorhost says what `vorhost --help` says:
the same options with the same arguments, the same exit statuses, and the
program's version; and that groff reads the page without a warning.

usage: man_page_check.py VORHOST PAGE
"""
import re
import shutil
import subprocess
import sys


def run(*args):
    return subprocess.run(args, capture_output=True, text=True, check=True).stdout


def section(troff, name):
    """The text of one .SH section of the page."""
    parts = re.split(r'^\.SH ', troff, flags=re.M)
    for part in parts:
        if part.startswith(name + '\n') or part.startswith('"' + name + '"'):
            return part
    return ''


def plain(troff_words):
    """'\\-\\-drive " X=DIR"' as it reads: '--drive X=DIR'."""
    text = troff_words.replace('\\-', '-').replace('"', '')
    return ' '.join(text.split())


def help_options(text):
    found = {}
    for m in re.finditer(r'^  (--[\w-]+)(?: (\S+))?', text, re.M):
        found[m.group(1)] = m.group(2) or ''
    return found


def page_options(troff):
    found = {}
    for m in re.finditer(r'^\.TP\n\.BI? (.*)$', section(troff, 'OPTIONS'), re.M):
        words = plain(m.group(1)).split(' ', 1)
        found[words[0]] = words[1] if len(words) > 1 else ''
    return found


def help_statuses(text):
    tail = text[text.index('Exit status:'):]
    return set(re.findall(r'(?:^|[:,]\s)(\d) (?:when|for)', tail, re.M))


def page_statuses(troff):
    return set(re.findall(r'^\.TP\n\.B (\d)$', section(troff, 'EXIT STATUS'), re.M))


def main():
    vorhost, page = sys.argv[1:3]
    help_text = run(vorhost, '--help')
    version = run(vorhost, '--version').split()[-1]
    with open(page, encoding='utf-8') as f:
        troff = f.read()
    faults = []

    want, have = help_options(help_text), page_options(troff)
    for name in sorted(set(want) | set(have)):
        if name not in have:
            faults.append(f'{name} is in --help but not in the page')
        elif name not in want:
            faults.append(f'{name} is in the page but not in --help')
        elif want[name] != have[name]:
            faults.append(f'{name} takes "{want[name]}" in --help but "{have[name]}" in the page')
    if not want:
        faults.append('no options found in --help')

    if help_statuses(help_text) != page_statuses(troff):
        faults.append(f'exit statuses: --help {sorted(help_statuses(help_text))}, '
                      f'page {sorted(page_statuses(troff))}')

    title = re.search(r'^\.TH .*"vorhost ([^"]*)"', troff, re.M)
    if not title or title.group(1) != version:
        faults.append(f'the page is of version {title and title.group(1)}, the program {version}')

    if shutil.which('groff'):
        warnings = subprocess.run(['groff', '-man', '-ww', '-z', page],
                                  capture_output=True, text=True).stderr
        if warnings:
            faults.append('groff: ' + warnings.strip())

    for fault in faults:
        print('FAIL:', fault)
    if not faults:
        print(f'the page agrees with --help: {len(want)} options, exit statuses '
              f'{" ".join(sorted(help_statuses(help_text)))}')
    return 1 if faults else 0


if __name__ == '__main__':
    sys.exit(main())

# Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
"""Generates typical faults: small changes to a C++ source that a test should detect."""

import re
from collections import namedtuple

Fault = namedtuple('Fault', 'file kind start end text')  # replaces file[start:end] by text

TOKEN = re.compile(r'(?P<comment>//[^\n]*|/\*.*?\*/)|R"(?P<tag>\w*)\((?P<raw>.*?)\)(?P=tag)"'
                   r'|"(?P<text>(?:\\.|[^"\\\n])*)"'
                   r"|'(?:\\.[^'\n]*|[^'\\\n])'|^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", re.S | re.M)
IS_SQL = re.compile(r'\b(SELECT|INSERT|UPDATE|DELETE|WHERE|ORDER BY|LIMIT)\b')
# Lines in which no test should detect a fault.
NO_CODE = re.compile(r'static_assert|\bassert\(|Q_ASSERT|\blog(Error|Info)\(|\bLogger::|\.reserve\('
                     r'|^\s*(using|template)\b')

SWAPS = {'==': ['!='], '!=': ['=='], '<': ['<=', '>'], '<=': ['<'], '>': ['>=', '<'], '>=': ['>'], '&&': ['||'],
         '||': ['&&'], '+': ['-'], '-': ['+'], '+=': ['-='], '-=': ['+=']}
OPERATOR = re.compile(r'(?<= )(==|!=|<=|>=|<|>|&&|\|\||\+=?|-=?)(?= )')
NEGATION = re.compile(r'!(?=[\w(*])')
FLAG = re.compile(r'\b(true|false|Ascending|Descending)\b')
FLAGS = {'true': 'false', 'false': 'true', 'Ascending': 'Descending', 'Descending': 'Ascending'}
NUMBER = re.compile(r"(?<![\w.'])\d+(?![\w'])")
RETURN = re.compile(r'\breturn ([^;{}]+);')
FIELD = re.compile(r'\b(?:d->|data\.|row\.)(\w+)\b(?!\()|\b(m_\w+)')
IF = re.compile(r'\bif \(')
STATEMENT = re.compile(r'(?<=[;{}:)\n])\n[ \t]*\n?(?P<body>(?: {4})+(?:[\w:]|->|\.|\*(?=\w)|\[\w*\]|\(\))+'
                       r'(?:\([^;{}]*| [+\-|&]?= [^;{}]*|<[^;{}]*>\([^;{}]*);)')
STATEMENT_START = re.compile(r'\s*(return|using|throw|case|default|break|goto|public|private|protected|Q_\w+)\b')
OPERAND = re.compile(r'^ +(?:&&|\|\|) (?P<operand>[^\n]*?)(?=;?$|\) \{$)', re.M)
ROW = re.compile(r'^ +\{[^\n]*\},$', re.M)

SQL_SWAP = re.compile(r'\b(ASC|DESC|MIN|MAX)\b|(?<= )(<>|<=|>=|=|<|>)(?= )')
SQL_SWAPS = {'ASC': 'DESC', 'DESC': 'ASC', 'MIN': 'MAX', 'MAX': 'MIN', '<>': '=', '=': '<>', '<': '<=', '<=': '<',
             '>': '>=', '>=': '>'}
SQL_CONDITION = re.compile(r'\bAND\s+(?:(?!\bAND\b|\bOR\b|\bORDER\b|\bGROUP\b|\bLIMIT\b|;)[^()]|\([^()]*\))+')


def mask(source):
    """Returns the source with blanked comments, strings and directives, at the same offsets, and the spans of its SQL."""
    sql = []

    def blank(match):
        for group in ('raw', 'text'):
            if match[group] and IS_SQL.search(match[group]):
                sql.append(match.span(group))
        filler = ' ' if match['comment'] or match[0].lstrip().startswith('#') else '_'
        return re.sub(r'[^\n]', filler, match[0])

    return TOKEN.sub(blank, source), sql


def closing(code, opening):
    """The offset of the parenthesis that matches the one at `opening`; -1 when there is none."""
    depth = 0
    for match in re.compile(r'[()]').finditer(code, opening):
        depth += 1 if match[0] == '(' else -1
        if depth == 0:
            return match.start()
    return -1


def code_faults(code, source):
    """Yields (kind, start, end, replacement) for all code."""
    for match in OPERATOR.finditer(code):
        for other in SWAPS[match[0]]:
            yield 'operator', match.start(), match.end(), other
    for match in NEGATION.finditer(code):
        yield 'negation', match.start(), match.end(), ''
    for match in FLAG.finditer(code):
        yield 'flag', match.start(), match.end(), FLAGS[match[0]]
    for match in NUMBER.finditer(code):
        yield 'constant', match.start(), match.end(), str(int(match[0]) + 1)
    for match in RETURN.finditer(code):
        yield 'return', match.start(1), match.end(1), '{}'
    for match in IF.finditer(code):
        end = closing(code, match.end() - 1)
        if end > 0 and not re.search(r';|\w \*?\w+ =', code[match.end():end]):
            yield 'check', match.end(), end, 'false && (' + source[match.end():end] + ')'
    for match in STATEMENT.finditer(code):
        body = match['body']
        if not STATEMENT_START.match(body) and body.count('(') == body.count(')'):
            yield 'statement', match.start('body'), match.end(), '{}' + '\n' * body.count('\n')
    for match in OPERAND.finditer(code):
        if match['operand'].count('(') == match['operand'].count(')'):
            yield 'operand', match.start(), match.end(), ''
    for match in ROW.finditer(code):
        yield 'row', match.start(), match.end(), ''
    fields = list(FIELD.finditer(code))
    for match, neighbour in zip(fields, fields[1:] + fields[:1]):
        group = match.lastindex
        if match.lastindex == neighbour.lastindex and match[group] != neighbour[group]:
            yield 'field', match.start(group), match.end(group), neighbour[group]


def sql_faults(source, span):
    text = re.sub(r'--[^\n]*', lambda comment: ' ' * len(comment[0]), source[span[0]:span[1]])
    for match in SQL_SWAP.finditer(text):
        yield 'sql', span[0] + match.start(), span[0] + match.end(), SQL_SWAPS[match[0]]
    for match in SQL_CONDITION.finditer(text):
        yield 'sql', span[0] + match.start(), span[0] + match.end(), ' ' + '\n' * match[0].count('\n')


def faults_of(file, source):
    """All faults for a source."""
    code, sql = mask(source)
    for kind, start, end, text in code_faults(code, source):
        line = code[code.rfind('\n', 0, start + 1) + 1:code.find('\n', end)]
        if not NO_CODE.search(line):
            yield Fault(file, kind, start, end, text)
    for span in sql:
        for kind, start, end, text in sql_faults(source, span):
            yield Fault(file, kind, start, end, text)

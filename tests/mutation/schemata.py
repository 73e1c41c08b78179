"""Writes sources that contain all their mutants, of which the environment chooses one when the program runs."""
import collections
import re

from mutation.places import one_line, parse

INCLUDE = '#include "tests/mutation/mutant.h"\n'


def instrument(source, mutants):
    """The text of a source with its mutants, {number: Mutant}. Lines keep their numbers but for the first."""
    nodes = collections.defaultdict(list)
    for number, mutant in mutants.items():
        nodes[mutant.start, -mutant.end].append((number, mutant))
    return INCLUDE + write_range(source, 0, len(source), sorted(nodes.items()))


def write_range(source, start, end, nodes):
    """The nodes are ordered: outer ones before those inside them."""
    written = []
    while nodes:
        (first, negative_last), alternatives = nodes[0]
        last = -negative_last
        inner = [node for node in nodes[1:] if node[0][0] < last]
        nodes = nodes[1 + len(inner):]
        written.append(source[start:first].decode())
        written.append(write_choice(alternatives, write_range(source, first, last, inner)))
        start = last
    written.append(source[start:end].decode())
    return "".join(written)


def write_choice(alternatives, original):
    """An expression with the mutants of one node. Mutants inside the node are in its original alone."""
    kinds = {mutant.kind for _, mutant in alternatives}
    if "statement" in kinds:
        original = f"static_cast<void>({original})"
    elif "condition" in kinds:
        original = f"bool({original})"
    choices = "".join(f"garageMutant({number}) ? ({one_line(mutant.mutated)}) : " for number, mutant in alternatives)
    return f"({choices}({original}))"


def rejected(root, groups, arguments, mutants):
    """The numbers of the mutants that do not compile, by the compiler's errors."""
    wrong = set()
    for files in groups:
        sources = {str(root / name): instrument((root / name).read_bytes(), mutants.get(name, {})).encode()
                   for name in files}
        for message in parse(root, sources, arguments).diagnostics:
            if message.severity >= message.Error and message.location.file:
                text = sources.get(message.location.file.name, b"")
                wrong |= numbers_near(text, message.location.offset)
    return wrong


def numbers_near(text, offset):
    """The mutant that begins last before this place; all of the line if there is none."""
    first = text.rfind(b"\n", 0, offset) + 1
    last = text.find(b"\n", offset)
    calls = rb"garageMutant\((\d+)\)"
    before = re.findall(calls, text[first:offset])
    return {int(number) for number in (before[-1:] or re.findall(calls, text[first:last]))}

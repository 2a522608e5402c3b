#!/usr/bin/env python3
"""Derives the include graph between the folders of src/ from the sources and fails when the
folders include each other in a circle, or when a layer reaches up: a folder's core (the files
directly in it) may include no platform/ or window/ header, and its platform/ no window/ header.
The link line enforces the same order; this check names the offending includes.

Prints the folder graph (one "from -> to" line each, with a sample include) and exits 1 on a
violation, 0 otherwise."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent / "src"
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)
LAYERS = {"core": 0, "platform": 1, "window": 2, "app": 3}


def layer_of(relative: pathlib.PurePosixPath) -> str:
    parts = relative.parts
    if parts[0] == "app":
        return "app"  # the programs' main() and tools sit above every layer
    return parts[1] if len(parts) > 2 and parts[1] in LAYERS else "core"


def main() -> int:
    edges: dict[tuple[str, str], str] = {}
    violations: list[str] = []
    for path in sorted(ROOT.rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        relative = pathlib.PurePosixPath(path.relative_to(ROOT).as_posix())
        folder, layer = relative.parts[0], layer_of(relative)
        for target in INCLUDE.findall(path.read_text(encoding="utf-8", errors="replace")):
            target_path = pathlib.PurePosixPath(target)
            if len(target_path.parts) < 2 or not (ROOT / target_path).exists():
                continue  # generated headers and includes relative to the file
            to_folder, to_layer = target_path.parts[0], layer_of(target_path)
            if LAYERS[to_layer] > LAYERS[layer]:
                violations.append(f"{relative}: a {layer} file includes {target} ({to_layer})")
            if to_folder != folder:
                edges.setdefault((folder, to_folder), f"{relative} includes {target}")

    graph: dict[str, set[str]] = {}
    for (a, b) in edges:
        graph.setdefault(a, set()).add(b)
    for (a, b), sample in sorted(edges.items()):
        print(f"{a} -> {b}    ({sample})")

    # Depth-first search; a grey node met again closes a cycle.
    state: dict[str, int] = {}
    stack: list[str] = []

    def visit(node: str) -> list[str] | None:
        state[node] = 1
        stack.append(node)
        for nxt in sorted(graph.get(node, ())):
            if state.get(nxt) == 1:
                return stack[stack.index(nxt):] + [nxt]
            if nxt not in state:
                found = visit(nxt)
                if found:
                    return found
        stack.pop()
        state[node] = 2
        return None

    cycle = None
    for node in sorted(graph):
        if node not in state:
            cycle = visit(node)
            if cycle:
                break
    for line in violations:
        print("layer violation: " + line)
    if cycle:
        print("cycle: " + " -> ".join(cycle))
        for a, b in zip(cycle, cycle[1:]):
            print(f"  {a} -> {b}: {edges[(a, b)]}")
    if cycle or violations:
        return 1
    print("no cycle between the folders; no layer includes one above it")
    return 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Runs the benchmarks, compares ratios with the bars and writes docs/benchmarks.md. ./t0 bench calls it."""
import argparse
import datetime
import json
import os
import platform
import re
import shutil
import statistics
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
BARS = os.path.join(HERE, "bars.json")
DOCS = os.path.join(HERE, "..", "docs", "benchmarks.md")
PATHS = {"usage": "usage record by its four keys", "pool_hit": "pool by its four keys, held",
         "pool_miss": "pool by its four keys, not held",
         "list": "usage of 20 accounts, 50 traders, one symbol; 20 rows", "push": "one newer push merged"}
SHORT_SIZES = (1000, 10000)
FULL_SIZES = (1000, 100000)
OK, MISSED, BROKEN = 0, 1, 2


class Failure(Exception):
    """What the user has to be told instead of a result."""


def run(command, **options):
    try:
        return subprocess.run(command, check=True, text=True, **options).stdout
    except (OSError, subprocess.CalledProcessError) as error:
        raise Failure(f"{os.path.basename(command[0])}: {error}\n{getattr(error, 'output', '') or ''}") from error


# ---- measuring

def groups(program):
    """A process for each group, so that the records of one group at a time are in memory."""
    names = run([program, "--benchmark_list_tests"], stdout=subprocess.PIPE).split()
    return list(dict.fromkeys(name.split(".")[0] for name in names))


def measure(program, group, repetitions, quick, context):
    options = [f"--benchmark_filter=^{group}\\.", f"--benchmark_repetitions={repetitions}",
               "--benchmark_enable_random_interleaving=true", "--benchmark_out_format=json"]
    if quick:
        options[0] = f"--benchmark_filter=^{group}\\..*/(1|1000)(/|$)"
        options.append("--benchmark_min_time=0.001")
    else:
        options.append("--benchmark_min_time=0.05")
    with tempfile.NamedTemporaryFile(suffix=".json") as out:
        run([program, *options, f"--benchmark_out={out.name}"], stdout=subprocess.DEVNULL)
        text = out.read()
    if not text:
        return []
    result = json.loads(text)
    context.update(result["context"])
    return result["benchmarks"]


def count_instructions(program, records):
    """Instructions of one operation of every hot path, counted by callgrind."""
    valgrind = shutil.which("valgrind")
    if not valgrind:
        raise Failure("valgrind is not installed")
    with tempfile.TemporaryDirectory() as folder:
        run([valgrind, "--quiet", "--tool=callgrind", "--instr-atstart=no",
             f"--callgrind-out-file={folder}/out", program, "--count", str(records)],
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        counts = {}
        for name in os.listdir(folder):
            with open(os.path.join(folder, name), encoding="utf-8") as dump:
                text = dump.read()
            path = re.search(r"^desc: Trigger: Client Request: (\w+)/(\d+)/(\d+)", text, re.M)
            total = re.search(r"^(?:totals|summary): (\d+)", text, re.M)
            if path and total:
                counts[f"instructions.{path[1]}/{path[2]}"] = int(total[1]) / int(path[3])
    if len(counts) != len(PATHS):
        raise Failure(f"callgrind counted {len(counts)} paths instead of {len(PATHS)}")
    return counts


def collect(arguments):
    """All numbers; what failed is named in "failures" and does not keep the rest from being measured."""
    result = {"context": {}, "instructions": {}, "benchmarks": [], "failures": []}

    def attempt(what, work):
        print(f"bench: {what}", file=sys.stderr, flush=True)
        try:
            work()
        except Failure as failure:
            result["failures"].append(f"{what}: {failure}")

    def measured(program, group):
        result["benchmarks"] += measure(program, group, arguments.repetitions, arguments.quick, result["context"])

    for program in arguments.programs:
        for group in groups(program):
            attempt(group, lambda: measured(program, group))
    for records in FULL_SIZES if not arguments.quick else ():
        attempt(f"instructions, {records} records",
                lambda: result["instructions"].update(count_instructions(arguments.programs[0], records)))
    result["failures"] += sorted({f"{b['name']}: {b.get('error_message', '')}" for b in result["benchmarks"]
                                  if b.get("error_occurred")})
    result["context"].update(date=datetime.date.today().isoformat(), repetitions=arguments.repetitions)
    return result


# ---- reading results

def values_of(result):
    """name to nanoseconds of one item, and name:counter to the counter: medians of the repetitions."""
    samples = {}
    for benchmark in result["benchmarks"]:
        if benchmark["run_type"] != "iteration" or benchmark.get("error_occurred"):
            continue
        name = "/".join(benchmark["run_name"].split("/")[:3])
        for key, value in benchmark.items():
            if key == "items_per_second":
                samples.setdefault(name, []).append(1e9 / value)
            elif re.search(r"(_us|bytes|_row|_record|^rows)$", key):
                samples.setdefault(f"{name}:{key}", []).append(value)
    return {**{name: statistics.median(list_) for name, list_ in samples.items()}, **result["instructions"]}


def verdicts(values, bars):
    """Every bar with its ratio; a bar of what was not measured is missed."""
    judged = []
    for bar in bars["ratios"]:
        ratio = None
        if values.get(bar["of"]) is not None and values.get(bar["to"]):
            ratio = values[bar["of"]] / values[bar["to"]]
        met = ratio is not None and bar.get("at_least", 0) <= ratio <= bar.get("at_most", float("inf"))
        judged.append({**bar, "ratio": ratio, "met": met})
    return judged


# ---- writing

def number(value):
    if value is None:
        return "–"
    return f"{value:,.0f}" if value >= 100 else f"{value:.3g}"


def cost(value):
    """Nanoseconds as a text with a fitting unit."""
    for unit, size in (("ns", 1), ("µs", 1e3), ("ms", 1e6)):
        if value < 1000 * size or unit == "ms":
            return f"{number(value / size)} {unit}"
    return ""


def bar_text(bar):
    return f"≥ {bar['at_least']:,}" if "at_least" in bar else f"≤ {bar['at_most']:,}"


def compared(bar):
    """The two sides of a ratio in few words: what differs between their names."""
    of, to = (re.split(r"[/:]", bar[side]) for side in ("of", "to"))
    if of[0] == to[0] and len(of) == len(to):
        parts = [(a, b) for a, b in zip(of[1:], to[1:]) if a != b]
        shared = f" ({of[3]})" if len(of) > 3 and of[3] == to[3] else ""
        left, right = (" ".join(grouped(part[i]) for part in parts) for i in (0, 1))
        kind = "instructions " if of[0].startswith("instructions.") else ""
        return f"{kind}{left} : {right}{shared}"
    return f"{' '.join(of[:2])} : {' '.join(to[:2])}"


def grouped(text):
    return f"{int(text):,}" if text.isdigit() else text


def side_cost(values, name):
    if name not in values:
        return "–"
    if name.startswith("instructions."):
        return number(values[name])
    return f"{number(values[name])} {'µs' if name.endswith('_us') else 'bytes'}" if ":" in name else cost(values[name])


def ratio_lines(values, judged):
    lines = [("row", "operation", "ratio of", "costs", "ratio", "bar", "")]
    for bar in judged:
        lines.append((str(bar["row"]), bar.get("what", ""), compared(bar),
                      f"{side_cost(values, bar['of'])} : {side_cost(values, bar['to'])}", number(bar["ratio"]),
                      bar_text(bar), "met" if bar["met"] else "MISSED"))
    return lines


def scale_lines(values):
    """What the library takes at every size, and what else was measured."""
    sizes = ("1000", "10000", "100000", "1000000")
    table = {}
    for name, value in sorted(values.items()):
        if re.fullmatch(r"[^:]*/library/\d+", name) and not name.startswith(("page.", "memory.", "gateway.", "load.")):
            operation, _, records = name.split("/")
            table.setdefault(operation, {})[records] = cost(value)
    lines = [("operation", *(grouped(size) for size in sizes))]
    lines += [(operation, *(row.get(size, "–") for size in sizes)) for operation, row in table.items()]
    return lines


def further_lines(values):
    lines = [("measured", "side", "of records", "value")]
    for name, value in sorted(values.items()):
        if name.endswith(":rows"):
            continue
        if re.match(r"(page|memory|gateway|load)\.|push\.newer/reference|usage\.(profits|sums)/|.*/(scan|copy_alone)/", name):
            path, _, counter = name.partition(":")
            operation, side, records = path.split("/")
            shown = f"{number(value)} {counter}" if counter else cost(value) + " an item"
            lines.append((operation, side, grouped(records), shown))
    return lines


def instruction_lines(values):
    sizes = sorted({int(name.split("/")[1]) for name in values if name.startswith("instructions.")})
    lines = [("hot path", *(f"{size:,}" for size in sizes))]
    for path, what in PATHS.items():
        lines.append((what, *(number(values.get(f"instructions.{path}/{size}")) for size in sizes)))
    return lines


def aligned(lines):
    widths = [max(len(line[i]) for line in lines) for i in range(len(lines[0]))]
    return "\n".join("  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip() for line in lines)


def markdown(lines):
    rows = ["| " + " | ".join(cell.replace("|", "\\|") for cell in line) + " |" for line in lines]
    rows.insert(1, "|" + "---|" * len(lines[0]))
    return "\n".join(rows)


def write_docs(result, values, judged):
    with open(DOCS, encoding="utf-8") as file:
        text = file.read()
    context = result["context"]
    machine = f"{context['num_cpus']} processors of {context['mhz_per_cpu']} MHz, {platform.system()} {platform.machine()}"
    tables = "\n\n".join((
        f"`./t0 bench`, {context['date']}, preset `release`, {machine}; medians of {context['repetitions']} repetitions.",
        "### Ratios", markdown(ratio_lines(values, judged)),
        "### The library at every size, one operation", markdown(scale_lines(values)),
        "### Instructions of one operation", markdown(instruction_lines(values)),
        "### Further", markdown(further_lines(values))))
    begin, end = "<!-- results -->", "<!-- end of results -->"
    if begin not in text or end not in text:
        raise Failure(f"docs/benchmarks.md has no place marked {begin} … {end}")
    head, tail = text.split(begin)[0], text.split(end)[1]
    with open(DOCS, "w", encoding="utf-8") as file:
        file.write(f"{head}{begin}\n{tables}\n{end}{tail}")


# ---- what can be asked for

def short_gate(arguments, bars):
    """Instruction counts at two sizes against the bars; no times."""
    small, large = ((count_instructions(arguments.programs[0], records)) for records in SHORT_SIZES)
    lines = [("hot path", *(f"{size:,}" for size in SHORT_SIZES), "growth", "bar", "")]
    missed = False
    for path, what in PATHS.items():
        before, after = (counts[f"instructions.{path}/{size}"] for counts, size in zip((small, large), SHORT_SIZES))
        bar = bars["instruction_growth"][path]
        met = after / before <= bar
        missed = missed or not met
        lines.append((what, number(before), number(after), number(after / before), f"≤ {bar}",
                      "met" if met else "MISSED"))
    print(aligned(lines))
    return MISSED if missed else OK


def full(arguments, bars):
    if arguments.from_json:
        with open(arguments.from_json, encoding="utf-8") as file:
            result = json.load(file)
    else:
        result = collect(arguments)
    if not arguments.from_json and not arguments.quick:
        with open(arguments.json, "w", encoding="utf-8") as file:
            json.dump(result, file, indent=1)
    if arguments.quick:
        print(f"{len(result['benchmarks'])} results")
    else:
        report(arguments, result, bars)
    for failure in result["failures"]:
        print(f"bench: {failure}", file=sys.stderr)
    if result["failures"]:
        return BROKEN
    return MISSED if arguments.gate and not all(bar["met"] for bar in verdicts(values_of(result), bars)) else OK


def report(arguments, result, bars):
    values = values_of(result)
    judged = verdicts(values, bars)
    for lines in (ratio_lines(values, judged), scale_lines(values), instruction_lines(values), further_lines(values)):
        print(aligned(lines), end="\n\n")
    if arguments.docs and not result["failures"]:
        write_docs(result, values, judged)


def main():
    parser = argparse.ArgumentParser(prog="./t0 bench", description=__doc__,
                                     epilog="Exit status: 0 done, 1 a bar is missed (--gate), 2 not measured.")
    parser.add_argument("--gate", action="store_true", help="fail when a ratio misses its bar")
    parser.add_argument("--short", action="store_true",
                        help="with --gate: only how instruction counts grow with the records; no times")
    parser.add_argument("--docs", action="store_true", help="write the tables into docs/benchmarks.md")
    parser.add_argument("--quick", action="store_true", help="see that the programs work; nothing is judged")
    parser.add_argument("--json", default="bench.json", help="where all numbers are kept (default %(default)s)")
    parser.add_argument("--from", dest="from_json", metavar="JSON", help="judge kept numbers, measure nothing")
    parser.add_argument("--repetitions", type=int, default=5, help="of every benchmark (default %(default)s)")
    parser.add_argument("--programs", nargs="+", required=True, help=argparse.SUPPRESS)
    arguments = parser.parse_args()
    with open(BARS, encoding="utf-8") as file:
        bars = json.load(file)
    try:
        return short_gate(arguments, bars) if arguments.short else full(arguments, bars)
    except Failure as failure:
        print(f"bench: {failure}", file=sys.stderr)
        return BROKEN


if __name__ == "__main__":
    sys.exit(main())

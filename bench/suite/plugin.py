"""What the plugin costs against hand-written floors.

Plugin and floor run interleaved in one process and many times over; what counts is the ratio of their medians, since these
stay when the machine is busy and the times do not.
"""

import json
import subprocess

from suite.rows import Row, readable, table

SUBJECT = "the plugin"
REPETITIONS = 15

# Measurement, what its floor is, and the goal: at most this ratio.
GOALS = {
    "dispatch": ("a hand-written map lookup and call", 1.25),
    "json text": ("the same method in Debian's JSON-RPC library", 1 / 3),
    "directory completion/10": ("the same JSON built by hand", 1.1),
    "directory completion/1000": ("the same JSON built by hand", 1.1),
    "directory completion/100000": ("the same JSON built by hand", 1.1),
    "directory completion/1000000": ("the same JSON built by hand", 1.1),
    "page/9": ("the same JSON built by hand", 1.15),
    "page/1000": ("the same JSON built by hand", 1.15),
    "group list/100": ("the same JSON built by hand", 1.15),
    "thumbnail event": ("the same JSON built by hand", 1.15),
    "progress event": ("the same JSON built by hand", 1.15),
    "suppressed log line": ("a level read and a compare", 1.5),
    "printed log line": ("one fprintf and one ctime_r", 1.2),
}
MEMORY_GOAL = 1.1


def measure(build):
    """Runs the benchmarks of the build folder `build`; returns the rows and the text around the table."""
    medians, memory = measure_time(build), measure_memory(build)
    rows = timing_rows(medians)
    before = [f"Medians of {REPETITIONS} interleaved runs."]
    after = [f"Load and unload together, the thumbnail directories left out: {readable(medians['load and unload/plugin'])}.",
             "", *growth_lines(medians), "", *memory_lines(memory)]
    return rows, before, table(rows, "plugin") + ["", *after]


def measure_time(build):
    """Runs every benchmark; returns the median CPU time in nanoseconds by name."""
    out = build / "results.json"
    subprocess.run([build / "bench" / "plugin_bench", f"--benchmark_repetitions={REPETITIONS}",
                    "--benchmark_enable_random_interleaving=true", "--benchmark_min_time=0.05", "--benchmark_min_warmup_time=0.05",
                    f"--benchmark_out={out}", "--benchmark_out_format=json"],
                   check=True, stderr=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
    results = json.loads(out.read_text())["benchmarks"]
    return {result["run_name"]: result["cpu_time"] for result in results if result.get("aggregate_name") == "median"}


def measure_memory(build):
    """Returns, by number of entries, the heap's peak during a directory completion and the size of its body, in bytes."""
    output = subprocess.run([build / "bench" / "completion_memory"], check=True, capture_output=True, text=True)
    return json.loads(output.stdout)


def timing_rows(medians):
    rows = []
    for name, (floor_text, goal) in GOALS.items():
        head, _, size = name.partition("/")
        suffix = "/" + size if size else ""
        rows.append(Row(f"{head}, {int(size):,} entries" if size else head, medians[f"{head}/plugin{suffix}"],
                        medians[f"{head}/floor{suffix}"], floor_text, goal))
    return rows


def growth_lines(medians):
    """How the time per entry of a directory completion grows, beside the floor's."""
    lines = ["### Directory completion, per entry", "", "| entries | plugin | floor |", "|---|---|---|"]
    for size in (1000, 100000, 1000000):
        per_entry = {kind: medians[f"directory completion/{kind}/{size}"] / size for kind in ("plugin", "floor")}
        lines.append(f"| {size:,} | {per_entry['plugin']:.0f} ns | {per_entry['floor']:.0f} ns |")
    return lines


def memory_lines(memory):
    lines = ["### Directory completion, memory", "",
             "Heap at its peak while the body is built and published, against what the body itself holds "
             f"(goal: at most {MEMORY_GOAL}).", "", "| entries | peak | body | ratio |", "|---|---|---|---|"]
    return lines + [f"| {row['entries']:,} | {row['peak']:,} bytes | {row['body']:,} bytes | "
                    f"**{row['peak'] / row['body']:.3f}** |" for row in memory]

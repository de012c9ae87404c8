"""What the desktop costs, through the plugin's commands, against programs that do the same work without it.

Whole processes are timed, from their start to their end, the two sides in turn and several times over; what counts is the
ratio of their medians. What is read lies in the page cache unless said otherwise.
"""

import json
import os
import re
import shutil
import statistics
import subprocess
import sys
import time

from suite import material
from suite.rows import Row, readable, table

SUBJECT = "the desktop"
GROUP_BY_ARTIST = 3
BOUND = 320  # pixels that a thumbnail must fit into

# What the listing of a folder shows of each entry.
FIND_FORMAT = r"%y\t%s\t%C+\t%p\t%f\n"


class Desktop:
    """The program desktop-tv of a build folder, and the material that it works on."""

    def __init__(self, build):
        self.build = build
        self.program = build / "desktop" / "desktop-tv"
        self.cache = build / "cache"
        self.folders = material.make(build / "material", "folder", "tree", "tracks", "media", "empty")

    def command(self, folder, *arguments, cache="none"):
        return [self.program, "--cache", cache, "--stick", self.folders[folder], *arguments]


def measure(build):
    """Runs the benchmarks of the build folder `build`; returns the rows and the text around the table."""
    desktop = Desktop(build)
    rows = [compare_folder(desktop), compare_search(desktop), *compare_groups(desktop), compare_thumbnails(desktop)]
    before = ["Medians of whole runs of `desktop-tv`, in turn with the floor's, from the start of the process to its end. The "
              "files lie in the page cache, but for the grouping that says otherwise: as for a stick that has just come, their "
              "content is not in memory there."]
    return rows, before, table(rows, "desktop") + ["", *limit_lines(desktop), "", *memory_lines(desktop)]


def compare_folder(desktop):
    run(desktop.command("folder", "groups", "--by", "date", cache=desktop.cache))  # the index knows the photos from then on
    shell, change = change_of_folder(desktop, "folder")
    find = ["find", desktop.folders["folder"], "-maxdepth", "1", "-printf", FIND_FORMAT]
    ours, floor = interleaved(15, lambda: run(shell, change), lambda: run(find))
    return Row(f"change to a folder of {material.FOLDER_FILES:,} files, its photos known", ours, floor,
               "`find -maxdepth 1 -printf` with the same output", 1.5)


def change_of_folder(desktop, name):
    """The shell on a folder, and the line that has it change there and write all entries."""
    return (desktop.command(name, "shell", cache=desktop.cache),
            shell_line("storagemedia.folder.chgdir", dirpath=desktop.folders[name]))


def compare_search(desktop):
    find = ["find", desktop.folders["tree"], "-type", "f"]
    ours, floor = interleaved(9, lambda: run(desktop.command("tree", "search")), lambda: run(find))
    return Row(f"search in {material.TREE_ENTRIES:,} entries", ours, floor, "`find -type f`", 1.3)


def compare_groups(desktop):
    shell = desktop.command("tracks", "shell", cache=desktop.cache)
    request = shell_line("storagemedia.group.musicorphoto", Group=GROUP_BY_ARTIST, dirpath=desktop.folders["tracks"])
    loop = [desktop.build / "bench" / "tag_loop", desktop.folders["tracks"]]

    def cold():
        shutil.rmtree(desktop.cache, ignore_errors=True)
        return run(shell, request)

    def evicted(side):
        evict(desktop.folders["tracks"])
        return side()

    what, floor_text = f"groups of {material.TRACKS:,} tracks", "a plain TagLib loop, one thread"
    cached, cached_floor, warm = interleaved(7, cold, lambda: run(loop), lambda: run(shell, request))
    stored, stored_floor = interleaved(7, lambda: evicted(cold), lambda: evicted(lambda: run(loop)))
    return [Row(f"{what}, cold, not in memory", stored, stored_floor, floor_text, 0.7),
            Row(f"{what}, cold", cached, cached_floor, floor_text, 0.7),
            Row(f"{what}, from the index", warm, cached, "the same grouping cold", 0.02)]


def compare_thumbnails(desktop):
    files = sorted(desktop.folders["media"].iterdir())
    picture = desktop.build / "thumbnail.jpg"

    def file_by_file():
        return sum(run(["ffmpegthumbnailer", "-i", file, "-o", picture, "-s", str(BOUND)]) for file in files)

    thumbnails = desktop.command("media", "thumbnails", "--size", f"{BOUND}x{BOUND}")
    ours, floor = interleaved(3, lambda: run(thumbnails), file_by_file)
    return Row(f"thumbnails of {len(files)} files", ours, floor, "`ffmpegthumbnailer` for each file", 0.4)


def interleaved(rounds, *sides):
    """The sides' median times, once the first round has brought what they read into memory."""
    times = [[side() for side in sides] for _ in progress(rounds + 1)]
    return [statistics.median(side) for side in zip(*times[1:])]


def progress(rounds):
    for done in range(rounds):
        if sys.stderr.isatty():
            print(f"\r\033[Kround {done + 1} of {rounds} ", end="", file=sys.stderr, flush=True)
        yield done
    if sys.stderr.isatty():
        print("\r\033[K", end="", file=sys.stderr, flush=True)


def shell_line(command, **request):
    """A request to the plugin for the shell of desktop-tv, which ends once it has been answered."""
    return json.dumps({"command": command, "request": {"channelId": "bench", "reqId": "1", **request}}, default=str).encode()


def run(command, text=b""):
    """The time, in nanoseconds, that a command takes over what it is told."""
    begin = time.perf_counter_ns()
    subprocess.run(command, check=True, input=text, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    return time.perf_counter_ns() - begin


def evict(folder):
    """Lets the kernel forget the content of the files below a folder."""
    for path in folder.rglob("*.mp3"):
        fd = os.open(path, os.O_RDONLY)
        os.posix_fadvise(fd, 0, 0, os.POSIX_FADV_DONTNEED)
        os.close(fd)


def limit_lines(desktop):
    """What no grouping can do without, as a measure of its goals."""
    look = ["find", desktop.folders["tracks"], "-type", "f", "-printf", r"%s\t%T@\n"]
    start, looked = interleaved(9, lambda: run(desktop.command("empty", "browse")), lambda: run(look))
    return [f"Of a grouping, the start and the end of the program take {readable(start)}. One from the index still looks at "
            "each file, which may have changed: `find`, printing size and time of the same files, takes "
            f"{readable(looked)}. One that reads files hands each to one of two processes that may do nothing but read, and "
            "takes back what it tells; for files in memory that takes about as much time as the second core gains."]


def memory_lines(desktop):
    """How much memory a list takes, by its entries."""
    lines = ["### Memory", "",
             "How much more resident memory, at its peak, `desktop-tv` takes than with an empty folder, and the length of an "
             "entry as JSON text.", "", "| list | entries | more memory | per entry | an entry as JSON |", "|---|---|---|---|---|"]
    for name, entries, peaks, json_size in (
            ("change of folder", material.FOLDER_FILES, [peak(*change_of_folder(desktop, folder)) for folder in ("folder", "empty")],
             completion_size(desktop) // material.FOLDER_FILES),
            ("search", material.TREE_ENTRIES, [peak(desktop.command(folder, "search")) for folder in ("tree", "empty")],
             found_size(desktop))):
        grown = peaks[0] - peaks[1]
        lines.append(f"| {name} | {entries:,} | {grown / 1e6:.1f} MB | {grown / entries:,.1f} bytes | {json_size} bytes |")
    return lines


def peak(command, text=b""):
    """The most resident memory that a command takes over what it is told, in bytes."""
    told = subprocess.run(["/usr/bin/time", "-f", "peak %M", *command], check=True, input=text, stdout=subprocess.DEVNULL,
                          stderr=subprocess.PIPE).stderr
    return int(re.search(rb"peak (\d+)", told)[1]) * 1024


def completion_size(desktop):
    """The length of the answer, as JSON, to a change to the folder."""
    shell, change = change_of_folder(desktop, "folder")
    answers = subprocess.run(shell, input=change, check=True, stdout=subprocess.PIPE,
                             stderr=subprocess.DEVNULL).stdout.splitlines()
    return max(map(len, answers))


def found_size(desktop):
    """The mean length of a file that a search finds, as JSON."""
    found = subprocess.run(desktop.command("tree", "search", "--json"), check=True, stdout=subprocess.PIPE).stdout
    return len(found) // found.count(b"\n")

"""What playback costs, against libmpv alone.

Both sides play the same film in turn, one while the other rests, and many times over; what counts is the ratio of their
medians. The television is driven through the plugin's commands, libmpv by a program of its own.
"""

import json
import os
import random
import re
import statistics
import subprocess
import time
from pathlib import Path

from suite import material
from suite.desktop import progress
from suite.rows import Row, readable, table

SUBJECT = "playback"
VIDEO = 4
ROUNDS = 25
DRAWN_SECONDS, DRAWN_ROUNDS = 20, 3
REST = 0.1  # seconds in which a side comes to rest
FRAME_RATE = 25


class Loop:
    """A program that does what lines say and answers each with numbers."""

    def __init__(self, *command, log=None):
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=log)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.wait()

    def ask(self, line):
        self.send(line)
        return [int(number) for number in self.line().split()]

    def send(self, line):
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()

    def line(self):
        line = self.process.stdout.readline()
        if not line:
            raise RuntimeError(f"{self.process.args[0]} has ended")
        return line


class Television(Loop):
    """The program desktop-tv as a shell on a folder of films."""

    def __init__(self, build, films):
        super().__init__(build / "desktop" / "desktop-tv", "--cache", "none", "--stick", films, "shell", log=subprocess.DEVNULL)
        self.films = films
        self.command("folder.chgdir", channelId="bench", reqId="1", dirpath=os.fspath(films))  # it is there
        time.sleep(REST)

    def command(self, name, **request):
        """Sends a command; returns the time, in nanoseconds, until its reply has come."""
        begin = time.perf_counter_ns()
        self.send(json.dumps({"command": f"storagemedia.{name}", "request": request}))
        reply = json.loads(self.wait_for(b'"command"', name))
        took = time.perf_counter_ns() - begin
        if reply["result"] is not True:
            raise RuntimeError(f"{name}: {reply}")
        return took

    def wait_for(self, kind, name):
        """The next line of a kind that is about `name`."""
        named = f'"storagemedia.{name}"'.encode()
        while kind not in (line := self.line()) or named not in line:
            pass
        return line

    def loaded(self, name, **request):
        """Sends a command that has a film played; returns the time, in nanoseconds, until it does."""
        begin = time.perf_counter_ns()
        self.command(name, type=VIDEO, **request)
        self.wait_for(b'"notification"', "media.loadsuccess")
        return time.perf_counter_ns() - begin

    def play(self):
        return self.loaded("media.playfile", dirpath=os.fspath(self.films), index=0, playall=True)

    def next(self):
        return self.loaded("button.next")

    def stop(self):
        return self.command("media.stopfile", type=VIDEO)


class Bench:
    """The programs of a build folder, and the films."""

    def __init__(self, build):
        self.build = build
        self.films = material.make(build / "material", "films")["films"]
        self.film = self.films / "film 0.mp4"
        self.second = self.films / "film 1.mp4"

    def television(self):
        return Television(self.build, self.films)

    def mpv(self):
        return Loop(self.build / "bench" / "mpv_loop")

    def player(self):
        return Loop(self.build / "bench" / "player_loop")


def measure(build):
    """Runs the benchmarks of the build folder `build`; returns the rows and the text around the table."""
    bench = Bench(build)
    keys, key_text = compare_keys(bench)
    first, first_text = compare_first(bench)
    rows = [keys["play"], first, keys["next"], keys["stop"], compare_seek(bench), compare_drawing(bench)]
    before = ["Medians of many plays of one film, 720p with 25 pictures a second, by `desktop-tv shell` from a command to what is "
              "told of it, in turn with libmpv alone: a small program that gives it the file and draws each picture into memory, "
              "as the desktop's player does without a display. A film has been loaded once its first picture is there."]
    return rows, before, table(rows, "desktop") + ["", key_text, "", first_text, "", *memory_lines(bench)]


def compare_keys(bench):
    """What the keys take while the players run already: the rows, and what they leave unsaid."""
    with bench.television() as television, bench.mpv() as mpv:

        def ours():
            return {"play": television.play(), "next": rested(television.next), "stop": rested(television.stop)}

        def floor():
            opened, shown = mpv.ask(f"load {bench.film}")
            mpv.ask(f"append {bench.second}")
            return {"opened": opened, "play": shown, "next": rested(lambda: mpv.ask("next -")[1]),
                    "stop": rested(lambda: mpv.ask("stop -")[0])}

        times = rounds_of(ROUNDS, ours, floor)
    own, alone = ({key: [one[key] for one in side] for key in side[0]} for side in times)
    rows = {key: Row(name, statistics.median(own[key]), statistics.median(alone[key]), floor_text, goal)
            for key, name, floor_text, goal in (
                ("play", "play, until the film is loaded", "`loadfile`, until the first picture is there", 1.25),
                ("next", "next, until the film is loaded", "`playlist-next`, until the first picture is there", 1.25),
                ("stop", "stop", "`stop`, until `end-file`", 1.25))}
    return rows, (f"The longest of the {ROUNDS} nexts took {readable(max(own['next']))}, of libmpv's "
                  f"{readable(max(alone['next']))}. libmpv tells `file-loaded`, which is before anything is decoded, "
                  f"{readable(statistics.median(alone['opened']))} after `loadfile`.")


def compare_first(bench):
    """The first film of a run, for which a player's process is started: the row, and what it leaves unsaid."""

    def ours():
        with bench.television() as television:
            return television.play()

    def started():
        begin = time.perf_counter_ns()
        with bench.mpv() as mpv:
            mpv.ask(f"load {bench.film}")
            return time.perf_counter_ns() - begin

    with bench.mpv() as running:
        times = rounds_of(ROUNDS, ours, started, lambda: running.ask(f"fresh {bench.film}")[1])
    own, alone, anew = map(statistics.median, times)
    return (Row("the same, the first film of a run", own, alone, "the same, its program just started", 1.25),
            "The first film of a run waits for the player's process, most of the time for its libraries to be linked. libmpv "
            f"alone, made anew in a program that runs already, takes {readable(anew)}.")


def compare_seek(bench):
    with bench.player() as player, bench.mpv() as mpv:
        for loop in (player, mpv):
            loop.ask(f"load {bench.film}")
            loop.ask("pause yes")
        seconds = random.Random(1).sample(range(1, material.FILM_SECONDS - 1), ROUNDS + 1)
        own, alone = iter(seconds), iter(seconds)
        times = rounds_of(ROUNDS, lambda: player.ask(f"seek {next(own)}")[0], lambda: mpv.ask(f"seek {next(alone)}")[0])
    return Row("seek, until the picture is drawn", *map(statistics.median, times), "`seek`, until the picture is drawn", 1.1)


def compare_drawing(bench):
    """The processor's time while each picture of a film is drawn."""
    with bench.player() as player, bench.mpv() as mpv:

        def drawn(loop):
            loop.ask(f"load {bench.film}")
            time.sleep(REST)
            before = processor_time(loop.process.pid)
            pictures = loop.ask(f"draw {DRAWN_SECONDS}")[0]
            took = processor_time(loop.process.pid) - before
            loop.ask("stop -")
            if abs(pictures / (DRAWN_SECONDS * FRAME_RATE) - 1) > 0.02:
                raise RuntimeError(f"{pictures} pictures have been drawn in {DRAWN_SECONDS} seconds")
            return took

        times = rounds_of(DRAWN_ROUNDS, lambda: drawn(player), lambda: drawn(mpv))
    return Row(f"processor time of {DRAWN_SECONDS} s, each picture drawn", *map(statistics.median, times),
               "the same pictures drawn in the program itself", 1.1)


def rested(side):
    """What a side returns, once what was before has come to rest."""
    time.sleep(REST)
    return side()


def rounds_of(count, *sides):
    """What the sides return, in turn and `count` times over, as a list each. A first round is for warming up."""
    rounds = [[rested(side) for side in sides] for _ in progress(count + 1)]
    return list(zip(*rounds[1:]))


def memory_lines(bench):
    """What a player takes, beside the program."""
    with bench.television() as television:
        program = television.process.pid
        lines = ["### Memory", "",
                 "Resident memory of `desktop-tv` and of the process that plays, which stays for the next film. In brackets: what "
                 "no other process has as well, most of the rest being libraries.", "", "| | desktop-tv | player |", "|---|---|---|"]

        def add(what):
            players = [pid for pid in children(program) if is_player(pid)]
            lines.append(f"| {what} | {resident(program)} | {resident(players[0]) if players else '-'} |")

        add("before the first film")
        television.play()
        time.sleep(2)
        add("a film of 720p plays")
        television.stop()
        time.sleep(2)
        add("stopped")
    return lines


def is_player(pid):
    return Path(f"/proc/{pid}/comm").read_text().startswith("desktop-media-p")


def resident(pid):
    """The resident memory of a process, as text."""
    sizes = dict(re.findall(r"^(\w+): +(\d+) kB", Path(f"/proc/{pid}/smaps_rollup").read_text(), re.MULTILINE))
    own = int(sizes["Private_Clean"]) + int(sizes["Private_Dirty"])
    return f"{int(sizes['Rss']) / 1024:.0f} MiB ({own / 1024:.0f})"


def processor_time(process):
    """What a process and its children have used of the processors, in nanoseconds."""
    ticks = 0
    for pid in [process, *children(process)]:
        fields = Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
        ticks += int(fields[11]) + int(fields[12])  # of the user's and of the system's time
    return ticks * 1e9 / os.sysconf("SC_CLK_TCK")


def children(process):
    return [int(pid) for thread in Path(f"/proc/{process}/task").iterdir() for pid in (thread / "children").read_text().split()]

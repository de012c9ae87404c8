"""The files that the desktop's benchmarks work on: the same at every making, made once and kept."""

import os
import random
import shutil
import struct
import subprocess
import sys
from pathlib import Path

FOLDER_FILES = 100_000
TREE_ENTRIES = 1_000_000
TREE_TOP_FOLDERS, TREE_FOLDERS_EACH = 100, 100
TRACKS, ARTISTS, ALBUMS_EACH = 10_000, 100, 10
PHOTOS, VIDEOS, SONGS = 120, 40, 40
FILMS, FILM_SECONDS = 2, 30

# What lies on a stick that people use, of a hundred files each.
KINDS = ["jpg"] * 55 + ["mp3"] * 30 + ["mp4"] * 5 + ["txt"] * 10


class Progress:
    """How far a making is: on one line on a terminal, else once at its beginning."""

    def __init__(self, what):
        self.what, self.shown = what, -1
        if not sys.stderr.isatty():
            print(f"making {what}", file=sys.stderr)

    def show(self, done, total):
        percent = done * 100 // total
        if percent != self.shown and sys.stderr.isatty():
            self.shown = percent
            end = "\n" if done == total else ""
            print(f"\rmaking {self.what}: {percent} %", end=end, file=sys.stderr, flush=True)


def make(root, *names):
    """Makes those of the folders `names` that are missing in the folder `root`; returns the folders by name."""
    makers = {"folder": make_folder, "tree": make_tree, "tracks": make_tracks, "media": make_media, "films": make_films,
              "empty": lambda _: None}
    for name in names:
        target, part = root / name, root / (name + ".part")
        if not target.exists():
            shutil.rmtree(part, ignore_errors=True)
            part.mkdir(parents=True)
            makers[name](part)
            part.rename(target)  # whole or not at all
    return {name: root / name for name in names}


def make_folder(folder):
    """Files of many kinds and sizes, without content, in an order of creation that is not that of their names."""
    chance, progress = random.Random(1), Progress(f"a folder of {FOLDER_FILES:,} files")
    numbers = list(range(FOLDER_FILES))
    chance.shuffle(numbers)
    for done, number in enumerate(numbers, 1):
        path = folder / f"file {number}.{chance.choice(KINDS)}"
        path.touch()
        os.truncate(path, chance.randrange(1, 5_000_000))
        progress.show(done, FOLDER_FILES)


def make_tree(folder):
    """Empty files over many folders, which all count as entries."""
    chance, progress = random.Random(2), Progress(f"a tree of {TREE_ENTRIES:,} entries")
    folders = [f"{top:02}/{below:02}" for top in range(TREE_TOP_FOLDERS) for below in range(TREE_FOLDERS_EACH)]
    files = TREE_ENTRIES - TREE_TOP_FOLDERS - len(folders)
    for i, name in enumerate(folders):
        (folder / name).mkdir(parents=True)
        for number in range(files * i // len(folders), files * (i + 1) // len(folders)):
            os.close(os.open(folder / name / f"file {number}.{chance.choice(KINDS)}", os.O_CREAT | os.O_WRONLY, 0o644))
        progress.show(i + 1, len(folders))


def make_tracks(folder):
    """Songs with tags of their own before one and the same sound."""
    progress = Progress(f"{TRACKS:,} tagged tracks")
    sound = ffmpeg("-f", "lavfi", "-i", "sine=frequency=440:duration=1", "-b:a", "64k", "-f", "mp3", "-id3v2_version", "0", "-")
    for number in range(TRACKS):
        artist, album = number % ARTISTS, number // ARTISTS % ALBUMS_EACH
        target = folder / f"Artist {artist}" / f"Album {album}"
        target.mkdir(parents=True, exist_ok=True)
        tags = id3({"TIT2": f"Title {number}", "TPE1": f"Artist {artist}", "TALB": f"Album {album} of {artist}",
                    "TCON": f"Genre {artist % 12}", "TYER": str(1960 + album)})
        (target / f"{number:05}.mp3").write_bytes(tags + sound)
        progress.show(number + 1, TRACKS)


def make_media(folder):
    """Photos and videos of a phone's size and songs with covers, some of them copies: each path is another file."""
    lavfi = ["-f", "lavfi", "-i"]
    exact = ["-fflags", "+bitexact", "-flags:v", "+bitexact", "-flags:a", "+bitexact", "-map_metadata", "-1"]
    h264 = ["-c:v", "libx264", "-preset", "ultrafast", "-g", "30", "-pix_fmt", "yuv420p", "-threads", "1"]
    cover = ["-map", "0", "-map", "1", "-c:v", "mjpeg", "-disposition:v", "attached_pic", "-id3v2_version", "3"]

    def photo(seed):
        return [*lavfi, f"testsrc2=size=4000x3000:rate=1,noise=alls=12:all_seed={seed}", "-frames:v", "1", "-q:v", "3"]

    def video(seed):
        return [*lavfi, f"testsrc2=size=1920x1080:rate=30:duration=10,noise=alls=6:all_seed={seed}", *h264]

    def song(seed):
        return [*lavfi, f"sine=frequency={220 + seed}:duration=60", *lavfi, "testsrc2=size=1000x1000:rate=1:duration=1", *cover]

    progress = Progress(f"{PHOTOS} photos, {VIDEOS} videos and {SONGS} songs with covers")
    plans = [("photo {}.jpg", PHOTOS, 12, photo), ("video {}.mp4", VIDEOS, 5, video), ("song {}.mp3", SONGS, 4, song)]
    for name, count, different, arguments in plans:
        for number in range(count):
            make_or_copy(folder, name, number, different, [*arguments(number), *exact])
            progress.show(len(os.listdir(folder)), PHOTOS + VIDEOS + SONGS)


def make_films(folder):
    """The same film several times, as a television records it: 720p, 25 pictures a second, a key picture every two seconds."""
    progress = Progress(f"{FILMS} films of {FILM_SECONDS} seconds")
    picture = f"testsrc2=size=1280x720:rate=25:duration={FILM_SECONDS},noise=alls=6:all_seed=1"
    sound = f"sine=frequency=440:sample_rate=48000:duration={FILM_SECONDS}"
    for number in range(FILMS):
        make_or_copy(folder, "film {}.mp4", number, 1,
                     ["-f", "lavfi", "-i", picture, "-f", "lavfi", "-i", sound, "-c:v", "libx264", "-preset", "veryfast", "-g", "50",
                      "-b:v", "3M", "-pix_fmt", "yuv420p", "-c:a", "aac", "-ac", "2"])
        progress.show(number + 1, FILMS)


def make_or_copy(folder, name, number, different, arguments):
    """File `number` of a kind: after the first `different` ones they are copies."""
    target = folder / name.format(number)
    if number < different:
        ffmpeg(*arguments, os.fspath(target))
    else:
        shutil.copyfile(folder / name.format(number % different), target)


def ffmpeg(*arguments):
    """Runs ffmpeg; returns what it writes to standard output."""
    return subprocess.run(["ffmpeg", "-nostdin", "-v", "error", *arguments], check=True, stdout=subprocess.PIPE).stdout


def id3(texts):
    """An ID3 tag of version 2.3 with the texts by their frames' names."""
    frames = b""
    for name, text in texts.items():
        content = b"\0" + text.encode("latin-1")
        frames += name.encode() + struct.pack(">IH", len(content), 0) + content
    size = len(frames)
    return b"ID3\3\0\0" + bytes((size >> shift) & 0x7F for shift in (21, 14, 7, 0)) + frames

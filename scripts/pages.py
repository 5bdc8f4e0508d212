# SPDX-License-Identifier: Apache-2.0
"""What the checks share that draw pages: the runs of programs, and pictures."""

import glob
import os
import re
import subprocess

# Resolution and page are fixed, so that the pictures can be compared, one pixel a point.
GHOSTSCRIPT = ("gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-dFIXEDRESOLUTION", "-r72")


class Failure(Exception):
    pass


def run(arguments, environment=None):
    done = subprocess.run(arguments, env=environment, capture_output=True, timeout=300)
    if done.returncode != 0:
        raise Failure(f"{' '.join(arguments)}: status {done.returncode}\n"
                      f"{(done.stdout + done.stderr).decode(errors='replace')}")
    return done


class Picture:
    def __init__(self, data):
        fields = re.match(rb"P6\s+(?:#.*\n)?(\d+)\s+(\d+)\s+255\s", data)
        self.width, self.height = int(fields[1]), int(fields[2])
        self.pixels = data[fields.end():]

    def __eq__(self, other):
        return not self.changes(other)

    def changes(self, former):
        """{point: colour} of what isn't as in the other one; points count from the lower left."""
        if (self.width, self.height) != (former.width, former.height):
            raise Failure("the pages have other sizes")
        found = {}
        row = 3 * self.width
        for line in range(self.height):
            new = self.pixels[line * row:(line + 1) * row]
            old = former.pixels[line * row:(line + 1) * row]
            if new != old:
                for at in range(0, row, 3):
                    if new[at:at + 3] != old[at:at + 3]:
                        found[at // 3, self.height - 1 - line] = tuple(new[at:at + 3])
        return found


def draw(folder, *files, device="ppmraw"):
    """The pages, none of a device without a picture, and what the document printed."""
    pages = os.path.join(folder, "page-%d.ppm")
    done = run([*GHOSTSCRIPT, f"-sDEVICE={device}", f"-sOutputFile={pages}", *files])
    if done.stderr:
        raise Failure(f"{files}: {done.stderr.decode(errors='replace')}")
    pictures = []
    while os.path.exists(path := pages % (len(pictures) + 1)):
        with open(path, "rb") as file:
            pictures.append(Picture(file.read()))
        os.remove(path)
    return pictures, done.stdout


class Copies:
    """The copies of sample PPDs that a dialog makes in /tmp, and which go with it."""

    def __init__(self, samples):
        names = map(os.path.basename, glob.glob(os.path.join(samples, "*.ppd")))
        self.strange = [copy for name in names
                        if not os.path.exists(copy := os.path.join("/tmp", name))]

    def check(self):
        left = list(filter(os.path.exists, self.strange))
        for copy in left:
            os.remove(copy)
        if left:
            raise Failure(f"left behind: {' '.join(left)}")

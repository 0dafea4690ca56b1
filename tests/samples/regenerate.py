"""Runs the generators again and compares what they write with the committed samples."""

import pathlib
import shutil
import subprocess
import sys

from PIL import Image, ImageChops


def differs(made, kept):
    if made.suffix != ".png":
        return made.read_bytes() != kept.read_bytes()
    # Pixels, not bytes: another zlib compresses the same picture differently.
    with Image.open(made) as a, Image.open(kept) as b:
        return a.size != b.size or ImageChops.difference(a, b).getbbox() is not None


def main():
    samples, folder = map(pathlib.Path, sys.argv[1:])
    shutil.rmtree(folder, ignore_errors=True)
    generator = samples / "generate" / "make_samples.py"
    subprocess.run([sys.executable, "-B", generator, folder], check=True)

    names = {path.name for path in folder.iterdir()}
    committed = {path.name for path in samples.iterdir() if path.suffix in (".dae", ".png")}
    if names != committed:
        sys.exit(f"written: {sorted(names)}, committed: {sorted(committed)}")
    changed = [name for name in sorted(names) if differs(folder / name, samples / name)]
    if changed:
        sys.exit("not what the generators write: " + ", ".join(changed))


if __name__ == "__main__":
    main()

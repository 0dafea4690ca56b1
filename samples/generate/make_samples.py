#!/usr/bin/env python3
"""Writes the sample models and their textures. The same program always writes the same files."""

import argparse
import pathlib

import cactus
import figure


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", nargs="?", type=pathlib.Path,
                        default=pathlib.Path(__file__).resolve().parent.parent,
                        help="where to write (default: the folder samples)")
    folder = parser.parse_args().folder
    folder.mkdir(parents=True, exist_ok=True)
    cactus.write(folder)
    figure.write(folder)


if __name__ == "__main__":
    main()

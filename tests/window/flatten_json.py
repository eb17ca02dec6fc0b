#!/usr/bin/env python3
"""flatten_json.py FILE: each scalar of a JSON document on a line of its own, as PATH=VALUE, keys in byte order.

An independent reader of the files that the game writes.
"""
import json
import sys


def lines(path, value):
    if isinstance(value, dict):
        if not value:
            yield f"{path}={{}}"
        for key in sorted(value):
            yield from lines(f"{path}.{key}", value[key])
    elif isinstance(value, list):
        if not value:
            yield f"{path}=[]"
        for index, element in enumerate(value):
            yield from lines(f"{path}[{index}]", element)
    else:
        yield f"{path}={json.dumps(value)}"


def refuse(constant):
    raise ValueError(constant + " is no JSON")


with open(sys.argv[1], encoding="utf-8") as file:
    for line in lines("", json.load(file, parse_constant=refuse)):
        print(line)

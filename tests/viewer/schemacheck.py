#!/usr/bin/env python3
"""Judges screen files (and update documents, files named update*) by the screen schema.

usage: schemacheck.py SCHEMA FILE...
Prints one line per file: "FILE<TAB>ok" or "FILE<TAB>refused<TAB>reason". A file is read
as strictly as the loader reads it (UTF-8, no field twice, no NaN or infinite number), so
that a refusal here means the same as one of the loader. Exits 3 when the jsonschema module
is missing: the test that calls this must fail, not skip.
"""
import json
import math
import os
import sys

try:
    import jsonschema
except ImportError:
    print("schemacheck.py: the python3 jsonschema module is missing (tools/install-deps.sh installs it)", file=sys.stderr)
    sys.exit(3)


def no_twice(pairs):
    keys = [k for k, _ in pairs]
    if len(keys) != len(set(keys)):
        raise ValueError("a field given twice")
    return dict(pairs)


def finite(text):
    value = float(text)
    if math.isinf(value):
        raise ValueError("a number beyond the range of a double")
    return value


def refuse_constant(name):
    raise ValueError(name + " is not JSON")


def read(path):
    with open(path, "rb") as f:
        text = f.read().decode("utf-8")
    return json.loads(text, object_pairs_hook=no_twice, parse_float=finite,
                      parse_constant=refuse_constant)


def main():
    schema = read(sys.argv[1])
    jsonschema.Draft202012Validator.check_schema(schema)
    screens = jsonschema.Draft202012Validator(schema)
    updates = jsonschema.Draft202012Validator({"$ref": "#/$defs/update", "$defs": schema["$defs"]})
    for path in sys.argv[2:]:
        validator = updates if os.path.basename(path).startswith("update") else screens
        try:
            error = jsonschema.exceptions.best_match(validator.iter_errors(read(path)))
            reason = None if error is None else "/".join(map(str, error.absolute_path)) + ": " + error.message
        except (ValueError, RecursionError) as e:  # not JSON, or nested beyond Python's stack
            reason = str(e)
        print(path + ("\tok" if reason is None else "\trefused\t" + reason.replace("\n", " ")[:200]))


main()

#!/usr/bin/env bash
# The main job on real input: a fresh project, windows from published glazings, one edited, what went stale, the files.
set -euo pipefail
cd "$(dirname "$0")/.."
job=build/example
rm -rf "$job"
mkdir -p "$job"
tarn() { build/bin/tarn -p "$job/MALL" "$@"; }

echo "== A new project"
tarn project new
echo
echo "== Windows from examples/glazings.json, computed and saved; then one edited in Python"
PYTHONPATH=build/python python3 examples/office.py "$job/MALL"
echo
echo "== The project's windows (Btu/(hr.ft2.F), ft)"
tarn windows list
echo
echo "== What the project holds"
tarn project info

#!/usr/bin/env bash
# The main job on real input: a small office building made from published data, synthetic results for it, edits, and which
# results become stale through which links; a year of weather at the end.
set -euo pipefail
cd "$(dirname "$0")/.."
job=build/example
rm -rf "$job"
mkdir -p "$job"
tarn() { build/bin/tarn -p "$job/MALL" "$@"; }
python() { PYTHONPATH=build/python python3 "examples/$1" "$job/MALL"; }
# The first lines of a long output. The rest is read too, so that the writing program is not cut off.
first() { sed -n "1,$1p"; }

echo "== 1. A new project: an index database and record files with defaults"
tarn project new
echo
echo "== 2. A small office building, made in Python from examples/glazings.json and constructions.json"
python office.py
echo
echo "== 3. What was made, on the command line: a wall with its layers and transfer functions"
tarn walls show 2
echo
echo "-- a schedule (the first lines)"
tarn schedules show 1 | first 10
echo
echo "-- index rows: the spaces (ft2, people, W/ft2), then the air systems (codes; flags are 0 no, -1 yes)"
tarn spaces list
tarn air-systems list
echo
echo "-- the chilled-water plant (the first lines)"
tarn plants show 1 | first 22
echo
echo "== 4. Results, SYNTHETIC, by examples/results.py: rough sums in place of load and energy calculations"
python results.py
echo
echo "-- the design of an air system: sizing, zones, load components"
tarn results show 1 --svg "$job/design.svg"
echo
echo "-- the building: what it uses, what its meters paid"
tarn buildings show 1
echo
echo "== 5. Edits, and which results each makes stale (older than their inputs)"
echo "   (below each: edited thing > what uses it > ... > what is stale; the shortest way, where there are several)"
python edits.py
echo "== 6. A year of weather, computed by examples/make_year.py, becomes the project's"
python3 examples/make_year.py "$job/tarnwater.epw"
tarn weather import "$job/tarnwater.epw"
echo
tarn weather show --svg "$job/tarnwater.svg"
echo
echo "-- the same year as an hourly file: is it valid, and is any of its hours impossible?"
tarn weather import "$job/tarnwater.epw" --output "$job/TARNWATER.HW1"
tarn weather check "$job/TARNWATER.HW1"
echo
echo "== 7. What the project holds; the weather made all results stale"
tarn project info
echo
echo "== 8. All of it as a page for a browser"
tarn report "$job/office.html"
echo "pictures: $job/design.svg, $job/tarnwater.svg; page: $job/office.html"

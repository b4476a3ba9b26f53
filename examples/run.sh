#!/usr/bin/env bash
# The main job on real input: a fresh project, a floor of an office from published data, a wall edited,
# a year of weather, what went stale.
set -euo pipefail
cd "$(dirname "$0")/.."
job=build/example
rm -rf "$job"
mkdir -p "$job"
tarn() { build/bin/tarn -p "$job/MALL" "$@"; }

echo "== A new project"
tarn project new
echo
echo "== A floor of an office from examples/glazings.json and constructions.json, in Python; then a wall edited"
PYTHONPATH=build/python python3 examples/office.py "$job/MALL"
echo
echo "== The edited wall"
tarn walls show 2
echo
echo "== A schedule"
tarn schedules show 1 | head -22
echo
echo "== The spaces (ft2, people, W/ft2)"
tarn spaces list
echo
echo "== The air systems"
tarn air-systems list
echo
echo "== An air system (the first lines)"
tarn air-systems show 2 | sed -n '1,45p'
echo
echo "== The chillers"
tarn chillers list
echo
echo "== The chilled-water plant"
tarn plants show 1 | sed -n '1,48p'
echo
echo "== A year of weather, computed by examples/make_year.py, becomes the project's; before, nothing is stale"
PYTHONPATH=build/python python3 examples/office.py "$job/MALL" --calculated
python3 examples/make_year.py "$job/tarnwater.epw"
tarn weather import "$job/tarnwater.epw"
echo
tarn weather show --svg "$job/tarnwater.svg"
echo
tarn weather check "$job/MALLHW1.DAT"
echo
echo "== What the project holds, and that all of it is stale"
tarn project info

"""A project from published glazings: windows made, computed, saved, one edited, and what went stale.

    PYTHONPATH=build/python python3 examples/office.py FOLDER/PREFIX    (run by `make run`, on a project just made)
"""

import json
import pathlib
import sys

import tarn

HERE = pathlib.Path(__file__).parent
FRAME_TYPE = 3  # 18 % of the window at 0.4 Btu/(hr.ft2.F)


def glazed(window, table, glazing, frame_type):
    window.CreateDefault()
    window.Name = glazing["name"]
    window.Height, window.Width, window.FrameType = 4.0, 5.0, frame_type
    panes = [table["glass"][layer] for layer in glazing["layers"]]
    for i in range(1, 4):
        pane = panes[i - 1] if i <= len(panes) else None
        window.GlassTypeID[i] = 1 if pane else 0
        window.GlassNameEnglish[i] = pane["name_english"] if pane else ""
        window.GlassNameMetric[i] = pane["name_metric"] if pane else ""
    for name, key in (("GlassTrans", "trans"), ("GlassReflect", "reflect"), ("GlassAbsorp", "absorp"),
                      ("GlassThickness", "thickness_in"), ("GlassConductivity", "conductivity")):
        setattr(window, name, [pane[key] for pane in panes] + [0.0] * (3 - len(panes)))
    gap = table["gaps"].get(glazing["gap"], {"type": 0, "name_english": "", "name_metric": ""})
    window.GapTypeID, window.GapNameEnglish, window.GapNameMetric = gap["type"], gap["name_english"], gap["name_metric"]
    window.CalculatePerformance()
    return window


def make_windows(project):
    table = json.loads((HERE / "glazings.json").read_text())
    print(f"{'glazing':24} {'centre of glass, computed (published)':>38}   {'with frame':>14}")
    print(f"{'':24} {'U-value':>17} {'shade coeff.':>20}   {'U':>6} {'SC':>7}")
    with tarn.transaction(project):
        for glazing in table["glazings"]:
            bare = glazed(project.NewWindow(), table, glazing, 0)
            window = glazed(project.NewWindow(), table, glazing, FRAME_TYPE)
            window.Save()
            print(f"{glazing['name']:24} {bare.OverallUValue:9.3f} ({glazing['published_u_value']:.3f}) "
                  f"{bare.OverallShadeCo:11.3f} ({glazing['published_shade_coefficient']:.3f})   "
                  f"{window.OverallUValue:6.3f} {window.OverallShadeCo:7.3f}")


def use_window(database, index):
    """Rows that the coming kinds will write: a space with the window, its system, its plant and its building."""
    for table in ("AirSystemIndex", "PlantIndex", "BuildingIndex"):
        flags = "bHasChanged" if table == "BuildingIndex" else "bDesHasChanged, bSimHasChanged"
        zeros = "0" if table == "BuildingIndex" else "0, 0"
        for n in (1, 2):
            database.execute(f"INSERT INTO {table} (nIndex, szName, {flags}) VALUES (?, ?, {zeros})", n, f"{table[:-5]} {n}")
    database.execute("INSERT INTO Space_Window_Links VALUES (1, ?)", index)
    for links in ("System_Space_Links", "Plant_System_Links", "Building_Plant_Links"):
        database.execute(f"INSERT INTO {links} VALUES (1, 1)")


def stale(database):
    found = [r["szName"] + " (design, simulation)" for r in database.rows(
        "SELECT szName FROM AirSystemIndex WHERE bDesHasChanged <> 0 UNION ALL SELECT szName FROM PlantIndex WHERE bDesHasChanged <> 0")]
    return found + [r["szName"] + " (simulation)" for r in database.rows("SELECT szName FROM BuildingIndex WHERE bHasChanged <> 0")]


def main():
    folder, prefix = pathlib.Path(sys.argv[1]).parent, pathlib.Path(sys.argv[1]).name
    project = tarn.COM_ProjectData()
    project.WorkPath, project.FilePrefix = str(folder), prefix
    make_windows(project)
    database = tarn.open_database(project.IndexDBName)
    use_window(database, 6)
    print(f"\nwindow 6 is used by space 1, air system 1, plant 1, building 1; stale now: {stale(database) or 'nothing'}")
    window = project.NewWindow()
    window.Load(6)
    before = window.OverallUValue
    window.FrameType = 1
    window.CalculatePerformance()
    window.Save()
    print(f"window 6, frame type {FRAME_TYPE} -> 1: U-value {before:.3f} -> {window.OverallUValue:.3f}, saved")
    print("stale now:", ", ".join(stale(database)))


main()

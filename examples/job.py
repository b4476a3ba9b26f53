"""What the steps of the example share: opening the project of the command line, and showing which results are stale and why."""

import pathlib
import sys

import tarn

# Link tables and the way that a change takes through them: what uses what, from the edited thing outward.
WAYS = (("Space_Wall_Links", "Wall", "Space"), ("Space_Roof_Links", "Roof", "Space"), ("Space_Window_Links", "Window", "Space"),
        ("Space_Schedule_Links", "Schedule", "Space"), ("System_Space_Links", "Space", "System"),
        ("System_Schedule_Links", "Schedule", "System"), ("Plant_System_Links", "System", "Plant"),
        ("Plant_Chiller_Links", "Chiller", "Plant"), ("ElectricRate_Schedule_Links", "Schedule", "ElectricRate"),
        ("Building_System_Links", "System", "Building"), ("Building_Plant_Links", "Plant", "Building"),
        ("Building_ElectricRate_Links", "ElectricRate", "Building"))
Thing = tuple[str, int]  # kind and index
WORDS = {"System": "air system", "ElectricRate": "electric rate"}


def open_project() -> tarn.COM_ProjectData:
    path = pathlib.Path(sys.argv[1])
    project = tarn.COM_ProjectData()
    project.WorkPath, project.FilePrefix = str(path.parent), path.name
    return project


def called(database: tarn.Database, kind: str, index: int) -> str:
    table = ("AirSystem" if kind == "System" else kind) + "Index"
    name = database.rows(f"SELECT szName FROM {table} WHERE nIndex = {index}")[0]["szName"]
    return f"{WORDS.get(kind, kind.lower())} {index}, {name}"


def ways_from(database: tarn.Database, kind: str, index: int) -> dict[Thing, list[Thing]]:
    """The shortest chain of links from an entity to each entity that depends on it, by kind and index."""
    ways: dict[Thing, list[Thing]] = {}
    front = [((kind, index), [(kind, index)])]
    while front:
        (kind, index), way = front.pop(0)
        for table, used, user in WAYS:
            if used != kind:
                continue
            for row in database.rows(f"SELECT DISTINCT {user}_ID FROM {table} WHERE {used}_ID = {index} ORDER BY {user}_ID"):
                found = (user, row[f"{user}_ID"])
                if found not in ways:
                    ways[found] = way + [found]
                    front.append((found, ways[found]))
    return ways


def stale(database: tarn.Database) -> dict[Thing, str]:
    """What the index database marks as changed since it was calculated, and of which calculation."""
    found: dict[Thing, str] = {}
    for kind, table in (("System", "AirSystemIndex"), ("Plant", "PlantIndex")):
        for row in database.rows(f"SELECT nIndex, bDesHasChanged, bSimHasChanged FROM {table} ORDER BY nIndex"):
            what = [word for word, flag in (("sizing", "bDesHasChanged"), ("simulation", "bSimHasChanged")) if row[flag]]
            if what:
                found[kind, row["nIndex"]] = " and ".join(what)
    for row in database.rows("SELECT nIndex FROM BuildingIndex WHERE bHasChanged <> 0 ORDER BY nIndex"):
        found["Building", row["nIndex"]] = "simulation"
    return found


def show_stale(database: tarn.Database, kind: str, index: int) -> None:
    """Each stale entity, and the chain of links from the edited one to it."""
    marked, ways = stale(database), ways_from(database, kind, index)
    for thing, what in marked.items():
        way = " > ".join(called(database, *step) for step in ways.get(thing, [])) or "NO LINK LEADS THERE"
        print(f"  stale: {called(database, *thing)}: {what}\n      {way}")
    fresh = [called(database, *thing) for thing in every(database) if thing not in marked]
    print("  not stale:", "; ".join(fresh) or "nothing")


def every(database: tarn.Database) -> list[Thing]:
    """All entities that have results."""
    return [(kind, row["nIndex"]) for kind, table in (("System", "AirSystemIndex"), ("Plant", "PlantIndex"), ("Building", "BuildingIndex"))
            for row in database.rows(f"SELECT nIndex FROM {table} ORDER BY nIndex")]

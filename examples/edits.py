"""Four edits of the small office, each after everything was calculated: which results become stale, and through which links.

    PYTHONPATH=build/python python3 examples/edits.py FOLDER/PREFIX    (run by `make run`)
"""

import tarn
from job import open_project, show_stale, stale
from results import calculate


def edit_wall(project: tarn.COM_ProjectData) -> tuple[str, int]:
    wall = project.NewWall()
    wall.Load(2)
    layer = wall.GetLayer(3)
    before, u_before, b_before = layer.Thickness, wall.OverallUValue, wall.BTrans[:]
    layer.Thickness = 4.0
    wall.ComputeSummary()
    saved = wall.Save(0)
    assert saved == 0, f"{wall.Name}: return code {saved}"
    b = wall.BTrans[:]
    print(f"wall 2, {wall.Name}: {layer.Name} {before:.4g} in -> 4 in, U-value {u_before:.4f} -> {wall.OverallUValue:.4f} Btu/(hr.ft2.F);\n"
          f"  transfer coefficients computed anew, the first b: {b_before[0]:.2e} {b_before[1]:.2e} {b_before[2]:.2e}"
          f" -> {b[0]:.2e} {b[1]:.2e} {b[2]:.2e}")
    return "Wall", 2


def edit_space(project: tarn.COM_ProjectData) -> tuple[str, int]:
    space = project.NewSpace()
    space.Load(5)
    space.GetPeople().Occupancy = 150
    space.Save()
    print("space 5, Core: 200 -> 150 ft2 per person")
    return "Space", 5


def edit_chiller(project: tarn.COM_ProjectData) -> tuple[str, int]:
    chiller = project.NewChiller()
    chiller.Load(2)
    before = chiller.CoolingMode.FLPower
    chiller.CoolingMode.FLPower *= 0.95
    chiller.Save()
    print(f"chiller 2, {chiller.Name}: full-load power {before:.3f} -> {chiller.CoolingMode.FLPower:.3f} kW")
    return "Chiller", 2


def edit_rate(project: tarn.COM_ProjectData) -> tuple[str, int]:
    rate = project.NewElectricRate()
    rate.Load(1)
    rate.ECRate[1] = 0.21
    rate.Save()
    print(f"electric rate 1, {rate.Name}: the peak price 0.19 -> 0.21 {rate.CurrSymbol.strip()}/{rate.EnergyUnits.strip()}")
    return "ElectricRate", 1


def main() -> None:
    project = open_project()
    database = tarn.open_database(project.IndexDBName)
    tons, bills = calculate(project)
    for edit in (edit_wall, edit_space, edit_chiller, edit_rate):
        show_stale(database, *edit(project))
        before, (tons, bills) = (tons, bills), calculate(project)
        print(f"  calculated again: sum of the systems' cooling peaks {before[0]:.2f} -> {tons:.2f} tons, bills of a year {before[1]:,.2f} -> {bills:,.2f} $; "
              f"{len(stale(database))} are stale now\n")


main()

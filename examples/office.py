"""A small office building of one storey, 5,400 ft2: windows, walls and a roof from published glazings and materials,
schedules, five spaces, three air systems, a chilled-water and a hot-water plant, an electric and a gas rate, and the
building that holds them; made, computed and saved.

    PYTHONPATH=build/python python3 examples/office.py FOLDER/PREFIX    (run by `make run`, on a project just made)
"""

import json
import pathlib
from typing import Any

import tarn
from job import open_project

HERE = pathlib.Path(__file__).parent
N, E, S, W, HORIZONTAL = 1, 5, 9, 13, 17  # exposures, docs/codes.md
WATTS_PER_FT2 = 2  # of a lighting power, docs/codes.md
FRAME_TYPE = 3  # 18 % of the window at 0.4 Btu/(hr.ft2.F)
PEAK, NORMAL, OFF_PEAK = 1, 3, 4  # periods of the day
RATE = 2  # a schedule of such periods
COMPLEX = 2  # style of a rate
ELECTRIC, NATURAL_GAS = 1, 3  # meters
EVERYTHING = 15  # all sections of a building
ALL = 508  # all sections of a plant


def glazed(window: tarn.WIN_Window, table: dict[str, Any], glazing: dict[str, Any], frame_type: int) -> tarn.WIN_Window:
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


def make_windows(project: tarn.COM_ProjectData) -> None:
    table = json.loads((HERE / "glazings.json").read_text())
    print("U-values in Btu/(hr.ft2.F); the coefficients are those of the conduction transfer functions\n")
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


def make_constructions(project: tarn.COM_ProjectData) -> None:
    table = json.loads((HERE / "constructions.json").read_text())
    print(f"\n{'construction':24} {'U-value':>8} {'lb/ft2':>8}   {'b, first three':29} {'d, after the first':29}")
    for group, new in (("walls", project.NewWall), ("roofs", project.NewRoof)):
        for entry in table[group]:
            built = new()
            built.Name = entry["name"]
            slots = [1, *range(2, len(entry["layers"])), 10]  # the surfaces have the outer slots
            for slot, key in zip(slots, entry["layers"]):
                fill(built.GetLayer(slot), table["materials"][key])
            built.Absorptivity, built.OutsideSurfaceResistance, built.InsideSurfaceResistance = 0.7, 0.333, 0.685
            built.ComputeSummary()
            saved = built.Save(0)
            assert saved == 0, f"{entry['name']}: return code {saved}"
            print_coefficients(built)


def fill(layer: tarn.CA_Layer, material: dict[str, Any]) -> None:
    layer.Name, layer.LayerUsed = material["name"], True
    if "resistance" in material:
        layer.ThermalResistance = material["resistance"]
        return
    layer.Thickness, layer.Conductivity = material["thickness_in"], material["conductivity"]
    layer.Density, layer.SpecificHeat = material["density"], material["specific_heat"]


def print_coefficients(built: tarn.CA_ConstructionAssly) -> None:
    b, d = built.BTrans[:], built.DTrans[:]
    print(f"{built.Name:24} {built.OverallUValue:8.4f} {built.OverallWeight:8.1f}   "
          f"{b[0]:9.2e} {b[1]:9.2e} {b[2]:9.2e}  {d[1]:9.2e} {d[2]:9.2e} {d[3]:9.2e}")


def make_schedules(project: tarn.COM_ProjectData) -> None:
    """Office hours, as per cent of the peak: profile 1 on weekdays and design days, 2 on the others; then the periods of
    the electric rate."""
    for name, workday, weekend in (("Office people", 95, 5), ("Office lights", 90, 10)):
        schedule = project.NewSchedule()
        schedule.Name = name
        schedule.ProfileName[1], schedule.ProfileName[2] = "Workday", "Weekend and holiday"
        for hour in range(24):
            ramp = {6: 0.1, 7: 0.5, 17: 0.5, 18: 0.3}.get(hour, 1.0 if 8 <= hour < 17 else 0.05)
            schedule.HourlyValue[1, hour] = round(workday * ramp)
            schedule.HourlyValue[2, hour] = weekend
        schedule.Applicable[:] = [[1] * 6 + [2] * 3] * 12
        schedule.Save()
    nights = project.NewSchedule()
    nights.Name, nights.ProfileName[1] = "Parking lights", "Every night"
    for hour in range(24):
        nights.HourlyValue[1, hour] = 100 if hour < 6 or hour > 18 else 0
    nights.Applicable[:] = [[1] * 9] * 12
    nights.Save()
    periods = project.NewSchedule()
    periods.Name, periods.ScheduleType = "Electric rate periods", RATE
    periods.ProfileName[1], periods.ProfileName[2] = "Workday", "Weekend and holiday"
    for hour in range(24):
        periods.HourlyValue[1, hour] = PEAK if 12 <= hour < 19 else NORMAL if 7 <= hour < 22 else OFF_PEAK
        periods.HourlyValue[2, hour] = OFF_PEAK
    periods.Applicable[:] = [[1] * 6 + [2] * 3] * 12
    periods.Save()


def make_spaces(project: tarn.COM_ProjectData) -> None:
    """Four perimeter rooms around a core."""
    door, shade = project.NewDoor(), project.NewShade()
    door.CreateDefault()
    door.Save()
    shade.CreateDefault()
    shade.Name, shade.OvhgExt = "2 ft overhang", 2.0
    shade.Save()
    rooms = [("South office", S, 1, 900, 4), ("West office", W, 2, 600, 3), ("North office", N, 2, 900, 4), ("East office", E, 3, 600, 3)]
    for name, exposure, wall_type, area, windows in rooms:
        space = new_space(project, name, area)
        wall = space.GetWall(1)
        wall.Exposure, wall.WallType, wall.GrossArea = exposure, wall_type, area / 2
        wall.WindowType[1], wall.WindowQty[1], wall.WindowShade[1] = 6, windows, shade.Index if exposure == S else 0
        if exposure == S:
            wall.DoorType, wall.DoorQty = door.Index, 1
        space.Save()
    new_space(project, "Core", 2400).Save()


def new_space(project: tarn.COM_ProjectData, name: str, area: float) -> tarn.SPC_Space:
    space = project.NewSpace()
    space.CreateDefault()
    space.Name, space.FloorArea = name, area
    roof = space.GetRoof(1)
    roof.Exposure, roof.RoofType, roof.GrossArea = HORIZONTAL, 1, area
    space.GetPeople().Schedule = 1
    light = space.GetLight()
    light.OverheadWatt, light.OverheadSpec, light.OverheadSchedule = 1, WATTS_PER_FT2, 2
    return space


SYSTEMS = [("VAV, perimeter", 8, {"South": [1], "West": [2], "North and east": [3, 4]}), ("Fan coils, core", 16, {"Core": [5]}),
           ("Outdoor air unit, core", 6, {"Core": [5]})]


CHILLED_WATER, HOT_WATER = 3, 7  # sources of coils


def make_systems(project: tarn.COM_ProjectData) -> None:
    """Systems of three types: a zone for each list of spaces."""
    for name, system_type, zones in SYSTEMS:
        system = project.NewAirSystem()
        system.SetToDefaultsByType(system_type)
        header = system.GetAirSystem()
        header.Name = name
        header.SetNumZones(len(zones))
        for number, (called, spaces) in enumerate(zones.items(), 1):
            zone = system.GetZoneData(number)
            zone.Name, zone.TotalSpacesInZone = called, len(spaces)
            for place, space in enumerate(spaces, 1):
                zone.SpaceID[place], zone.SpaceMultiplier[place] = space, 1
        system.GetZoneSchedule().TstatSchedule = 1
        cooling, heating = system.GetCoolSys(), system.GetHeatSys()
        cooling.Source, heating.Source = CHILLED_WATER, HOT_WATER
        cooling.Used = heating.Used = True
        system.Save()
        header = system.GetAirSystem()
        print(f"air system {system.Index}, {name}: {header.NumZones} zones, "
              f"chilled water {'yes' if header.CWCoilsExists else 'no'}, hot water {'yes' if header.HWCoilsExists else 'no'}")


def make_equipment(project: tarn.COM_ProjectData) -> None:
    """Two chillers of shipped types, a boiler and a tower."""
    for name, chiller_type, tons in (("Screw chiller", 3, 12), ("Scroll chiller", 5, 6)):
        chiller = project.NewChiller()
        chiller.CreateDefaultByType(chiller_type, tarn.shipped_file("chillers.dat"))
        mode = chiller.CoolingMode
        scale = tons / mode.FLCapacity
        chiller.Name, chiller.AutoSize = name, False
        mode.FLCapacity, mode.FLPower = tons, mode.FLPower * scale
        mode.MapCapacity = [[value * scale for value in column] for column in mode.MapCapacity[:]]
        mode.MapPower = [[value * scale for value in column] for column in mode.MapPower[:]]
        chiller.Save()
        print(f"chiller {chiller.Index}, {name}: {mode.FLCapacity:g} tons, {mode.FLPower:.4g} kW with condenser water of {mode.FLEnteringTemp:g} F")
    others: list[tuple[tarn.BLR_Boiler | tarn.TWR_CoolingTower, str]] = [(project.NewBoiler(), "Hot water boiler"),
                                                                         (project.NewCoolingTower(), "Cooling tower")]
    for entity, name in others:
        entity.CreateDefault()
        entity.Name = name
        entity.Save()


CHILLERS, BOILERS = 10, 20  # libraries of equipment


def systems_with(project: tarn.COM_ProjectData, coils: str) -> list[int]:
    found = []
    for index in range(1, len(SYSTEMS) + 1):
        system = project.NewAirSystem()
        system.Load(index)
        if getattr(system.GetAirSystem(), coils):
            found.append(index)
    return found


def make_plants(project: tarn.COM_ProjectData) -> None:
    """Chilled water for the systems with such coils from the chillers with a shared tower, hot water from the boiler."""
    plants = (("Chilled water", 4, "CWCoilsExists", "CoolingEqpt", [(CHILLERS, 1, 67), (CHILLERS, 2, 33)], ["ChilledWaterPrimaryLoop", "CondenserWaterLoop"]),
              ("Hot water", 7, "HWCoilsExists", "HeatingEqpt", [(BOILERS, 1, 100)], ["HotWaterPrimaryLoop"]))
    for name, plant_type, coils, where, pieces, loops in plants:
        plant = project.NewPlant()
        plant.CreateDefault()
        plant.General.Name, plant.General.PlantType = name, plant_type
        for place, system in enumerate(systems_with(project, coils), 1):
            plant.SystemSelect.SystemID[place], plant.SystemSelect.SystemMultiplier[place] = system, 1
        units = getattr(plant.Details, where)
        units.NumEquipment = len(pieces)
        for number, (library, index, share) in enumerate(pieces, 1):
            unit = units.Equipment[number]
            unit.LibraryID, unit.EquipmentID, unit.Sequence, unit.SizingShare = library, index, number, share
        for loop in ("ChilledWaterPrimaryLoop", "CondenserWaterLoop", "HotWaterPrimaryLoop"):
            getattr(plant.Details, loop).Used = loop in loops
        plant.Details.TowerID = 1 if plant_type == 4 else 0
        plant.General.SetFlags()
        plant.Save(ALL)
        print(f"plant {plant.Index}, {name}: {len(pieces)} units, {plant.SystemSelect.NumSystems} systems, "
              f"{plant.General.NumOutputs} hourly outputs to come")


def make_rates(project: tarn.COM_ProjectData) -> None:
    """Electricity by time of day with a charge for the month's greatest demand; gas at one price. Prices are made up."""
    rate = project.NewElectricRate()
    rate.CreateDefault()
    rate.Name, rate.RateStyle, rate.FixedCharge, rate.TaxRate = "Office electricity", COMPLEX, 25.0, 6.0
    rate.TimeOfDaySched, rate.TODSchedule = True, 4
    for step, (period, price) in enumerate(((PEAK, 0.19), (NORMAL, 0.12), (OFF_PEAK, 0.08)), 1):
        rate.ECStepUsed[step], rate.ECPeriod[step], rate.ECRate[step] = True, period, price
    rate.DCStepUsed[1], rate.DCRate[1] = True, 9.5
    rate.Save()
    gas = project.NewFuelRate()
    gas.CreateDefault()
    gas.Name, gas.FixedCharge, gas.TaxRate = "Natural gas", 15.0, 6.0
    gas.Save()


def make_building(project: tarn.COM_ProjectData) -> None:
    building = project.NewBuilding()
    building.CreateDefault()
    building.GetBuildingGeneral().Name = "Small office"
    inputs = building.GetBuildingInputs()
    for slot in range(1, len(SYSTEMS) + 1):
        inputs.SystemID[slot], inputs.SystemMult[slot] = slot, 1
    inputs.PlantID[1], inputs.PlantID[2] = 1, 2
    inputs.UtilityRate[ELECTRIC], inputs.UtilityRate[NATURAL_GAS] = 1, 1
    inputs.MEName[1], inputs.METype[1], inputs.MEMaxPower[1], inputs.MESchedule[1] = "Parking lights", 1, 1.2, 3
    building.Save(EVERYTHING)
    print(f"building {building.Index}, {building.GetBuildingGeneral().Name}: {len(SYSTEMS)} air systems, 2 plants, 2 meters with a rate")


def main() -> None:
    project = open_project()
    make_windows(project)
    with tarn.transaction(project):
        make_constructions(project)
        make_schedules(project)
        make_spaces(project)
        print()
        make_systems(project)
        make_equipment(project)
        make_plants(project)
        make_rates(project)
        make_building(project)


main()

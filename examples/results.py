"""SYNTHETIC results for the small office, so that there is something to store, read and report: rough sums from the
project's areas, U-values, people and lights on sinusoidal days. This is NO load or energy calculation; engines make such
files with methods of their own.

    PYTHONPATH=build/python python3 examples/results.py FOLDER/PREFIX    (run by `make run`)
"""

from math import cos, pi, sin

import tarn
from job import open_project, stale

MONTHS, HOURS = range(1, 13), range(24)
DAYS_IN = (31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31)
WALLS, ROOFS, SOLAR, GLASS, LIGHTS, EQUIPMENT, PEOPLE, INFILTRATION, VENTILATION, FAN, DUCTS, SAFETY = 1, 2, 3, 4, 11, 13, 14, 15, 17, 18, 20, 22
COMPONENTS, POINTS = 22, 13
OUTDOOR, MIXED, COIL, FAN_OUT, ROOM, RETURN = 1, 4, 5, 8, 10, 12  # points of the air's way
ROOM_DB, SUPPLY_DB, WINTER_DB = 75.0, 56.0, -2.0  # F
ROOM_W, OUTDOOR_W = 0.0093, 0.0140  # lb/lb
SENSIBLE, LATENT = 1.08, 4840.0  # Btu/(hr.CFM.F), Btu/(hr.CFM) for each lb/lb, at sea level
WATT = 3.412  # Btu/hr


def outdoor(month, hour):
    """The design day's dry-bulb, F: 93 at most in July, 20 F above the night."""
    return 93 - 12 * (1 - cos((month - 7) * pi / 6)) - 10 * (1 - cos((hour - 15) * pi / 12))


def occupied(hour):
    return 1.0 if 8 <= hour < 18 else 0.1


def sun(exposure, hour):
    """Btu/(hr.ft2) through clear glass: exposures 1 to 4 are south, west, north, east, at their own hours."""
    peak = {1: (13, 90), 2: (17, 160), 3: (13, 25), 4: (9, 160)}.get(exposure, (13, 0))
    return max(0.0, peak[1] * cos((hour - peak[0]) * pi / 9)) if 6 <= hour <= 19 else 0.0


class Room:
    """What a space's loads rest on, read from the project."""

    def __init__(self, project, index):
        space = project.NewSpace()
        space.Load(index)
        self.index, self.name, self.area = index, space.Name, space.FloorArea
        wall, roof = space.GetWall(1), space.GetRoof(1)
        self.exposure, self.details = wall.Exposure, [0.0] * COMPONENTS
        self.wall_u = self.glass_u = self.shade = self.glass = 0.0
        if wall.WindowType[1]:
            window = project.NewWindow()
            window.Load(wall.WindowType[1])
            self.glass = window.Height * window.Width * wall.WindowQty[1]
            self.glass_u, self.shade = window.OverallUValue, window.OverallShadeCo
        if wall.WallType:
            built = project.NewWall()
            built.Load(wall.WallType)
            self.wall_u = built.OverallUValue
        built = project.NewRoof()
        built.Load(roof.RoofType)
        self.roof_u, self.roof = built.OverallUValue, roof.GrossArea
        self.people = self.area / space.GetPeople().Occupancy
        for place, amount in ((WALLS, max(0.0, wall.GrossArea - self.glass)), (ROOFS, self.roof), (SOLAR, self.glass), (GLASS, self.glass),
                              (LIGHTS, self.area), (EQUIPMENT, 0.75 * self.area), (PEOPLE, self.people), (INFILTRATION, 0.04 * self.area)):
            self.details[place - 1] = amount

    def loads(self, db, hour, heating=False):
        """Sensible and latent Btu/hr by component."""
        amount = self.details
        sensible, latent = [0.0] * COMPONENTS, [0.0] * COMPONENTS
        for place, conductance in ((WALLS, self.wall_u), (ROOFS, self.roof_u), (GLASS, self.glass_u), (INFILTRATION, SENSIBLE)):
            sensible[place - 1] = conductance * amount[place - 1] * (db - ROOM_DB)
        if not heating:
            sensible[SOLAR - 1] = self.glass * self.shade * sun(self.exposure, hour)
            sensible[LIGHTS - 1] = WATT * amount[LIGHTS - 1] * occupied(hour)
            sensible[EQUIPMENT - 1] = WATT * amount[EQUIPMENT - 1] * occupied(hour)
            sensible[PEOPLE - 1], latent[PEOPLE - 1] = 245 * self.people * occupied(hour), 205 * self.people * occupied(hour)
            latent[INFILTRATION - 1] = LATENT * amount[INFILTRATION - 1] * (OUTDOOR_W - ROOM_W)
        return sensible, latent


def added(lists):
    return [sum(column) for column in zip(*lists)] or [0.0] * COMPONENTS


def fill_zone(design, number, rooms):
    """The zone's loads of every hour, its sizing and its spaces. Returns its sensible load by month and hour, its airflow,
    and its latent load by component besides."""
    zone, hourly, sizing = design.DLZone(number), design.HLZone(number), design.TSZone(number).TerminalSizing
    hours = [[[added(part) for part in zip(*(room.loads(outdoor(m, h), h) for room in rooms))] for h in HOURS] for m in MONTHS]
    sensible, latent = ([[hours[m][h][part] for h in HOURS] for m in range(12)] for part in (0, 1))
    zone.Sensible[:], zone.Latent[:] = sensible, latent
    totals = [[sum(hour) for hour in month] for month in sensible]
    zone.TotalSensible[:], zone.TotalLatent[:] = totals, [[sum(hour) for hour in month] for month in latent]
    peak, month, hour = max((totals[m - 1][h], m, h) for m in MONTHS for h in HOURS)
    heating, _ = zip(*(room.loads(WINTER_DB, 6, True) for room in rooms))
    winter = added([[-load for load in each] for each in heating])
    airflow, area = peak / (SENSIBLE * (ROOM_DB - SUPPLY_DB)), sum(room.area for room in rooms)

    zone.HeatingLoads.Sensible[:], zone.HeatingLoads.TotalSensible = winter, sum(winter)
    facts = zone.LoadDetails
    facts.PeakMonth, facts.PeakHour, facts.FloorArea, facts.People = month, hour, area, sum(room.people for room in rooms)
    facts.ClgOutdoorDB, facts.ClgThermostat, facts.HtgOutdoorDB, facts.HtgThermostat = outdoor(month, hour), ROOM_DB, WINTER_DB, 70.0
    facts.ClgDetail[:] = facts.HtgDetail[:] = added([room.details for room in rooms])

    sizing.PeakMonth, sizing.PeakHour, sizing.PeakSensible = month, hour, peak
    sizing.PeakTotal, sizing.HeatingLoad = peak + sum(latent[month - 1][hour]), sum(winter)
    sizing.DesignAirflow, sizing.MinAirflow, sizing.AirflowPerArea, sizing.FloorArea = airflow, 0.3 * airflow, airflow / area, area
    sizing.People, sizing.VentAirflow, sizing.ReheatCoilLoad = facts.People, 17 * facts.People, sum(winter)

    hourly.OutdoorDB[:] = [[outdoor(m, h) for h in HOURS] for m in MONTHS]
    hourly.ZoneDB[:], hourly.ZoneRH[:] = [[ROOM_DB] * 24] * 12, [[50.0] * 24] * 12
    hourly.ZoneSensible[:] = totals
    hourly.AirFlow[:] = [[max(0.3, load / peak) * airflow for load in month] for month in totals]
    for place, room in enumerate(rooms, 1):
        fill_space(zone.DLSpace(place), room, month, hour)
    return totals, airflow, latent


def fill_space(loads, room, month, hour):
    loads.SpaceID, loads.Name, loads.Multiplier, loads.FloorArea, loads.People = room.index, room.name, 1, room.area, room.people
    loads.PeakMonth, loads.PeakHour = month, hour
    sensible, latent = room.loads(outdoor(month, hour), hour)
    winter = [-load for load in room.loads(WINTER_DB, 6, True)[0]]
    loads.ClgSensible[:], loads.ClgLatent[:], loads.ClgDetail[:] = sensible, latent, room.details
    loads.HtgLoad[:], loads.HtgDetail[:], loads.HtgTotal = winter, room.details, sum(winter)
    loads.ClgTotalSensible, loads.ClgTotalLatent = sum(sensible), sum(latent)
    loads.Airflow = sum(sensible) / (SENSIBLE * (ROOM_DB - SUPPLY_DB))


def fill_design(project, system, rooms):
    """The design results of an air system, whole."""
    design = project.NewAirSystemDesign()
    design.AirSystem = system
    weather = design.Weather
    weather.DB[:] = [[outdoor(m, h) for h in HOURS] for m in MONTHS]
    weather.WB[:] = [[min(outdoor(m, h), 74 - 0.3 * (93 - outdoor(m, h))) for h in HOURS] for m in MONTHS]
    weather.WinterDB, weather.WinterWB, weather.RhoCpK, weather.RhoHfgK, weather.Altitude = WINTER_DB, WINTER_DB - 1, SENSIBLE, LATENT, 600.0
    zones = [[rooms[system.GetZoneData(z).SpaceID[place]] for place in range(1, system.GetZoneData(z).TotalSpacesInZone + 1)]
             for z in range(1, system.GetAirSystem().NumZones + 1)]
    filled = [fill_zone(design, number, each) for number, each in enumerate(zones, 1)]
    everyone = [room for each in zones for room in each]
    fill_system(design, everyone, filled)
    design.Save(system.Index)


def fill_system(design, rooms, zones):
    """Coil, fan, components and the states of the air, from those of the zones and the outdoor air of the people."""
    area, people, airflow = sum(r.area for r in rooms), sum(r.people for r in rooms), sum(z[1] for z in zones)
    outside = 17 * people
    fan_kw = airflow * 0.0007
    fan_heat = fan_kw * 1000 * WATT
    rooms_load = [[sum(z[0][m - 1][h] for z in zones) for h in HOURS] for m in MONTHS]
    vent = [[SENSIBLE * outside * (outdoor(m, h) - ROOM_DB) for h in HOURS] for m in MONTHS]
    latent_vent = LATENT * outside * (OUTDOOR_W - ROOM_W)
    wet = [[sum(sum(z[2][m][h]) for z in zones) + latent_vent for h in HOURS] for m in range(12)]
    sensible = [[max(0.0, 1.05 * rooms_load[m][h] + vent[m][h] + fan_heat) for h in HOURS] for m in range(12)]
    total = [[sensible[m][h] + (wet[m][h] if sensible[m][h] > 0 else 0) for h in HOURS] for m in range(12)]
    peak, month, hour = max((total[m - 1][h], m, h) for m in MONTHS for h in HOURS)
    coil = sensible[month - 1][hour]

    loads = design.DLAir
    at_peak = [room.loads(outdoor(month, hour), hour) for room in rooms]
    clg, lat = added([each[0] for each in at_peak]), added([each[1] for each in at_peak])
    htg = added([[-load for load in room.loads(WINTER_DB, 6, True)[0]] for room in rooms])
    details = added([room.details for room in rooms])
    details[VENTILATION - 1] = outside
    clg[VENTILATION - 1], lat[VENTILATION - 1] = vent[month - 1][hour], latent_vent
    htg[VENTILATION - 1] = SENSIBLE * outside * (70 - WINTER_DB)
    clg[FAN - 1], htg[FAN - 1] = fan_heat, -fan_heat
    clg[DUCTS - 1] = 0.02 * rooms_load[month - 1][hour]
    clg[SAFETY - 1], htg[SAFETY - 1] = 0.03 * rooms_load[month - 1][hour], 0.1 * sum(htg)
    loads.ClgPeakMonth, loads.ClgPeakHour, loads.ClgOutdoorDB, loads.ClgOutdoorWB = month, hour, outdoor(month, hour), design.Weather.WB[month, hour]
    loads.HtgOutdoorDB, loads.HtgOutdoorWB = WINTER_DB, WINTER_DB - 1
    loads.ClgSensible[:], loads.ClgLatent[:], loads.ClgDetail[:] = clg, lat, details
    loads.HtgSensible[:], loads.HtgDetail[:] = htg, details
    loads.ClgTotalSensible, loads.ClgTotalLatent, loads.HtgTotalSensible = sum(clg), sum(lat), sum(htg)
    loads.ClgCoilSensible, loads.ClgCoilLatent, loads.HtgCoilSensible = coil, peak - coil, sum(htg)

    share = min(1.0, outside / airflow)
    mixed_db, mixed_w = ROOM_DB + share * (outdoor(month, hour) - ROOM_DB), ROOM_W + share * (OUTDOOR_W - ROOM_W)
    leaving_db, leaving_w = mixed_db - coil / (SENSIBLE * airflow), mixed_w - (peak - coil) / (LATENT * airflow)
    sizing = design.SSAir
    sizing.ClgPeakMonth, sizing.ClgPeakHour, sizing.ClgOutdoorDB, sizing.ClgOutdoorWB = month, hour, outdoor(month, hour), design.Weather.WB[month, hour]
    sizing.ClgCoilTotal, sizing.ClgCoilSensible, sizing.ClgCoilAirflow, sizing.ClgSensibleHeatRatio = peak, coil, airflow, coil / peak
    sizing.ClgEnteringDB, sizing.ClgLeavingDB, sizing.ClgBypassFactor, sizing.ClgResultingRH = mixed_db, leaving_db, 0.05, 50.0
    sizing.ClgEnteringWB, sizing.ClgLeavingWB = 64.0, 54.0
    sizing.ClgWaterRise, sizing.ClgWaterFlow = 10.0, peak / (500 * 10)
    sizing.HtgOutdoorWB = WINTER_DB - 1
    tons = peak / 12000
    sizing.ClgAreaPerTon, sizing.ClgLoadPerArea, sizing.ClgAirflowPerArea, sizing.ClgAirflowPerTon = area / tons, peak / area, airflow / area, airflow / tons
    sizing.HtgOutdoorDB, sizing.HtgCoilLoad, sizing.HtgCoilAirflow, sizing.HtgLoadPerArea = WINTER_DB, sum(htg), airflow, sum(htg) / area
    sizing.HtgWaterDrop, sizing.HtgWaterFlow = 20.0, sum(htg) / (500 * 20)
    sizing.HtgEnteringDB, sizing.HtgLeavingDB = 60.0, 60.0 + sum(htg) / (SENSIBLE * airflow)
    sizing.SupplyFanAirflow = sizing.SupplyFanStandardAirflow = airflow
    sizing.SupplyFanPower, sizing.SupplyFanBHP, sizing.SupplyFanStatic = fan_kw, fan_kw / 0.746 * 0.9, 3.0
    sizing.VentAirflow, sizing.VentPerArea, sizing.VentPerPerson, sizing.FloorArea, sizing.People = outside, outside / area, outside / people, area, people

    air = design.HLAir
    air.CentCoolTot[:], air.CentCoolSens[:] = total, sensible
    air.CentHeat[:] = [[max(0.0, -(1.05 * rooms_load[m][h] + vent[m][h])) for h in HOURS] for m in range(12)]
    air.AirFlow[:] = [[max(0.3, rooms_load[m][h] / max(rooms_load[month - 1])) * airflow for h in HOURS] for m in range(12)]
    fill_process(design.SPAir, airflow, outside, (mixed_db, mixed_w), (leaving_db, leaving_w), fan_heat, (month, hour))


def fill_process(process, airflow, outside, mixed, leaving, fan_heat, peak):
    """The way of the air at the peak hour; other hours stay empty."""
    states = process.SPAirClg(*peak)
    for point, db, w, flow in ((OUTDOOR, outdoor(*peak), OUTDOOR_W, outside), (MIXED, *mixed, airflow), (COIL, *leaving, airflow),
                               (FAN_OUT, leaving[0] + fan_heat / (SENSIBLE * airflow), leaving[1], airflow), (ROOM, ROOM_DB, ROOM_W, airflow), (RETURN, ROOM_DB + 0.5, ROOM_W, airflow)):
        states.DryBulb[point], states.HumidityRatio[point], states.Airflow[point] = db, w, flow
    for before, point in ((MIXED, COIL), (COIL, FAN_OUT), (FAN_OUT, ROOM), (ROOM, RETURN)):
        states.SensibleChange[point] = SENSIBLE * airflow * (states.DryBulb[point] - states.DryBulb[before])
        states.LatentChange[point] = LATENT * airflow * (states.HumidityRatio[point] - states.HumidityRatio[before])


# ---- a year of the building

FANS, COOLING, HEATING, PUMPS, TOWERS, LIGHTING, PLUGS = 1, 2, 3, 4, 5, 6, 7  # components
ELECTRIC, GAS = 1, 3  # meters
HVAC_ELECTRIC, HVAC_GAS, OTHER_ELECTRIC = 1, 2, 8  # categories
ALL_DAY = 5  # the period of the whole day
KBTU = {ELECTRIC: WATT, GAS: 100.0}  # a kWh, a therm
SOURCE = {ELECTRIC: 3.0, GAS: 1.05}  # round factors from the site to the source


def hour_of_year(hour, area):
    """kWh or therms of each component in an hour of the year, from 0."""
    day, clock = divmod(hour, 24)
    db = 50 - 25 * cos((day - 20) * 2 * pi / 365) + 9 * sin((clock - 9) * pi / 12)
    busy = occupied(clock) if day % 7 not in (5, 6) else 0.1
    kilo = area / 1000
    cooling = max(0.0, db - 58) * 0.1 * kilo * busy
    return {FANS: 0.6 * kilo * busy, COOLING: cooling, HEATING: max(0.0, 58 - db) * 0.003 * kilo, PUMPS: 0.1 * kilo, TOWERS: 0.08 * cooling,
            LIGHTING: 1.0 * kilo * busy, PLUGS: 0.75 * kilo * busy}


def fill_building(project, building):
    results, area = building.GetBuildingResults(), sum(Room(project, index).area for index in range(1, 6))
    rates = {ELECTRIC: project.NewElectricRate(), GAS: project.NewFuelRate()}
    hours = [hour_of_year(hour, area) for hour in range(8760)]
    results.Location, results.CurrSymbol, results.TotFlrArea = "Tarnwater, IL (synthetic)", "$", area
    results.TotClgLoad, results.TotHtgLoad = 18.0, 150.0
    month_of = [month for month in range(12) for _ in range(DAYS_IN[month] * 24)]
    for meter, rate in rates.items():
        rate.Load(1)
        parts = [HEATING] if meter == GAS else [FANS, COOLING, PUMPS, TOWERS, LIGHTING, PLUGS]
        price = rate.FlatRate if rate.RateStyle == 1 else sum(rate.ECRate[step] for step in (1, 2, 3)) / 3  # periods are not told apart
        building.GetBuildingProfile(meter).Power[:] = [sum(hour[part] for part in parts) for hour in hours]
        results.EnergyUnits[meter], results.EnergyConv[meter] = rate.EnergyUnits, rate.EnergyConv
        for part in parts:
            energy = sum(hour[part] for hour in hours)
            results.AnnSiteEnComp[part], results.AnnSrceEnComp[part] = energy * KBTU[meter], energy * KBTU[meter] * SOURCE[meter]
            results.AnnCostComp[part] = energy * price
            results.AnnHVACEnergy[part, meter] = energy
            category = HVAC_GAS if meter == GAS else OTHER_ELECTRIC if part in (LIGHTING, PLUGS) else HVAC_ELECTRIC
            results.AnnEnergyType[category] += energy
            results.AnnSiteEnType[category] += energy * KBTU[meter]
            results.AnnSrceEnType[category] += energy * KBTU[meter] * SOURCE[meter]
            results.AnnCostType[category] += energy * price
        power = building.GetBuildingProfile(meter).Power[:]
        for month in range(12):
            mine = [value for value, of in zip(power, month_of) if of == month]
            demand = max(mine) * rate.DCRate[1] if rate.DCStepUsed[1] else 0.0
            charges = (sum(mine) * price, demand, rate.FixedCharge)
            tax = sum(charges) * rate.TaxRate / 100
            at = meter, month + 1
            results.MonMetEnergy[at], results.MonConsump[(ALL_DAY, *at)], results.MonMaxDemand[(ALL_DAY, *at)] = sum(mine), sum(mine), max(mine)
            results.MonEnCharge[at], results.MonDmdCharge[at], results.MonFixCharge[at] = charges
            results.MonTaxCharge[at], results.MonMetCharge[at] = tax, sum(charges) + tax
            results.MonMetRate[at] = (sum(charges) + tax) / sum(mine) if sum(mine) else 0.0


def blank(results):
    """Sums begin at nothing."""
    for name in ("AnnEnergyType", "AnnSiteEnType", "AnnSrceEnType", "AnnCostType"):
        getattr(results, name)[:] = [0.0] * 13


def calculate(project):
    """What calculation engines do last: results in, flags off, all in one transaction."""
    rooms = {index: Room(project, index) for index in range(1, 6)}
    with tarn.transaction(project):
        for index in (1, 2, 3):
            system = project.NewAirSystem()
            system.Load(index)
            fill_design(project, system, rooms)
            system.GetAirSystem().Sized, system.GetAirSystem().Simulated = True, True
            system.DesHasChanged = system.SimHasChanged = False
            system.Save(True)
        for index in (1, 2):
            plant = project.NewPlant()
            plant.Load(508, index)  # all sections
            plant.General.Sized = plant.General.Simulated = True
            plant.DesHasChanged = plant.SimHasChanged = False
            plant.Save(508, True)
        building = project.NewBuilding()
        building.Load(15, 1)  # all sections
        blank(building.GetBuildingResults())
        fill_building(project, building)
        building.GetBuildingGeneral().Simulated, building.HasChanged = True, False
        building.Save(15, True)


def main():
    project = open_project()
    calculate(project)
    print(f"3 air systems, 2 plants and 1 building calculated; {len(stale(tarn.open_database(project.IndexDBName)))} of them are stale")


if __name__ == "__main__":
    main()

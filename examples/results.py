"""SYNTHETIC results for the small office, so that there is something to store, read and report: rough sums from the
project's areas, U-values, people and lights on sinusoidal days. This is NO load or energy calculation; engines make such
files with methods of their own.

    PYTHONPATH=build/python python3 examples/results.py FOLDER/PREFIX    (run by `make run`)
"""

from __future__ import annotations

from math import cos, exp, pi, sin
from typing import Any, Iterable

import tarn
from job import open_project, stale

Air = tuple[float, float]  # dry-bulb and humidity ratio; sensible and latent; cooling and heating
Serves = tuple[int, int]
Year = list[list[float]]  # by month and hour

MONTHS, HOURS = range(1, 13), range(24)
DAYS_IN = (31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31)
WALLS, ROOFS, SOLAR, GLASS, LIGHTS, EQUIPMENT, PEOPLE, INFILTRATION, VENTILATION, FAN, DUCTS, SAFETY = 1, 2, 3, 4, 11, 13, 14, 15, 17, 18, 20, 22
COMPONENTS = 22
OUTDOOR, MIXED, COIL, FAN_OUT, ROOM = 1, 4, 5, 8, 10  # points of the air's path
ROOM_DB, SUPPLY_DB, WINTER_ROOM_DB, WINTER_DB = 75.0, 58.0, 70.0, -2.0  # F
ROOM_W, OUTDOOR_W = 0.0093, 0.0140  # lb/lb
ALTITUDE, PRESSURE, STANDARD = 600.0, 14.38, 0.978  # ft, psia, density beside that at sea level
SENSIBLE, LATENT = 1.08 * STANDARD, 4840.0 * STANDARD  # Btu/(hr.CFM.F), Btu/(hr.CFM) for each lb/lb
WATT = 3.412  # Btu/hr
DUCT, MARGIN, HEATING_MARGIN = 0.02, 0.03, 0.10  # of the rooms' sensible loads, and of the heating load
OUTDOOR_CFM = 17.0  # a person
SERVES = {8: (1, 1), 16: (1, 0), 6: (0, 1)}  # by type of system: the rooms' loads, their outdoor air


def outdoor(month: int, hour: int) -> float:
    """The design day's dry-bulb, F: 93 at most in July, 20 F above the night."""
    return 93 - 12 * (1 - cos((month - 7) * pi / 6)) - 10 * (1 - cos((hour - 15) * pi / 12))


def occupied(hour: int) -> float:
    return 1.0 if 8 <= hour < 18 else 0.1


def saturated(db: float) -> float:
    """Humidity ratio of saturated air, lb/lb, by Magnus' formula."""
    vapour = 0.08865 * exp(17.62 * (db - 32) / (1.8 * 243.12 + db - 32))  # psia
    return 0.622 * vapour / (PRESSURE - vapour)


def wet_bulb(db: float, w: float) -> float:
    """Wet-bulb, F, by the psychrometric equation."""
    low, high = -60.0, db
    while high - low > 0.01:
        wb = (low + high) / 2
        dry = ((1093 - 0.556 * wb) * saturated(wb) - 0.24 * (db - wb)) / (1093 + 0.444 * db - wb) < w
        low, high = (wb, high) if dry else (low, wb)
    return low


def bypass(entering: Air, leaving: Air) -> float:
    """The share of the air that a coil leaves as it was: how far its line continues beyond the leaving air to saturation."""
    beyond = 0.0
    while beyond < 1:
        db, w = (out + beyond * (out - into) for into, out in zip(entering, leaving))
        if w >= saturated(db):
            break
        beyond += 0.001
    return beyond / (1 + beyond)


def sun(exposure: int, hour: int) -> float:
    """Solar heat through clear glass, Btu/(hr.ft2). Exposures by docs/codes.md: south, west, north and east; each has its own peak hour."""
    peak = {9: (13, 90), 13: (17, 160), 1: (13, 25), 5: (9, 160)}.get(exposure, (13, 0))
    return max(0.0, peak[1] * cos((hour - peak[0]) * pi / 9)) if 6 <= hour <= 19 else 0.0


class Room:
    """The inputs of a space's loads, read from the project."""

    def __init__(self, project: tarn.COM_ProjectData, index: int) -> None:
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

    def loads(self, db: float, hour: int) -> tuple[list[float], list[float]]:
        """Sensible and latent Btu/hr by component, on a sunny day; walls and roofs as if they had no mass."""
        amount = self.details
        sensible, latent = [0.0] * COMPONENTS, [0.0] * COMPONENTS
        sky = 35 * max(0.0, cos((hour - 13) * pi / 14))  # F by which the sun warms a roof
        for place, conductance, warmer in ((WALLS, self.wall_u, 0.15 * sun(self.exposure, hour)), (ROOFS, self.roof_u, sky),
                                           (GLASS, self.glass_u, 0), (INFILTRATION, SENSIBLE, 0)):
            sensible[place - 1] = conductance * amount[place - 1] * (db + warmer - ROOM_DB)
        sensible[SOLAR - 1] = self.glass * self.shade * sun(self.exposure, hour)
        sensible[LIGHTS - 1] = WATT * amount[LIGHTS - 1] * occupied(hour)
        sensible[EQUIPMENT - 1] = WATT * amount[EQUIPMENT - 1] * occupied(hour)
        sensible[PEOPLE - 1], latent[PEOPLE - 1] = 245 * self.people * occupied(hour), 205 * self.people * occupied(hour)
        latent[INFILTRATION - 1] = LATENT * amount[INFILTRATION - 1] * (OUTDOOR_W - ROOM_W)
        return sensible, latent

    def heating(self) -> list[float]:
        """Btu/hr by component at heating design."""
        loads, colder = [0.0] * COMPONENTS, WINTER_ROOM_DB - WINTER_DB
        for place, conductance in ((WALLS, self.wall_u), (ROOFS, self.roof_u), (GLASS, self.glass_u), (INFILTRATION, SENSIBLE)):
            loads[place - 1] = conductance * self.details[place - 1] * colder
        return loads


def added(lists: Iterable[Iterable[float]]) -> list[float]:
    return [sum(column) for column in zip(*lists)] or [0.0] * COMPONENTS


def fill_zone(design: tarn.ADL_AirSystemDesign, number: int, rooms: list[Room], serves: Serves) -> tuple[Year, Year, Year]:
    """The zone's loads of every hour, its sizing and its spaces, as far as the system serves them. Returns loads and
    airflow by month and hour."""
    zone, hourly, sizing = design.DLZone(number), design.HLZone(number), design.TSZone(number).TerminalSizing
    loads, air = serves
    hours = [[[added(part) for part in zip(*(room.loads(outdoor(m, h), h) for room in rooms))] for h in HOURS] for m in MONTHS]
    sensible, latent = ([[[load * loads for load in hours[m][h][part]] for h in HOURS] for m in range(12)] for part in (0, 1))
    zone.Sensible[:], zone.Latent[:] = sensible, latent
    totals, wet = ([[sum(hour) for hour in month] for month in part] for part in (sensible, latent))
    zone.TotalSensible[:], zone.TotalLatent[:] = totals, wet
    peak, month, hour = max((totals[m - 1][h], m, h) for m in MONTHS for h in HOURS)
    winter = [load * loads for load in added([room.heating() for room in rooms])]
    area, people = sum(room.area for room in rooms), sum(room.people for room in rooms)
    outside = OUTDOOR_CFM * people * air

    def flow(load: float) -> float:
        return (1 + DUCT + MARGIN) * load / (SENSIBLE * (ROOM_DB - SUPPLY_DB))

    airflow = max(flow(peak), outside)
    flows = [[max(flow(load), 0.3 * airflow) for load in month] for month in totals]

    zone.HeatingLoads.Sensible[:], zone.HeatingLoads.TotalSensible = winter, sum(winter)
    facts = zone.LoadDetails
    facts.PeakMonth, facts.PeakHour, facts.FloorArea, facts.People = month, hour, area, people
    facts.ClgOutdoorDB, facts.ClgOutdoorWB = outdoor(month, hour), wet_bulb(outdoor(month, hour), OUTDOOR_W)
    facts.ClgThermostat, facts.HtgOutdoorDB, facts.HtgThermostat = ROOM_DB, WINTER_DB, WINTER_ROOM_DB
    facts.ClgDetail[:] = facts.HtgDetail[:] = added([room.details for room in rooms])

    sizing.PeakMonth, sizing.PeakHour, sizing.PeakSensible = month, hour, peak
    sizing.PeakTotal, sizing.HeatingLoad = peak + wet[month - 1][hour], sum(winter)
    sizing.DesignAirflow, sizing.MinAirflow, sizing.AirflowPerArea, sizing.FloorArea = airflow, 0.3 * airflow, airflow / area, area
    sizing.People, sizing.VentAirflow = people, outside

    hourly.OutdoorDB[:] = [[outdoor(m, h) for h in HOURS] for m in MONTHS]
    hourly.ZoneDB[:], hourly.ZoneRH[:] = [[ROOM_DB] * 24] * 12, [[50.0] * 24] * 12
    hourly.ZoneSensible[:], hourly.AirFlow[:] = totals, flows
    for place, room in enumerate(rooms, 1):
        fill_space(zone.DLSpace(place), room, month, hour, loads)
    return totals, wet, flows


def fill_space(loads: tarn.ADL_SpaceLoads, room: Room, month: int, hour: int, share: float) -> None:
    loads.SpaceID, loads.Name, loads.Multiplier, loads.FloorArea, loads.People = room.index, room.name, 1, room.area, room.people
    loads.PeakMonth, loads.PeakHour = month, hour
    sensible, latent = ([load * share for load in part] for part in room.loads(outdoor(month, hour), hour))
    winter = [load * share for load in room.heating()]
    loads.ClgSensible[:], loads.ClgLatent[:], loads.ClgDetail[:] = sensible, latent, room.details
    loads.HtgLoad[:], loads.HtgDetail[:], loads.HtgTotal = winter, room.details, sum(winter)
    loads.ClgTotalSensible, loads.ClgTotalLatent = sum(sensible), sum(latent)
    loads.Airflow = sum(sensible) / (SENSIBLE * (ROOM_DB - SUPPLY_DB))


def fill_design(project: tarn.COM_ProjectData, system: tarn.AS_AirSystem, rooms: dict[int, Room]) -> Air:
    """The design results of an air system, whole. Returns its cooling and heating peaks, Btu/hr."""
    design = project.NewAirSystemDesign()
    design.AirSystem = system
    weather = design.Weather
    weather.DB[:] = [[outdoor(m, h) for h in HOURS] for m in MONTHS]
    weather.WB[:] = [[wet_bulb(outdoor(m, h), min(OUTDOOR_W, 0.0140 * outdoor(m, h) / 93)) for h in HOURS] for m in MONTHS]
    weather.WinterDB, weather.WinterWB, weather.RhoCpK, weather.RhoHfgK, weather.Altitude = WINTER_DB, WINTER_DB - 1, SENSIBLE, LATENT, ALTITUDE
    serves = SERVES[system.GetAirSystem().SystemType]
    zones = [[rooms[system.GetZoneData(z).SpaceID[place]] for place in range(1, system.GetZoneData(z).TotalSpacesInZone + 1)]
             for z in range(1, system.GetAirSystem().NumZones + 1)]
    filled = [fill_zone(design, number, each, serves) for number, each in enumerate(zones, 1)]
    peaks = fill_system(design, [room for each in zones for room in each], filled, serves)
    design.Save(system.Index)
    return peaks


def fill_system(design: tarn.ADL_AirSystemDesign, rooms: list[Room], zones: list[tuple[Year, Year, Year]], serves: Serves) -> Air:
    """Coils, fan, components and the states of the air, from those of the zones and the outdoor air of the people."""
    served, air = serves
    area, people = sum(room.area for room in rooms), sum(room.people for room in rooms)
    dry, wet, flow = ([[sum(zone[part][m][h] for zone in zones) for h in HOURS] for m in range(12)] for part in (0, 1, 2))
    airflow = max(max(month) for month in flow)  # the zones' peaks are not all in one hour
    fan_kw = airflow * 0.0007
    outside = OUTDOOR_CFM * people * air

    def coil_loads(m: int, h: int) -> Air:
        """Sensible and latent, of the fan, the outdoor air and the rooms with ducts and margin."""
        open_air = outside if occupied(h) == 1 else 0.0
        sensible = (1 + DUCT + MARGIN) * dry[m][h] + SENSIBLE * open_air * (outdoor(m + 1, h) - ROOM_DB) + fan_kw * 1000 * WATT
        return (sensible, wet[m][h] + LATENT * open_air * (OUTDOOR_W - ROOM_W)) if sensible > 0 else (0.0, 0.0)

    coils = [[coil_loads(m, h) for h in HOURS] for m in range(12)]
    peak, month, hour = max((sum(coils[m - 1][h]), m, h) for m in MONTHS for h in HOURS)
    sensible, latent = coils[month - 1][hour]
    air_now = flow[month - 1][hour]
    db, fan_rise = outdoor(month, hour), fan_kw * 1000 * WATT / (SENSIBLE * air_now)
    share = min(1.0, outside / air_now)
    mixed = ROOM_DB + share * (db - ROOM_DB), ROOM_W + share * (OUTDOOR_W - ROOM_W)
    leaving = mixed[0] - sensible / (SENSIBLE * air_now), mixed[1] - latent / (LATENT * air_now)
    heating = fill_components(design.DLAir, rooms, serves, (month, hour), (sensible, latent), fan_kw * 1000 * WATT)

    sizing, tons = design.SSAir, peak / 12000
    sizing.ClgPeakMonth, sizing.ClgPeakHour, sizing.ClgOutdoorDB, sizing.ClgOutdoorWB = month, hour, db, wet_bulb(db, OUTDOOR_W)
    sizing.ClgCoilTotal, sizing.ClgCoilSensible, sizing.ClgCoilAirflow, sizing.ClgSensibleHeatRatio = peak, sensible, air_now, sensible / peak
    sizing.ClgEnteringDB, sizing.ClgEnteringWB = mixed[0], wet_bulb(*mixed)
    sizing.ClgLeavingDB, sizing.ClgLeavingWB, sizing.ClgResultingRH = leaving[0], wet_bulb(*leaving), 50.0
    sizing.ClgBypassFactor = bypass(mixed, leaving)
    sizing.ClgWaterRise, sizing.ClgWaterFlow = 10.0, peak / (500 * 10)
    sizing.ClgAreaPerTon, sizing.ClgLoadPerArea, sizing.ClgAirflowPerArea, sizing.ClgAirflowPerTon = area / tons, peak / area, air_now / area, air_now / tons
    winter_mix = WINTER_ROOM_DB + min(1.0, outside / airflow) * (WINTER_DB - WINTER_ROOM_DB)
    sizing.HtgOutdoorDB, sizing.HtgOutdoorWB, sizing.HtgCoilLoad, sizing.HtgCoilAirflow = WINTER_DB, WINTER_DB - 1, heating, airflow
    sizing.HtgWaterDrop, sizing.HtgWaterFlow, sizing.HtgLoadPerArea = 20.0, heating / (500 * 20), heating / area
    sizing.HtgEnteringDB, sizing.HtgLeavingDB = winter_mix, winter_mix + heating / (SENSIBLE * airflow)
    sizing.SupplyFanAirflow, sizing.SupplyFanStandardAirflow = airflow, airflow * STANDARD
    sizing.SupplyFanPower, sizing.SupplyFanBHP, sizing.SupplyFanStatic = fan_kw, fan_kw / 0.746 * 0.9, 3.0
    sizing.VentAirflow, sizing.VentPerArea, sizing.VentPerPerson, sizing.FloorArea, sizing.People = outside, outside / area, outside / people, area, people

    table = design.HLAir
    table.CentCoolTot[:], table.CentCoolSens[:] = [[sum(pair) for pair in month] for month in coils], [[pair[0] for pair in month] for month in coils]
    table.AirFlow[:] = flow
    fan_leaving = leaving[0] + fan_rise, leaving[1]
    fill_process(design.SPAir.SPAirClg(month, hour), (outside, air_now), ((OUTDOOR, db, OUTDOOR_W), (MIXED, *mixed), (COIL, *leaving),
                                                                         (FAN_OUT, *fan_leaving), (ROOM, ROOM_DB, ROOM_W)))
    return peak, heating


def fill_components(loads: tarn.ADL_DLAir, rooms: list[Room], serves: Serves, peak: tuple[int, int], coil: Air, fan_heat: float) -> float:
    """The system's loads by component. Returns the heating load."""
    served, air = serves
    month, hour = peak
    at_peak = [room.loads(outdoor(month, hour), hour) for room in rooms]
    clg, lat = ([load * served for load in added([each[part] for each in at_peak])] for part in (0, 1))
    htg = [load * served for load in added([room.heating() for room in rooms])]
    details = [amount * served for amount in added([room.details for room in rooms])]
    rooms_load, outside = sum(clg), OUTDOOR_CFM * sum(room.people for room in rooms) * air
    details[VENTILATION - 1] = outside
    clg[VENTILATION - 1], lat[VENTILATION - 1] = SENSIBLE * outside * (outdoor(month, hour) - ROOM_DB), LATENT * outside * (OUTDOOR_W - ROOM_W)
    htg[VENTILATION - 1] = SENSIBLE * outside * (WINTER_ROOM_DB - WINTER_DB)
    clg[FAN - 1], clg[DUCTS - 1], clg[SAFETY - 1] = fan_heat, DUCT * rooms_load, MARGIN * rooms_load
    htg[SAFETY - 1] = HEATING_MARGIN * sum(htg)
    loads.ClgPeakMonth, loads.ClgPeakHour, loads.ClgOutdoorDB, loads.ClgOutdoorWB = month, hour, outdoor(month, hour), wet_bulb(outdoor(month, hour), OUTDOOR_W)
    loads.HtgOutdoorDB, loads.HtgOutdoorWB = WINTER_DB, WINTER_DB - 1
    loads.ClgSensible[:], loads.ClgLatent[:], loads.ClgDetail[:] = clg, lat, details
    loads.HtgSensible[:], loads.HtgDetail[:] = htg, details
    loads.ClgTotalSensible, loads.ClgTotalLatent, loads.HtgTotalSensible = sum(clg), sum(lat), sum(htg)
    loads.ClgCoilSensible, loads.ClgCoilLatent, loads.HtgCoilSensible = *coil, sum(htg)
    return sum(htg)


def fill_process(states: Any, flows: Air, points: Iterable[tuple[int, float, float]]) -> None:
    """The states of the air at the peak hour, in the order of its path; other hours stay empty."""
    outside, airflow = flows
    before = None
    for point, db, w in points:
        states.DryBulb[point], states.HumidityRatio[point], states.Airflow[point] = db, w, outside if point == OUTDOOR else airflow
        if before:
            states.SensibleChange[point], states.LatentChange[point] = SENSIBLE * airflow * (db - before[0]), LATENT * airflow * (w - before[1])
        before = (db, w) if point != OUTDOOR else None


# ---- a year of the building

FANS, COOLING, HEATING, PUMPS, TOWERS, LIGHTING, PLUGS, PARKING = 1, 2, 3, 4, 5, 6, 7, 8  # components
ELECTRIC, GAS = 1, 3  # meters
HVAC_ELECTRIC, HVAC_GAS, OTHER_ELECTRIC = 1, 2, 8  # categories
ALL_DAY = 5  # the period of the whole day
KBTU = {ELECTRIC: WATT, GAS: 100.0}  # a kWh, a therm
BOILER = 0.8


class Office:
    """The inputs of the building's energy, read from the project."""

    def __init__(self, project: tarn.COM_ProjectData, rooms: list[Room]) -> None:
        self.area = sum(room.area for room in rooms)
        self.people = sum(room.people for room in rooms)
        self.conductance = sum(room.heating()[place - 1] for room in rooms for place in (WALLS, ROOFS, GLASS, INFILTRATION)) / (WINTER_ROOM_DB - WINTER_DB)
        chillers = [project.NewChiller() for _ in range(2)]
        for index, chiller in enumerate(chillers, 1):
            chiller.Load(index)
        self.chiller_kw = sum(c.CoolingMode.FLPower for c in chillers) / sum(c.CoolingMode.FLCapacity for c in chillers)  # a ton

    def hour(self, number: int, parking: float) -> dict[int, float]:
        """kWh or therms of each component in an hour of the year, from 0."""
        day, clock = divmod(number, 24)
        db = 50 - 25 * cos((day - 20) * 2 * pi / 365) + 9 * sin((clock - 9) * pi / 12)
        busy = occupied(clock) if day % 7 < 5 else 0.1
        kilo = self.area / 1000
        gains = busy * (450 * self.people + WATT * 1.75 * self.area)
        tons = max(0.0, gains + self.conductance * (db - 68)) / 12000 if db > 55 else 0.0
        return {FANS: 0.6 * kilo * busy, COOLING: tons * self.chiller_kw, HEATING: max(0.0, self.conductance * (58 - db)) / 1e5 / BOILER,
                PUMPS: 0.1 * kilo, TOWERS: 0.06 * tons, LIGHTING: kilo * busy, PLUGS: 0.75 * kilo * busy, PARKING: parking if clock < 6 or clock > 18 else 0.0}


def price_by_hour(project: tarn.COM_ProjectData, rate: tarn.URT_UtilityRate) -> list[float]:
    """What a unit of energy costs in each hour of a week, from Monday: by the rate's periods, where it has some."""
    if rate.RateStyle == 1:
        return [rate.FlatRate] * 168
    prices = {rate.ECPeriod[step]: rate.ECRate[step] for step in range(1, 15) if rate.ECStepUsed[step]}
    periods = project.NewSchedule()
    periods.Load(rate.TODSchedule)
    return [prices[periods.HourlyValue[1 if day < 5 else 2, clock]] for day in range(7) for clock in HOURS]


def fill_building(project: tarn.COM_ProjectData, building: tarn.BLD_Building, rooms: list[Room], peaks: list[Air]) -> None:
    results, inputs, office = building.GetBuildingResults(), building.GetBuildingInputs(), Office(project, rooms)
    hours = [office.hour(number, inputs.MEMaxPower[1]) for number in range(8760)]
    results.Location, results.CurrSymbol, results.TotFlrArea = "no place, SYNTHETIC", "$", office.area
    results.TotClgLoad, results.TotHtgLoad = sum(peak[0] for peak in peaks) / 12000, sum(peak[1] for peak in peaks) / 1000
    source = {ELECTRIC: 100 / inputs.ElecGenEfficiency, GAS: 1.0}
    for name in ("AnnEnergyType", "AnnSiteEnType", "AnnSrceEnType", "AnnCostType"):
        getattr(results, name)[:] = [0.0] * 13
    for meter, rate in ((ELECTRIC, project.NewElectricRate()), (GAS, project.NewFuelRate())):
        rate.Load(inputs.UtilityRate[meter])
        parts = [HEATING] if meter == GAS else [FANS, COOLING, PUMPS, TOWERS, LIGHTING, PLUGS, PARKING]
        week = price_by_hour(project, rate)
        results.EnergyUnits[meter], results.EnergyConv[meter] = rate.EnergyUnits, rate.EnergyConv
        for part in parts:
            energy, cost = sum(hour[part] for hour in hours), sum(hour[part] * week[number % 168] for number, hour in enumerate(hours))
            site = energy * KBTU[meter]
            results.AnnSiteEnComp[part], results.AnnSrceEnComp[part], results.AnnCostComp[part] = site, site * source[meter], cost
            results.AnnHVACEnergy[part, meter] = energy
            category = HVAC_GAS if meter == GAS else OTHER_ELECTRIC if part in (LIGHTING, PLUGS, PARKING) else HVAC_ELECTRIC
            results.AnnEnergyType[category] += energy
            results.AnnSiteEnType[category] += site
            results.AnnSrceEnType[category] += site * source[meter]
            results.AnnCostType[category] += cost
        power = [sum(hour[part] for part in parts) for hour in hours]
        building.GetBuildingProfile(meter).Power[:] = power
        fill_bills(results, meter, rate, power, week)


def fill_bills(results: Any, meter: int, rate: tarn.URT_UtilityRate, power: list[float], week: list[float]) -> None:
    start = 0
    for month, days in enumerate(DAYS_IN, 1):
        mine = power[start:start + 24 * days]
        energy = sum(value * week[(start + number) % 168] for number, value in enumerate(mine))
        start += 24 * days
        demand = max(mine) * rate.DCRate[1] if rate.DCStepUsed[1] else 0.0
        charges = (energy, demand, rate.FixedCharge)
        tax = sum(charges) * rate.TaxRate / 100
        at = meter, month
        results.MonMetEnergy[at], results.MonConsump[(ALL_DAY, *at)], results.MonMaxDemand[(ALL_DAY, *at)] = sum(mine), sum(mine), max(mine)
        results.MonEnCharge[at], results.MonDmdCharge[at], results.MonFixCharge[at] = charges
        results.MonTaxCharge[at], results.MonMetCharge[at] = tax, sum(charges) + tax
        results.MonMetRate[at] = (sum(charges) + tax) / sum(mine) if sum(mine) else 0.0


def calculate(project: tarn.COM_ProjectData) -> Air:
    """What calculation engines do last: results in, flags off, all in one transaction."""
    rooms = {index: Room(project, index) for index in range(1, 6)}
    peaks = []
    with tarn.transaction(project):
        for index in (1, 2, 3):
            system = project.NewAirSystem()
            system.Load(index)
            peaks.append(fill_design(project, system, rooms))
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
        fill_building(project, building, list(rooms.values()), peaks)
        building.GetBuildingGeneral().Simulated, building.HasChanged = True, False
        building.Save(15, True)
    return sum(peak[0] for peak in peaks) / 12000, sum(sum(month) for month in building.GetBuildingResults().MonMetCharge[:])


def main() -> None:
    project = open_project()
    calculate(project)
    print("weather: assumed design days of 93 F and -2 F and an assumed year, at 600 ft; that of section 6 is not yet there")
    print(f"3 air systems, 2 plants and 1 building calculated; {len(stale(tarn.open_database(project.IndexDBName)))} of them are stale")


if __name__ == "__main__":
    main()

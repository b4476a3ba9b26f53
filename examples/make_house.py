"""Writes a small gbXML house, as a drawing program would: two rooms and an attic, in SI units.

    python3 examples/make_house.py house.xml
"""

from __future__ import annotations

import pathlib
import sys
from collections.abc import Sequence

Point = Sequence[float]

HEAD = """<?xml version="1.0" encoding="UTF-8"?>
<gbXML xmlns="http://www.gbxml.org/schema" version="6.01" lengthUnit="Meters" areaUnit="SquareMeters" volumeUnit="CubicMeters" temperatureUnit="C" useSIUnitsForResults="true">
"""


def loop(points: Sequence[Point]) -> str:
    """A PlanarGeometry of points (x, y, z)."""
    coordinates = ["".join(f"<Coordinate>{number}</Coordinate>" for number in point) for point in points]
    return "<PlanarGeometry><PolyLoop>" + "".join(f"<CartesianPoint>{c}</CartesianPoint>" for c in coordinates) + "</PolyLoop></PlanarGeometry>\n"


def rectangle(azimuth: float, tilt: float, width: float, height: float) -> str:
    return (f"<RectangularGeometry><Azimuth>{azimuth}</Azimuth><CartesianPoint><Coordinate>0</Coordinate><Coordinate>0</Coordinate>"
            f"<Coordinate>0</Coordinate></CartesianPoint><Tilt>{tilt}</Tilt><Height>{height}</Height><Width>{width}</Width></RectangularGeometry>\n")


def surface(id: str, kind: str, spaces: Sequence[str], construction: str, points: Sequence[Point], inside: str = "") -> str:
    """One surface; `inside` is its RectangularGeometry and its openings."""
    beside = "".join(f'<AdjacentSpaceId spaceIdRef="{space}"/>' for space in spaces)
    return f'<Surface id="{id}" surfaceType="{kind}" constructionIdRef="{construction}">{beside}{loop(points)}{inside}</Surface>\n'


def opening(id: str, kind: str, reference: str, points: Sequence[Point], setback: str = "") -> str:
    return f'<Opening id="{id}" openingType="{kind}" {reference}>{setback}{loop(points)}</Opening>\n'


def space(id: str, name: str, zone: str, area: float, height: float, loads: str = "", condition: str = "HeatedAndCooled") -> str:
    return (f'<Space id="{id}" zoneIdRef="{zone}" conditionType="{condition}" lightScheduleIdRef="sch-day" peopleScheduleIdRef="sch-day">'
            f"<Name>{name}</Name><Area>{area}</Area><Volume>{area * height}</Volume>{loads}</Space>\n")


LOADS = """<PeopleNumber unit="NumberOfPeople">2</PeopleNumber>
<PeopleHeatGain unit="WattPerPerson" heatGainType="Sensible">75</PeopleHeatGain>
<PeopleHeatGain unit="WattPerPerson" heatGainType="Latent">55</PeopleHeatGain>
<LightPowerPerArea unit="WattPerSquareMeter">8</LightPowerPerArea>
<EquipPowerPerArea unit="WattPerSquareMeter">5</EquipPowerPerArea>
<AirChangesPerHour>0.5</AirChangesPerHour>
"""

LIBRARY = """<Construction id="con-wall"><Name>Brick wall</Name><U-value unit="WPerSquareMeterK">0.5</U-value><LayerId layerIdRef="lay-wall"/></Construction>
<Layer id="lay-wall"><MaterialId materialIdRef="mat-brick"/><MaterialId materialIdRef="mat-wool"/><MaterialId materialIdRef="mat-board"/></Layer>
<Material id="mat-brick"><Name>Brick</Name><Thickness unit="Millimeters">100</Thickness><Conductivity unit="WPerMeterK">0.89</Conductivity><Density unit="KgPerCubicM">1920</Density><SpecificHeat unit="JPerKgK">790</SpecificHeat></Material>
<Material id="mat-wool"><Name>Mineral wool</Name><Thickness unit="Millimeters">80</Thickness><Conductivity unit="WPerMeterK">0.045</Conductivity><Density unit="KgPerCubicM">30</Density><SpecificHeat unit="JPerKgK">840</SpecificHeat></Material>
<Material id="mat-board"><Name>Gypsum board</Name><R-value unit="SquareMeterKPerW">0.08</R-value></Material>
<Construction id="con-roof"><Name>Tiled roof</Name><U-value unit="WPerSquareMeterK">0.4</U-value></Construction>
<Construction id="con-ceiling"><Name>Ceiling</Name><U-value unit="WPerSquareMeterK">0.3</U-value></Construction>
<Construction id="con-door"><Name>Oak door</Name><U-value unit="WPerSquareMeterK">2.2</U-value></Construction>
<Construction id="con-slab"><Name>Slab</Name><U-value unit="WPerSquareMeterK">0.6</U-value></Construction>
<WindowType id="win-double"><Name>Double glass</Name><U-value unit="WPerSquareMeterK">2.8</U-value><SolarHeatGainCoeff unit="Fraction" solarIncidentAngle="0">0.609</SolarHeatGainCoeff></WindowType>
<Schedule id="sch-day" type="Fraction"><Name>Daytime</Name>
<YearSchedule id="ys-1"><BeginDate>2026-01-01</BeginDate><EndDate>2026-06-30</EndDate><WeekScheduleId weekScheduleIdRef="wk-1"/></YearSchedule>
<YearSchedule id="ys-2"><BeginDate>2026-07-01</BeginDate><EndDate>2026-12-31</EndDate><WeekScheduleId weekScheduleIdRef="wk-2"/></YearSchedule></Schedule>
<WeekSchedule id="wk-1" scheduleType="Fraction"><Day dayType="Weekday" dayScheduleIdRef="day-work"/><Day dayType="WeekendOrHoliday" dayScheduleIdRef="day-off"/></WeekSchedule>
<WeekSchedule id="wk-2" scheduleType="Fraction"><Day dayType="All" dayScheduleIdRef="day-off"/><Day dayType="Mon" dayScheduleIdRef="day-work"/></WeekSchedule>
""" + '<DaySchedule id="day-work" scheduleType="Fraction"><Name>Work</Name>' + "".join(
    f"<ScheduleValue>{value}</ScheduleValue>" for value in [0] * 8 + [0.5] + [1] * 9 + [0] * 6) + """</DaySchedule>
<DaySchedule id="day-off" scheduleType="Fraction"><Name>Off</Name><ScheduleValue>0.1</ScheduleValue><ScheduleValue>0.3</ScheduleValue></DaySchedule>
"""

SYSTEM = """<Zone id="zone-1"><Name>Ground floor</Name><DesignHeatT unit="C">21</DesignHeatT><DesignCoolT unit="C">25</DesignCoolT><ZoneHVACEquipmentId zoneHVACEquipmentIdRef="box-1"/></Zone>
<ZoneHVACEquipment id="box-1" zoneHVACEquipmentType="VAVBox" heatingCoilType="HotWater"><Name>Box</Name><AirSystemId airSystemIdRef="ahu-1"/></ZoneHVACEquipment>
<AirSystem id="ahu-1" preheatCoilType="None" heatingCoilType="HotWater" coolingCoilType="ChilledWater"><Name>Air handler</Name><HeatExchanger heatExchangerType="Enthalpy"/><Fan fanType="VariableVolume"/><HydronicLoopId hydronicLoopIdRef="loop-1" hydronicLoopType="HotWater"/></AirSystem>
<HydronicLoop id="loop-1" loopType="HotWater" fluidType="Water"><Name>Heating water</Name></HydronicLoop>
"""


def house() -> str:
    """Two rooms of 5 x 4 x 3 m side by side along x, under one attic of 10 x 4 m with a roof to north and south."""
    def window(id: str, x: float, z: float) -> str:
        corners = [(x, 0, z), (x + 1.5, 0, z), (x + 1.5, 0, z + 1.2), (x, 0, z + 1.2)]
        return opening(id, "FixedWindow", 'windowTypeIdRef="win-double"', corners, '<Setback unit="Millimeters">150</Setback>')

    door = opening("op-door", "NonSlidingDoor", 'constructionIdRef="con-door"', [(3.5, 0, 0), (4.4, 0, 0), (4.4, 0, 2.1), (3.5, 0, 2.1)])
    surfaces = [
        surface("su-s1", "ExteriorWall", ["sp-1"], "con-wall", [(0, 0, 0), (5, 0, 0), (5, 0, 3), (0, 0, 3)],
                rectangle(180, 90, 5, 3) + window("op-w1", 0.5, 1) + window("op-w2", 0.5, 2.5 - 2.0) + door),
        surface("su-s2", "ExteriorWall", ["sp-2"], "con-wall", [(5, 0, 0), (10, 0, 0), (10, 0, 3), (5, 0, 3)],
                rectangle(180, 90, 5, 3) + window("op-w3", 6, 1)),
        surface("su-n1", "ExteriorWall", ["sp-1"], "con-wall", [(5, 4, 0), (0, 4, 0), (0, 4, 3), (5, 4, 3)], rectangle(0, 90, 5, 3)),
        surface("su-n2", "ExteriorWall", ["sp-2"], "con-wall", [(10, 4, 0), (5, 4, 0), (5, 4, 3), (10, 4, 3)], rectangle(0, 90, 5, 3)),
        surface("su-w", "ExteriorWall", ["sp-1"], "con-wall", [(0, 4, 0), (0, 0, 0), (0, 0, 3), (0, 4, 3)], rectangle(270, 90, 4, 3)),
        surface("su-e", "ExteriorWall", ["sp-2"], "con-wall", [(10, 0, 0), (10, 4, 0), (10, 4, 3), (10, 0, 3)], rectangle(90, 90, 4, 3)),
        surface("su-i", "InteriorWall", ["sp-1", "sp-2"], "con-wall", [(5, 0, 0), (5, 4, 0), (5, 4, 3), (5, 0, 3)]),
        surface("su-f1", "SlabOnGrade", ["sp-1"], "con-slab", [(0, 0, 0), (0, 4, 0), (5, 4, 0), (5, 0, 0)]),
        surface("su-f2", "SlabOnGrade", ["sp-2"], "con-slab", [(5, 0, 0), (5, 4, 0), (10, 4, 0), (10, 0, 0)]),
        surface("su-c1", "Ceiling", ["sp-1", "sp-attic"], "con-ceiling", [(0, 0, 3), (5, 0, 3), (5, 4, 3), (0, 4, 3)]),
        surface("su-c2", "Ceiling", ["sp-2", "sp-attic"], "con-ceiling", [(5, 0, 3), (10, 0, 3), (10, 4, 3), (5, 4, 3)]),
        surface("su-r1", "Roof", ["sp-attic"], "con-roof", [(0, 0, 3), (10, 0, 3), (10, 2, 5), (0, 2, 5)]),
        surface("su-r2", "Roof", ["sp-attic"], "con-roof", [(10, 4, 3), (0, 4, 3), (0, 2, 5), (10, 2, 5)]),
        surface("su-g1", "ExteriorWall", ["sp-attic"], "con-wall", [(10, 0, 3), (10, 4, 3), (10, 2, 5)]),
        surface("su-g2", "ExteriorWall", ["sp-attic"], "con-wall", [(0, 4, 3), (0, 0, 3), (0, 2, 5)]),
    ]
    location = ("<Location><Name>Golden, Colorado</Name><ZipcodeOrPostalCode>80401</ZipcodeOrPostalCode><Longitude>-105.2</Longitude>"
                "<Latitude>39.7</Latitude><Elevation>1730</Elevation><CADModelAzimuth>0</CADModelAzimuth></Location>\n")
    spaces = (space("sp-1", "Kitchen", "zone-1", 20, 3, LOADS) + space("sp-2", "Hall", "zone-1", 20, 3, LOADS) +
              space("sp-attic", "Attic", "zone-2", 40, 1, condition="Unconditioned"))
    campus = f'<Campus id="campus-1">{location}<Building id="b-1" buildingType="SingleFamily"><Area>80</Area>{spaces}</Building>{"".join(surfaces)}</Campus>\n'
    return HEAD + campus + LIBRARY + SYSTEM + "</gbXML>\n"


if __name__ == "__main__":
    pathlib.Path(sys.argv[1]).write_text(house(), encoding="utf-8")

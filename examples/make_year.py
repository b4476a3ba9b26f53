"""A year of hourly weather of an invented place, as an EPW file.

Model, all times local standard:
  sun      declination and hour angle by Cooper's formula (Solar Energy 12, 1969), no equation of time
  sky      direct normal I0 x 0.7 ^ (m ^ 0.678) with the air mass m = 1 / sin(altitude) (Meinel and Meinel, Applied Solar
           Energy, 1976), times (1 - 0.95 cover); diffuse 12 % of what falls on the air from above, 22 % under full cover
  cover    0 to 1, from a walk that forgets half of itself in a day
  air      yearly wave around 49 F with its coldest day on 24 January, daily wave with its peak at 15 h that clouds flatten,
           and fronts: a walk that forgets half of itself in two days
  vapour   dew point below the day's coolest air by a depression that clouds lessen, at most 24 C
  pressure standard at 600 ft, with the fronts
The walks come from one seed, so that the same file comes every time.

    python3 make_year.py FILE.epw
"""

import math
import random
import sys
from typing import Iterator

LATITUDE, LONGITUDE, ZONE, ELEVATION_M = 41.0, -88.0, -6.0, 183.0
DAMPEST = 24.0  # C, dew point
DAYS_IN = [31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31]


def walk(count: int, half_life_h: float, deviation: float, rng: random.Random) -> list[float]:
    """A random walk around 0 with a half-life of its memory."""
    keep = 0.5 ** (1 / half_life_h)
    value, values = 0.0, []
    for _ in range(count):
        value = keep * value + rng.gauss(0, deviation * math.sqrt(1 - keep * keep))
        values.append(value)
    return values


def sine_of_altitude(day: int, hour: int) -> float:
    """Sine of the sun's altitude in the middle of the hour that ends at `hour`. Solar time differs from local time only by the
    longitude within the time zone."""
    declination = math.radians(23.45) * math.sin(2 * math.pi * (284 + day) / 365)
    angle = math.radians(15 * (hour - 0.5 - 12) + LONGITUDE - 15 * ZONE)
    latitude = math.radians(LATITUDE)
    return (math.sin(latitude) * math.sin(declination)
            + math.cos(latitude) * math.cos(declination) * math.cos(angle))


def solar(day: int, hour: int, cover: float) -> tuple[float, float]:
    """Direct normal and diffuse horizontal, W/m2."""
    sine = sine_of_altitude(day, hour)
    if sine < 0.02:
        return 0.0, 0.0
    outside = 1367 * (1 + 0.033 * math.cos(2 * math.pi * day / 365))
    clear = outside * 0.7 ** ((1 / sine) ** 0.678)
    direct = clear * (1 - 0.95 * cover)
    return direct, (0.12 + 0.1 * cover) * outside * sine


def hours() -> Iterator[tuple[int, int, float, float, float, float, float]]:
    rng = random.Random(1)
    cover_walk, fronts = walk(8760, 24, 0.45, rng), walk(8760, 48, 4.0, rng)
    pressure = 101325 * (1 - 2.25577e-5 * ELEVATION_M) ** 5.2559
    at = 0
    for day in range(1, 366):
        season = 9.5 - 14.0 * math.cos(2 * math.pi * (day - 24) / 365)
        for hour in range(1, 25):
            cover = min(1.0, max(0.0, 0.5 + cover_walk[at]))
            swing = 6.5 * (1 - 0.6 * cover)
            dry_bulb = season + fronts[at] + swing * math.cos(2 * math.pi * (hour - 15) / 24)
            dew_point = min(DAMPEST, season + fronts[at] - swing - 4.0 * (1 - cover))
            direct, diffuse = solar(day, hour, cover)
            yield day, hour, dry_bulb, min(dew_point, dry_bulb), pressure - 60 * fronts[at], direct, diffuse
            at += 1


def humidity(dry_bulb: float, dew_point: float) -> int:
    """Relative humidity, per cent, by the Magnus formula."""
    vapour = [math.exp(17.62 * t / (243.12 + t)) for t in (dew_point, dry_bulb)]
    return min(100, round(100 * vapour[0] / vapour[1]))


def main(path: str) -> None:
    months = [(month, day) for month, days in enumerate(DAYS_IN, 1) for day in range(1, days + 1)]
    with open(path, "w", encoding="utf-8") as out:
        out.write(f"LOCATION,Tarnwater,IL,USA,MODEL,000001,{LATITUDE},{LONGITUDE},{ZONE},{ELEVATION_M}\n"
                  "DESIGN CONDITIONS,0\nTYPICAL/EXTREME PERIODS,0\nGROUND TEMPERATURES,0\n"
                  "HOLIDAYS/DAYLIGHT SAVINGS,No,0,0,0\nCOMMENTS 1,computed by examples/make_year.py\nCOMMENTS 2,\n"
                  "DATA PERIODS,1,1,Data,Monday,1/1,12/31\n")
        for day, hour, dry_bulb, dew_point, pressure, direct, diffuse in hours():
            month, date = months[day - 1]
            out.write(f"2001,{month},{date},{hour},0,?9,{dry_bulb:.1f},{dew_point:.1f},{humidity(dry_bulb, dew_point)},"
                      f"{pressure:.0f},0,0,0,0,{direct:.0f},{diffuse:.0f}" + ",0" * 19 + "\n")


if __name__ == "__main__":
    main(sys.argv[1])

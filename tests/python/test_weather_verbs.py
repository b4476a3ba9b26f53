"""Weather from the command line."""

import json
import math
import struct
import unittest
from xml.etree import ElementTree

from command_line import CommandLineTest, GOLDEN, reads


class TestWeather(CommandLineTest):
    def test_notes_that_say_the_same_come_once(self):
        year = self.at / "headers.epw"
        lines = self.made_year().read_text().splitlines(keepends=True)
        year.write_text("".join([lines[0], *["REMARK,none\n"] * 5, *lines[1:]]))
        notes = [line for line in self.tarn("weather", "show", str(year)).stderr.splitlines() if "REMARK" in line]
        self.assertEqual(len(notes), 1, notes)
        self.assertIn("(5 times)", notes[0])

    def test_weather(self):
        year = self.made_year()
        self.tarn("air-systems", "new", "--type", "VAV")
        run = self.tarn("weather", "import", str(year))
        self.assertIn("every system, plant and building is stale", run.stdout)
        self.assertIn("no readable design conditions", run.stderr)
        info = json.loads(self.tarn("project", "info", "--json").stdout)
        self.assertEqual(info["stale"], {"air systems to size again": 1, "air systems to simulate again": 1})
        self.assertEqual([info["files"][f"MALL{name}.DAT"] for name in ("HW1", "WTD", "WTA")], [70272, 86494, 2595219])
        self.assertIn("nothing found", self.tarn("weather", "check").stdout)
        simulation = self.at / "MALLWTA.DAT"
        whole = simulation.read_bytes()
        simulation.write_bytes(whole[:2000000])
        self.assertIn("cut short: 2000000 of 2595219 bytes", self.tarn("weather", "check", code=1).stdout)
        simulation.write_bytes(whole)
        shown = json.loads(self.tarn("weather", "show", "--json").stdout)
        self.assertEqual(shown["header"]["CityName"], "Tarnwater")
        self.assertEqual(len(shown["statistics"]["AvgDB"]), 12)

        svg = self.at / "year.svg"
        self.tarn("weather", "show", str(year), "--svg", str(svg))
        texts = [t.text for t in ElementTree.parse(svg).iter("{http://www.w3.org/2000/svg}text")]
        for word in ("Tarnwater, IL", "Dry-bulb", "F", "C", "lb/lb", "g/kg", "Jan", "Dec"):
            self.assertIn(word, texts)

        hourly = self.at / "CITY.HW1"
        self.tarn("weather", "import", str(year), "--output", str(hourly))
        before = year.read_bytes()
        self.tarn("weather", "import", str(year), "--output", str(year), code=3)
        self.assertEqual(year.read_bytes(), before)
        damaged = bytearray(hourly.read_bytes())
        damaged[192 * 200:192 * 200 + 4] = b"\xff\x7f\x00\x00"
        hourly.write_bytes(damaged[:60000])
        found = self.tarn("weather", "check", str(hourly), code=1)
        self.assertIn("19 July hour 1, 3276.7 F", found.stdout)
        self.assertIn("60000 of its 70,272 bytes", found.stderr)
        self.tarn("weather", "import", str(hourly), code=3)
        self.tarn("weather", "check", str(self.at / "none.HW1"), code=3)

    @reads(GOLDEN)
    def test_a_real_year_is_converted_within_one_unit(self):
        def pressure(t):  # of saturation, Pa; other fits than the layer's: over water Wagner and Pruss, over ice Murphy and Koop
            k = t + 273.15
            if t < 0:
                return math.exp(9.550426 - 5723.265 / k + 3.53068 * math.log(k) - 0.00728332 * k)
            tau = 1 - k / 647.096
            terms = zip((-7.85951783, 1.84408259, -11.7866497, 22.6807411, -15.9618719, 1.80122502), (1, 1.5, 3, 3.5, 4, 7.5))
            return 22.064e6 * math.exp(647.096 / k * sum(a * tau**power for a, power in terms))

        self.tarn("weather", "import", str(GOLDEN), "--output", str(self.at / "G.HW1"))
        stored = struct.unpack(f"<{96 * 366}h", (self.at / "G.HW1").read_bytes())[96:]
        rows = [line.split(",") for line in GOLDEN.read_text().splitlines() if line[0].isdigit()]
        self.assertEqual(len(rows), 8760)
        for place, row in enumerate(rows):
            dry_bulb, dew_point, station, direct, diffuse = (float(row[i]) for i in (6, 7, 9, 14, 15))
            ratio = 0.621945 * pressure(dew_point) / (station - pressure(dew_point))
            wanted = ((dry_bulb * 1.8 + 32) * 10, ratio / (1 + ratio) * 1e5, direct * 3.16998, diffuse * 3.16998)
            day, hour = divmod(place, 24)
            for quantity, value in enumerate(wanted):
                self.assertLess(abs(stored[96 * day + 24 * quantity + hour] - value), 1, row[:5])


if __name__ == "__main__":
    unittest.main()

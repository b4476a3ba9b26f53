"""What rests on what, and what differs, from the command line."""

import json
import shutil
import subprocess
import sys
import unittest
from xml.etree import ElementTree

import tarn
from command_line import EXAMPLES, CommandLineTest


class TestDependencies(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.tarn("windows", "new", "Name=South")
        self.make_system()
        self.tarn("spaces", "set", "Shop", "Wall(1).WindowType(1)=1", "Wall(1).WindowQty(1)=2")

    def calculated(self):
        """As a design and a simulation leave the flags of system 1."""
        project = tarn.COM_ProjectData()
        project.WorkPath, project.FilePrefix = str(self.at), "MALL"
        system = project.NewAirSystem()
        system.SetMask(0xFFFFFFF)
        system.Load(1)
        system.DesHasChanged = system.SimHasChanged = False
        system.Save(True)

    def test_uses_and_users(self):
        self.assertRegex(self.tarn("spaces", "uses", "Shop").stdout, r"Window +1 +South +Wall\(1\)\.WindowType\(1\)\n")
        [user] = json.loads(self.tarn("windows", "used-by", "South", "--json").stdout)
        self.assertEqual(user, {"kind": "Space", "index": 1, "name": "Shop", "slot": "Wall(1).WindowType(1)"})
        self.assertEqual(self.tarn("windows", "uses", "1").stdout, "it uses nothing\n")
        refused = self.tarn("windows", "delete", "South", code=2).stderr
        self.assertIn('Window 1 "South" is used by Space 1 "Shop" (Wall(1).WindowType(1)). Give --force', refused)
        self.tarn("windows", "delete", "South", "--force")

    def test_what_an_edit_makes_stale(self):
        self.calculated()
        self.assertEqual(self.tarn("project", "stale").stdout, "no result is stale\n")
        told = self.tarn("windows", "set", "South", "Height=3").stderr
        self.assertIn('stale now: air system 1 "VAV-1" design\nstale now: air system 1 "VAV-1" simulation\n', told)
        self.assertNotIn("stale now", self.tarn("windows", "set", "South", "Height=4").stderr)
        self.assertRegex(self.tarn("project", "stale").stdout,
                         r'System +1 +VAV-1 +design[^\n]* \d{4}-\d\d-\d\d \d\d:\d\d:\d\d Window 1 "South" > Space 1 "Shop" > System 1 "VAV-1" *\n')
        design, simulation = json.loads(self.tarn("project", "stale", "--json").stdout)
        self.assertEqual((design["results"], simulation["results"], design["edited"]["name"]), ("design", "simulation", "South"))

    def test_the_whole_chain_up(self):
        self.tarn("walls", "new", "Name=Glazed")
        self.tarn("spaces", "new", "Name=Lobby", "Wall(1).WallType=Glazed")
        self.tarn("air-systems", "new", "--type", "VAV", "Name=Penthouse", "ZoneData(1).SpaceID(1)=Lobby", "ZoneData(1).TotalSpacesInZone=1")
        wall, way = int(self.tarn("walls", "list", "--columns", "Index", "--where", "Name=Glazed", "--csv").stdout.split()[-1]), "System"
        self.assertIn(f"tarn walls used-by {wall} --all", self.tarn("walls", "used-by", "Glazed").stderr)
        self.assertRegex(self.tarn("walls", "used-by", "Glazed", "--all").stdout, r'System +\d+ +Penthouse +Wall \d+ "Glazed" > Space \d+ "Lobby" > System \d+ "Penthouse"')
        chain = json.loads(self.tarn("walls", "used-by", "Glazed", "--all", "--json").stdout)
        self.assertEqual(([each["kind"] for each in chain], len(chain[-1]["way"])), (["Space", way], 3))
        said = self.tarn("walls", "set", "Glazed", "Layer(2).Thickness=5").stderr
        self.assertRegex(said, r'already stale: air system \d+ "Penthouse" design')
        self.assertNotIn("already stale", self.tarn("walls", "set", "Glazed", "Name=Plain").stderr)

    def test_graph(self):
        self.assertRegex(self.tarn("project", "graph").stdout, r"\nSystem +1 +VAV-1 +Space 1, Space 2 +design never calculated, simulation never calculated *\n")
        self.calculated()
        self.tarn("windows", "set", "South", "Name=Süd <&> \"1\"", "Height=3")
        graph = json.loads(self.tarn("project", "graph", "--json").stdout)
        [space] = [each for each in graph["entities"] if each["name"] == "Shop"]
        self.assertEqual([used["name"] for used in space["uses"]], ['Süd <&> "1"'])
        picture = self.at / "graph.svg"
        self.tarn("project", "graph", "--svg", str(picture))
        self.assertEqual(self.tarn("project", "graph", "--svg", "-").stdout, picture.read_text())
        texts = [text.text for text in ElementTree.parse(picture).getroot().iter("{http://www.w3.org/2000/svg}text")]
        for text in ('Süd <&> "1"', "Shop", "VAV-1", "air systems"):
            self.assertIn(text, texts)
        self.assertIn("give the picture a file", self.tarn("project", "graph", "--svg", "-", "--json", code=2).stderr)

    def test_copy_from_another_project(self):
        other = self.at / "other"
        self.tarn("project", "new", project=other / "ANNEX")
        self.tarn("windows", "new", "Name=South", "Height=9", project=other)
        copy = ("air-systems", "copy", "VAV-1", "--from", str(self.at))
        tried = self.tarn(*copy, "--dry-run", project=other).stdout
        self.assertEqual(self.tarn("spaces", "list", "--json", project=other).stdout.strip(), "[]")
        told = self.tarn(*copy, project=other).stdout
        self.assertEqual(told, tried)
        self.assertIn('Window 1 "South" copied as Window 2 "Copy of South", as another one has its name\nSpace 1 "Shop" copied as Space 1 "Shop"\n', told)
        self.assertIn('Space 1 "Shop" is there already as Space 1 "Shop"\n', self.tarn(*copy, project=other).stdout)
        [*_, last] = json.loads(self.tarn(*copy, "--json", project=other).stdout)
        self.assertEqual(last, {"kind": "System", "index": 1, "name": "VAV-1", "reused": True, "from": {"kind": "System", "index": 1, "name": "VAV-1"}})
        self.assertIn("did you mean Shop?", self.tarn("spaces", "copy", "Shp", "--from", str(self.at), project=other, code=2).stderr)
        self.assertIn("tarn walls copy N --from", self.tarn("walls", "copy", "1", code=2).stderr)
        self.assertIn("Both projects are the same", self.tarn("windows", "copy", "1", "--from", str(self.at), code=2).stderr)

    def test_the_office_comes_whole(self):
        office, empty = self.at / "office" / "MALL", self.at / "empty" / "MALL"
        for project in (office, empty):
            self.tarn("project", "new", project=project)
        subprocess.run([sys.executable, EXAMPLES / "office.py", str(office)], check=True, capture_output=True)
        self.tarn("buildings", "copy", "Small office", "--from", str(office), project=empty)
        differing = [line for line in self.tarn("diff", str(office), str(empty), code=1).stdout.splitlines()
                     if not line.endswith(": in the first alone") and not line.startswith("Preferences")]
        self.assertEqual(differing, [])
        self.assertEqual(self.tarn("project", "check", project=empty).returncode, 0)

    def test_diff(self):
        other = self.at / "other"
        shutil.copytree(self.at, other)
        self.assertEqual(self.tarn("diff", str(self.at), str(other)).stdout, "no difference\n")
        self.tarn("windows", "set", "South", "Height=1.2m", project=other)
        self.assertRegex(self.tarn("diff", str(self.at), str(other), code=1).stdout, r'^Window "South" Height: [\d.]+ -> 3.93700\d+ ft\n')
        self.assertIn("Height: 1.2192 -> 1.2 m\n", self.tarn("--units", "si", "diff", str(self.at), str(other), code=1).stdout)
        text = self.at / "other.json"
        text.write_text(self.tarn("export", "json", project=other).stdout)
        self.assertEqual(self.tarn("diff", str(other), str(text), "--json").stdout, "[]\n")
        self.tarn("windows", "set", "South", "WindowType=true", "FrameType=2", project=other)
        self.assertRegex(self.tarn("diff", str(self.at), str(other), code=1).stdout, r"FrameType: \d+ [a-z ,]+ -> 2 [a-z ,]+\n")
        found = {each["property"]: each for each in json.loads(self.tarn("diff", str(self.at), str(other), "--json", code=1).stdout)}
        self.assertEqual([found["FrameType"][side] for side in ("second", "second_text")], [2, json.loads(self.tarn("windows", "list", "--columns", "FrameType", "--json", project=other).stdout)[0]["FrameType"]["text"]])
        self.assertEqual((found["FrameType"]["first_text"] != "", found["Height"]["first_text"]), (True, ""))
        self.assertIn("relative difference", self.tarn("diff", str(other), str(text), "--tolerance", "x", code=2).stderr)


if __name__ == "__main__":
    unittest.main()

"""Projects of the older engine: what becomes of their index databases, and what is refused."""

import gzip
import json
import shutil
import sqlite3
import struct
import unittest

from command_line import ROOT, CommandLineTest, reads

OLDER = ROOT.parent / "shared" / "data" / "older-index"
HARD = OLDER / "hard"

# Of the cases whose values are told, what the new index has otherwise, and why.
OTHERWISE = {
    "deleted-jet3": "WindowIndex, the record wins", "deleted-jet4": "WindowIndex, the record wins",
    "empty-jet3": "SimWeatherIndex, one row", "floats-jet4": "WindowIndex, no NaN",
    "indexes-jet4": "WindowIndex, indexes", "many-jet3": "Space_Shade_Links, a lost link", "many-jet4": "Space_Shade_Links, a lost link",
    "memo-jet3": "WindowIndex, NULL", "memo-jet4": "WindowIndex, NULL",
    "names-jet3": "WindowIndex, NULL", "names-jet4": "WindowIndex, NULL", "order-jet4": "WindowIndex, the record wins",
    "page-1251-jet3": "WindowIndex, NULL", "password-jet3": "WindowIndex, NULL", "password-jet4": "WindowIndex, NULL",
    "undefined-jet3": "WindowIndex, the record wins",
}
REFUSED = ["columns-65535-jet3", "columns-65535-jet4", "count-too-high-jet4", "cut-at-page-jet3", "cut-at-page-jet4", "cut-in-header",
           "cut-in-page-jet4", "definition-not-one-jet4", "fields-beyond-jet4", "foreign-access97", "foreign-access2000-moved",
           "map-empty-jet4", "map-far-jet4", "memo-cycle-jet4", "name-65534-jet4", "places-random-jet4", "random",
           "random-behind-header-jet4", "rows-65535-jet4", "text", "version-9", "zero-length", "zeroed-page-jet4"]


def value(kind, stored):
    if stored is None or kind not in ("Single", "Double", "Yes/No"):
        return stored
    if kind == "Yes/No":
        return -1 if stored else 0
    return struct.unpack(">f" if kind == "Single" else ">d", bytes.fromhex(stored))[0]


def differing_tables(index, expected):
    """Tables of the project whose rows are not those that are told, in the columns that both have."""
    found = []
    with sqlite3.connect(index) as database:
        own = {name.lower(): name for [name] in database.execute("SELECT name FROM sqlite_master WHERE type = 'table'")}
        for table in expected["tables"]:
            name = own.get(table["name"].lower())
            columns = {row[1].lower(): row[1] for row in database.execute(f"PRAGMA table_info({name})")} if name else {}
            both = [(i, column) for i, column in enumerate(table["columns"]) if column["name"].lower() in columns]
            if not both:
                continue
            wanted = [repr(tuple(value(column["type"], row[i]) for i, column in both)) for row in table["rows"]]
            rows = database.execute(f"SELECT {', '.join(columns[column['name'].lower()] for _, column in both)} FROM {name}")
            if sorted(wanted) != sorted(map(repr, rows)):
                found.append(name)
    return found


class TestAdopt(CommandLineTest):
    def project(self, folder):
        """A copy of the record files, which can be written."""
        at = self.at / "old"
        shutil.rmtree(at, ignore_errors=True)
        at.mkdir()
        for path in folder.iterdir():
            (at / path.name).write_bytes(path.read_bytes())
        return at

    def hard(self, case):
        at = self.project(HARD / "records")
        (at / "MALLINX.MDB").write_bytes(gzip.decompress((HARD / f"{case}.mdb.gz").read_bytes()))
        if case.startswith("many"):
            (at / "MALLSHD.DAT").write_bytes(gzip.decompress((HARD / "many-SHD.DAT.gz").read_bytes()))
        return at

    @staticmethod
    def files(at):
        return {path.name: path.read_bytes() for path in at.iterdir()}

    @reads(OLDER)
    def test_a_project_comes_with_all_values_and_goes_back(self):
        for make in ("jet3", "jet4"):
            at = self.project(OLDER / make)
            before = self.files(at)
            self.tarn("project", "adopt", "--dry-run", project=at)
            self.assertEqual(self.files(at), before)
            told = self.tarn("project", "adopt", project=at).stdout
            self.assertIn(f"from Jet {make[3]}: 97 rows of 40 tables", told)
            self.assertEqual(differing_tables(at / "MALLINX.MDB", json.loads((OLDER / f"{make}.json").read_text())), [])
            self.assertEqual((at / "MALLINX.MDB.before").read_bytes(), before["MALLINX.MDB"])
            self.tarn("project", "check", project=at)
            self.assertIn("nothing is to be done", self.tarn("project", "adopt", project=at).stdout)
            self.tarn("windows", "set", "1", "Height=7", project=at)
            self.tarn("project", "adopt", "--undo", project=at)
            self.assertEqual((at / "MALLINX.MDB").read_bytes(), before["MALLINX.MDB"])
            self.assertNotEqual((at / "MALLWIN.DAT").read_bytes(), before["MALLWIN.DAT"])

    @reads(HARD)
    def test_every_value_of_a_hard_index_comes_or_is_told(self):
        for told in sorted(HARD.glob("*.json.gz")):
            case = told.name.removesuffix(".json.gz")
            with self.subTest(case):
                at = self.hard(case)
                before = self.files(at)
                run = self.tarn("project", "adopt", project=at)
                tables = differing_tables(at / "MALLINX.MDB", json.loads(gzip.decompress(told.read_bytes())))
                self.assertEqual(bool(tables), case in OTHERWISE, tables)
                if tables:
                    self.assertIn(OTHERWISE[case].split(",")[0], tables)
                    self.assertIn("note: " if "NULL" in OTHERWISE[case] else "", run.stderr)
                after = self.files(at)
                self.assertEqual({name: after[name] for name in before if name != "MALLINX.MDB"},
                                 {name: before[name] for name in before if name != "MALLINX.MDB"})

    @reads(HARD)
    def test_damaged_and_foreign_indexes_are_refused_whole(self):
        for case in REFUSED:
            with self.subTest(case):
                at = self.hard(case)
                before = self.files(at)
                said = self.tarn("project", "adopt", project=at, code=3).stderr
                self.assertRegex(said, "MALLINX.MDB (is damaged: |is no database|has no table of a project)")
                self.assertEqual(self.files(at), before)
        at = self.hard("cut-at-page-jet4")
        self.assertIn("tables of the project with", self.tarn("project", "adopt", project=at, code=3).stderr)
        told = self.tarn("project", "adopt", "--rebuild", project=at).stdout
        self.assertIn("from the record files", told)
        rows = json.loads(self.tarn("spaces", "list", "--json", project=at).stdout)
        self.assertEqual(len(rows), 5)

    @reads(HARD)
    def test_tables_and_columns_of_others_are_kept_as_csv(self):
        at = self.hard("extra-jet4")
        self.tarn("project", "adopt", project=at)
        self.assertEqual((at / "MALLINX-Version.csv").read_text().splitlines(),
                         ["nVersion,szProgram,dtMade", "410,the old program,1998-03-02T08:15:30"])
        at = self.hard("order-jet4")
        (at / "MALLINX-WindowIndex.csv").write_text("of somebody")
        before = self.files(at)
        self.assertIn("exists already; move it away", self.tarn("project", "adopt", project=at, code=3).stderr)
        self.assertEqual(self.files(at), before)
        (at / "MALLINX-WindowIndex.csv").unlink()
        self.tarn("project", "adopt", project=at)
        self.assertIn("nindex", (at / "MALLINX-WindowIndex.csv").read_text().splitlines()[0].lower())

    def test_a_project_in_use_and_what_is_none(self):
        index = self.at / "MALLINX.MDB"
        self.assertIn("nothing is to be done", self.tarn("project", "adopt").stdout)
        self.assertIn("was not adopted", self.tarn("project", "adopt", "--undo", code=3).stderr)
        index.write_bytes(b"a text")
        self.assertIn("is no database of the older engine", self.tarn("project", "adopt", code=3).stderr)
        (self.at / "mallinx.ldb").touch()
        self.assertIn("has the project open", self.tarn("project", "adopt", code=3).stderr)
        index.unlink()
        self.assertIn("There is no index database", self.tarn("project", "adopt", project=self.at / "MALL", code=3).stderr)


if __name__ == "__main__":
    unittest.main()

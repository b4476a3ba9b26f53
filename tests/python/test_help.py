"""Help, completion and the examples that they show."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

from command_line import CHILLER, EXAMPLES, CommandLineTest, TARN


class TestHelp(CommandLineTest):
    def complete(self, *words):
        return [line.split("\t")[0] for line in self.run_plain("__complete", *words).splitlines()]

    def run_plain(self, *words):
        return subprocess.run([TARN, *words], cwd=self.at, capture_output=True, text=True, check=True).stdout

    def verbs(self):
        """Every group with each of its verbs, an empty one for a group that does one thing."""
        for group in self.complete(""):
            several = self.run_plain(group, "--help").startswith(f"tarn {group}: ")
            for verb in self.complete(group, "") if several else [""]:
                yield group, verb

    def test_overview_fits_a_screen(self):
        text = self.run_plain("--help")
        self.assertLessEqual(len(text.splitlines()), 30)
        self.assertEqual([group for group in self.complete("") if not re.search(rf"\b{group}\b", text)], [])
        self.assertEqual(self.run_plain("help"), text)
        self.assertRegex(self.run_plain("--version"), r"^tarn \d+\.\d+\.\d+\n$")

    def test_help_of_a_verb_has_units_bounds_and_codes(self):
        boilers = self.run_plain("boilers", "new", "--help")
        for line in (r"BoilerOutput +number, MBH\n", r"BoilerEff\(1 to 11\) +number, %\n", r"FuelType +code\n +3  BFT_ELECTRIC_RESISTANCE  electric resistance\n",
                     r"--json +print JSON, in the units of the files\n"):
            self.assertRegex(boilers, line)
        self.assertNotIn("--type", boilers)
        self.assertRegex(self.run_plain("help", "plants", "new"), r"--type TYPE[^$]*\nTypes:\n  [^$]*HOT_WATER,")
        self.assertRegex(self.run_plain("preferences", "set", "--help"), r"LeedVersionCode +code\n[^$]*  3\. LEED v4\n")
        self.assertRegex(self.run_plain("air-systems", "zone", "--help"), r"\n  Name +text of 30\n[^$]*SpaceID\(1 to \d+\) +whole number, index or name of a Space\n")
        self.assertRegex(self.run_plain("windows", "set", "--help"), r"Height +number, ft, 0 and above\n +Width")
        self.assertRegex(self.run_plain("spaces", "set", "--help"), r"Wall\(1 to 8\)\.Property +tarn describe SPC_WallWindow\n")
        self.assertNotIn("CoilSize", self.run_plain("air-systems", "set", "--help"))  # results, which an edit clears
        self.assertRegex(self.run_plain("describe", "SPC_WallWindow"), r"Exposure +I2 +0 to 17")

    def test_subjects_are_explained(self):
        for topic, says in (("staleness", "tarn project info"), ("units", "Btu/(hr.ft2.F)"), ("files", "MALLINX.MDB"), ("codes", "BFT_NATURAL_GAS"), ("choosing", '"South*"'), ("lists", "Layer(2).Thickness>=4")):
            self.assertIn(says, self.run_plain("help", topic))
        self.assertIn("did you mean staleness?", self.tarn("help", "stalness", code=2).stderr)
        self.assertIn("did you mean list?", self.tarn("windows", "lits", "--help", code=2).stderr)

    def make_what_examples_name(self):
        """A project with what the first example of every `new` makes, a weather year, design results and a chiller's file."""
        self.made_year()
        if CHILLER.exists():
            shutil.copy(CHILLER, self.at / "chiller.json")
        subprocess.run([sys.executable, EXAMPLES / "make_house.py", self.at / "house.xml"], check=True)
        self.make_system()
        self.make_results()
        for group, verb in self.verbs():
            if verb == "new" and group != "project":
                for example in self.examples(group, verb):
                    self.run_example(example, self.at)

    def examples(self, group, verb):
        text = self.run_plain(*filter(None, (group, verb)), "--help")
        return re.findall(r"^  (\S.*)$", text.partition("\nExamples:\n")[2].partition("\n\n")[0], re.MULTILINE)

    def run_example(self, example, folder):
        path = f"{pathlib.Path(TARN).parent}:{os.environ['PATH']}"
        run = subprocess.run(["bash", "-o", "pipefail", "-c", example], cwd=folder, env={**os.environ, "PATH": path}, capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, 0, f"{example}\n{run.stdout}{run.stderr}")

    def test_every_example_runs(self):
        self.make_what_examples_name()
        shown = 0
        for group, verb in self.verbs():
            examples = self.examples(group, verb)
            with self.subTest(group, verb=verb), tempfile.TemporaryDirectory() as folder:
                self.assertGreaterEqual(len(examples), 1, "no example")
                shutil.copytree(self.at, folder, dirs_exist_ok=True)  # the examples of a verb run one after the other
                for example in examples if verb != "new" or group == "project" else []:
                    if "chiller.json" not in example or CHILLER.exists():
                        self.run_example(example, folder)
            shown += len(examples)
        self.assertGreater(shown, 150)

    def test_completion(self):
        self.tarn("windows", "new", "Name=South 4x5")
        self.tarn("windows", "new", "Name=North")
        for words, wanted in [(["win"], ["windows"]), (["windows", "se"], ["set"]), (["windows", "show", ""], ["South 4x5", "North"]),
                              (["windows", "show", "so"], ["South 4x5"]), (["windows", "set", "1", "He"], ["Height="]), (["windows", "set", "1", "Height=4", "glassr"], ["GlassReflect("]),
                              (["walls", "new", "Lay"], ["Layer("]), (["walls", "new", "Layer(2).Th"], ["Layer(2).Thickness=", "Layer(2).ThermalResistance="]),
                              (["boilers", "new", "BoilerType="], ["BoilerType=BT_HOTWATER", "BoilerType=BT_STEAM"]),
                              (["air-systems", "new", "HeatSys.Us"], ["HeatSys.Used="]), (["air-systems", "new", "HeatSys.Used="], ["HeatSys.Used=true", "HeatSys.Used=false"]),
                              (["-p", str(self.at), "windows", "sh"], ["show"]), (["-p", str(self.at / "NONE"), "windows", "show", ""], []), (["results", "sh"], ["show"]),
                              (["windows", "copy", ""], []), (["-p", "NONE", "windows", "copy", "--from", str(self.at), "so"], ["South 4x5"]),
                              (["project", "export", "windows", "do"], ["doors"]), (["describe", "WIN"], ["WIN_Window"]), (["help", "st"], ["staleness"]),
                              (["completion", ""], ["bash", "zsh", "fish"]), (["walls", "layer", "insert", "1", "2", "--material", "M01"], ["M01 4 in brick"]),
                              (["project", "repair", "--dr"], ["--dry-run"]), (["air-systems", "new", "--type", "va"], ["VAV"]), (["windows", "list", "--columns", "Name,Hei"], ["Name,Height"]),
                              (["air-systems", "zone", "add", "1", "SpaceI"], []), (["air-systems", "zone", "set", "1", "1", "SpaceI"], ["SpaceID("]), (["preferences", "set", "Curr"], ["CurrencyUnits="]), (["schedules", "call", "1", "GetV"], ["GetValue"]), (["windows", "list", "--mat"], []), (["nonsense", ""], [])]:
            with self.subTest(words):
                self.assertEqual(self.complete(*words), wanted)

    def shell(self, *command):
        path = f"{pathlib.Path(TARN).parent}:{os.environ['PATH']}"
        return subprocess.run(command, cwd=self.at, env={**os.environ, "PATH": path}, capture_output=True, text=True, check=True).stdout.splitlines()

    def test_completion_in_bash(self):
        self.tarn("windows", "new", "Name=South 4x5")
        for words, replies in [(["tarn", "windows", "sho"], ["show"]), (["tarn", "windows", "show", "'So"], ["South 4x5"]), (["tarn", "windows", "set", "1", "Hei"], ["Height="]),
                               (["tarn", "boilers", "new", "BoilerType", "=", "BT_S"], ["BT_STEAM"]), (["tarn", "boilers", "new", "BoilerType", "="], ["BT_HOTWATER", "BT_STEAM"])]:
            script = 'source <(tarn completion bash); COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _tarn; printf "%s\\n" "${COMPREPLY[@]}"'
            with self.subTest(words):
                self.assertEqual(self.shell("bash", "-c", script, "-", *words), replies)

    @unittest.skipUnless(shutil.which("zsh"), "zsh is not installed")
    def test_completion_in_zsh(self):
        script = ('compdef() { :; }; source <(tarn completion zsh); compadd() { print -l -- "${found[@]}" }; _files() { print files }; '
                  'words=("$@"); CURRENT=$#; _tarn')
        self.assertEqual(self.shell("zsh", "-fc", script, "-", "tarn", "windows", "sho"), ["show"])
        self.assertEqual(self.shell("zsh", "-fc", script, "-", "tarn", "project", "import", ""), ["files"])

    @unittest.skipUnless(shutil.which("fish"), "fish is not installed")
    def test_completion_in_fish(self):
        self.tarn("windows", "new", "Name=South 4x5")
        script = "tarn completion fish | source; complete -C 'tarn windows show S'"
        self.assertEqual(self.shell("fish", "-c", script), ["South 4x5\t1"])


if __name__ == "__main__":
    unittest.main()

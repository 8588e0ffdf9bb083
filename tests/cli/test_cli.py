#!/usr/bin/env python3
"""test_cli.py VEKAD - the program as the shell sees it: arguments, status codes, files, reports."""

import json
import os
import pty
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import unittest.mock
from pathlib import Path

VEKAD = ""
BLANK = "0\nSECTION\n2\nENTITIES\n0\nENDSEC\n0\nEOF\n"
LINE = """(entmake '((0 . "LINE") (8 . "0") (10 0.0 0.0 0.0) (11 1.0 2.0 0.0)))"""
CIRCLE = """(entmake '((0 . "CIRCLE") (8 . "0") (10 0.0 0.0 0.0) (40 . 3.0)))"""


class Case(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.put("a.dxf", BLANK)

    def put(self, name, text):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        return path

    def vekad(self, *arguments, typed="", expect=0):
        done = subprocess.run([VEKAD, *map(str, arguments)], cwd=self.folder, input=typed, text=True, timeout=60,
                              capture_output=True, env={**os.environ, "XDG_CONFIG_HOME": str(self.folder / "config")})
        if expect is not None:
            self.assertEqual(done.returncode, expect, done.stdout + done.stderr)
        return done

    def report(self, *arguments, expect=0):
        return json.loads(self.vekad(*arguments, "--json", expect=expect).stdout)

    def entities(self, name):
        return self.report("info", name)["entities"]["model"]


class Usage(Case):
    WRONG = {
        "no subcommand": [],
        "no drawing": ["run"],
        "unknown option": ["run", "a.dxf", "--nonsense"],
        "unknown version": ["run", "a.dxf", "-o", "b.dxf", "--as", "1999"],
        "a version that is only read": ["convert", "a.dxf", "b.dxf", "--as", "R14"],
        "two places to save": ["run", "a.dxf", "-o", "b.dxf", "--in-place"],
        "saved and not saved": ["run", "a.dxf", "--dry-run", "--in-place"],
        "overwrites its input": ["run", "a.dxf", "-o", "a.dxf"],
        "overwrites its input by another name": ["run", "a.dxf", "-o", "./x/../a.dxf"],
        "convert onto itself": ["convert", "a.dxf", "a.dxf"],
        "transcript onto the drawing": ["run", "a.dxf", "--transcript", "a.dxf"],
        "script that is not there": ["run", "a.dxf", "-s", "nothing.scr"],
        "no time": ["run", "a.dxf", "--timeout", "0"],
        "fix without a place": ["audit", "a.dxf", "--fix"],
        "a picture of no kind": ["render", "a.dxf", "a.bmp"],
        "a picture over its drawing": ["render", "a.dxf", "a.dxf"],
        "no such layout": ["render", "a.dxf", "a.png", "--layout", "NOSUCH"],
        "a window without a size": ["render", "a.dxf", "a.png", "--window", "0,0,0,5"],
        "a window of three numbers": ["render", "a.dxf", "a.png", "--window", "0,0,5"],
        "a picture of no size": ["render", "a.dxf", "a.png", "--size", "0x5"],
        "no such colour": ["render", "a.dxf", "a.png", "--background", "reddish"],
        "the window": ["a.dxf"],
    }

    def test_wrong_usage(self):
        (self.folder / "x").mkdir()
        for what, arguments in self.WRONG.items():
            with self.subTest(what):
                self.assertNotEqual(self.vekad(*arguments, expect=2).stderr, "")
        self.assertEqual((self.folder / "a.dxf").read_text(), BLANK)

    def test_help(self):
        for command in ("run", "info", "audit", "convert", "render"):
            self.assertIn("Status", self.vekad(command, "--help").stdout)


class Render(Case):
    BEGINNINGS = {"png": b"\x89PNG", "svg": b"<?xml", "pdf": b"%PDF"}

    def setUp(self):
        super().setUp()
        self.vekad("run", "a.dxf", "-c", LINE, "-c", CIRCLE, "-o", "b.dxf")

    def test_pictures_of_each_kind(self):
        for ending, beginning in self.BEGINNINGS.items():
            with self.subTest(ending):
                self.vekad("render", "b.dxf", f"b.{ending}")
                self.assertTrue((self.folder / f"b.{ending}").read_bytes().startswith(beginning))

    def test_size_window_and_background(self):
        self.vekad("render", "b.dxf", "b.png", "--size", "300x200")
        self.assertEqual((self.folder / "b.png").read_bytes()[16:24], bytes([0, 0, 1, 44, 0, 0, 0, 200]))
        self.vekad("render", "b.dxf", "b.svg", "--window", "-1,-1,1,1", "--size", "100x100", "--background", "#102030")
        text = (self.folder / "b.svg").read_text()
        self.assertIn('fill="#102030"', text)
        self.assertIn("M50 50L100 -50", text)
        self.assertIn('stroke="#ffffff"', text, "colour 7 on a dark page")

    def test_what_cannot_be_written_leaves_the_old_picture(self):
        self.vekad("render", "b.dxf", "nowhere/b.png", expect=4)
        self.vekad("render", "nothing.dxf", "b.png", expect=3)

    def test_sheets_of_a_drawing_with_an_empty_model_are_told(self):
        self.vekad("run", "a.dxf", "-c", "TILEMODE", "-c", "0", "-c", "LINE", "-c", "0,0", "-c", "5,5", "-c", "", "-o", "sheet.dxf")
        self.assertIn("--layout shows a sheet: Layout1", self.vekad("render", "sheet.dxf", "sheet.svg").stderr)
        self.assertEqual(self.vekad("render", "sheet.dxf", "sheet.svg", "--layout", "Layout1").stderr, "")

    def test_what_is_not_drawn_is_told(self):
        self.put("c.dxf", BLANK.replace("ENTITIES\n", "ENTITIES\n0\nMYSTERY\n8\n0\n"))
        self.assertIn("MYSTERY (1)", self.vekad("render", "c.dxf", "c.svg").stderr)


class Run(Case):
    def test_saves_what_the_commands_made(self):
        done = self.vekad("run", "a.dxf", "-c", LINE, "-c", CIRCLE, "-o", "b.dxf")
        self.assertEqual(self.entities("b.dxf"), {"LINE": 1, "CIRCLE": 1})
        self.assertEqual((self.folder / "a.dxf").read_text(), BLANK)
        self.assertIn("kept", done.stderr)

    def test_typed_texts_come_before_the_script(self):
        script = self.put("s.scr", "; a comment\n(princ (+ x 1))\n")
        self.assertIn("42", self.vekad("run", "a.dxf", "-s", script, "-c", "(setq x 41)").stdout)

    def test_script_from_standard_input(self):
        self.vekad("run", "a.dxf", "-s", "-", "-o", "b.dxf", typed=LINE + "\n")
        self.assertEqual(self.entities("b.dxf"), {"LINE": 1})

    def test_report(self):
        report = self.report("run", "a.dxf", "-c", LINE, "-c", "NOSUCH", "-o", "b.dxf", expect=1)
        self.assertEqual((report["drawing"], report["status"]), ("a.dxf", 1))
        self.assertEqual(report["commands"], [{"name": "NOSUCH", "status": "failed"}])
        self.assertEqual(list(report["added"]), ["LINE"])
        self.assertEqual((report["modified"], report["erased"]), ({}, {}))
        self.assertEqual(report["saved"]["path"], "b.dxf")
        self.assertEqual(report["saved"]["dropped"], 0)

    def test_report_of_changes_and_erasures(self):
        self.vekad("run", "a.dxf", "-c", LINE, "-c", CIRCLE, "-o", "b.dxf")
        grow = """(entmod (subst '(40 . 5.0) '(40 . 3.0) (entget (entlast))))"""
        same = """(entmod (entget (entlast)))"""
        gone = """(entdel (entnext))"""
        self.assertEqual(list(self.report("run", "b.dxf", "-c", grow)["modified"]), ["CIRCLE"])
        self.assertEqual(self.report("run", "b.dxf", "-c", same)["modified"], {})
        self.assertEqual(list(self.report("run", "b.dxf", "-c", gone)["erased"]), ["LINE"])

    def test_what_leaves_its_dictionary_is_reported_as_erased(self):
        add = """(defun keep (name) (dictadd (namedobjdict) name (entmakex '((0 . "XRECORD") (100 . "AcDbXrecord") (280 . 1)))))"""
        drop = """(dictremove (namedobjdict) "OLD")"""
        self.vekad("run", "a.dxf", "-c", add, "-c", """(keep "OLD")""", "-o", "b.dxf")
        brief = ["-c", """(keep "BRIEF")""", "-c", """(dictremove (namedobjdict) "BRIEF")"""]
        report = self.report("run", "b.dxf", "-c", drop, "-c", add, *brief, "-o", "c.dxf")
        self.assertEqual(list(report["erased"]), ["XRECORD"])
        self.assertEqual((report["added"], "XRECORD" in report["modified"]), ({}, False))
        self.assertNotIn("XRECORD", (self.folder / "c.dxf").read_text())
        self.vekad("audit", "c.dxf")

    def test_in_place_keeps_the_old_file(self):
        self.vekad("run", "a.dxf", "-c", LINE, "--in-place")
        self.assertEqual(self.entities("a.dxf"), {"LINE": 1})
        backups = [p for p in self.folder.iterdir() if p.suffix == ".bak"]
        self.assertEqual([p.read_text() for p in backups], [BLANK])

    def test_dry_run_writes_nothing(self):
        report = self.report("run", "a.dxf", "-c", LINE, "--dry-run")
        self.assertEqual(list(report["added"]), ["LINE"])
        self.assertEqual((self.folder / "a.dxf").read_text(), BLANK)
        self.assertEqual(sorted(p.name for p in self.folder.iterdir() if p.is_file()), ["a.dxf"])

    def test_failure_is_saved_all_the_same(self):
        self.vekad("run", "a.dxf", "-c", LINE, "-c", "(car 5)", "-o", "b.dxf", expect=1)
        self.assertEqual(self.entities("b.dxf"), {"LINE": 1})

    def test_script_that_ends_inside_a_command(self):
        self.vekad("run", "a.dxf", "-c", "(defun c:ask () (getpoint \"Point: \") (princ))", "-c", "ASK", expect=1)

    def test_cancel_by_the_script_is_no_failure(self):
        ask = "(defun c:ask () (getpoint \"Point: \") (princ))"
        self.vekad("run", "a.dxf", "-c", ask, "-c", "ASK", "-c", "(cancel)", "-c", LINE, "-o", "b.dxf")
        self.assertEqual(self.entities("b.dxf"), {"LINE": 1})

    def test_left_over_answer(self):
        done = self.vekad("run", "a.dxf", "-c", '(answer "TCaseDialog" "okBtn")', expect=1)
        self.assertIn("TCaseDialog", done.stderr)

    def test_dialogs_need_no_display(self):
        make = """(entmake '((0 . "TEXT") (8 . "0") (10 0 0 0) (40 . 2.5) (1 . "abc")))"""
        told = ["-c", make, "-c", '(answer "TCaseDialog" "upperBtn" "okBtn")', "-c", "TCASE", "-c", "ALL", "-c", ""]
        for desktop in ({"DISPLAY": "", "WAYLAND_DISPLAY": ""}, {"DISPLAY": ":987", "QT_QPA_PLATFORM": "xcb"}):
            with self.subTest(**desktop), unittest.mock.patch.dict(os.environ, desktop):
                done = self.vekad("run", "a.dxf", "-o", "b.dxf", *told)
                self.assertIn("1\nABC\n", (self.folder / "b.dxf").read_text())
                self.assertNotIn("plugin", done.stderr)

    def test_dialog_without_an_answer(self):
        done = self.vekad("run", "a.dxf", "--dry-run", "-c", "INVOKE", "-c", "TextToMTextOptions", expect=1)
        self.assertIn("The dialog DialogTxt2MTxt has no answer waiting and is cancelled.", done.stdout)

    def test_transcript_in_a_file(self):
        self.vekad("run", "a.dxf", "-c", '(princ "hello there")', "--json", "--transcript", "t.txt")
        self.assertIn("hello there", (self.folder / "t.txt").read_text())

    def test_time_limit(self):
        begun = time.monotonic()
        done = self.vekad("run", "a.dxf", "-c", LINE, "-c", "(while T (setq i 1))", "--timeout", "0.5", "-o", "b.dxf",
                          expect=1)
        self.assertLess(time.monotonic() - begun, 20)
        self.assertIn("time limit", done.stderr)
        self.assertEqual(self.entities("b.dxf"), {"LINE": 1})


class Files(Case):
    def test_unreadable(self):
        self.put("words.dxf", "This is no drawing.\n")
        self.put("plan.dwg", "AC1032" + "\0" * 200)
        for name in ("nothing.dxf", "words.dxf", "plan.dwg"):
            with self.subTest(name):
                for command in (["run", name], ["info", name], ["audit", name], ["convert", name, "b.dxf"]):
                    self.assertIn(name, self.vekad(*command, expect=3).stderr)
        self.assertFalse((self.folder / "b.dxf").exists())

    def test_cut_off_is_refused_and_recovered(self):
        self.vekad("run", "a.dxf", "-c", LINE, "-c", CIRCLE, "-o", "b.dxf")
        whole = (self.folder / "b.dxf").read_text()
        self.put("cut.dxf", whole[: whole.index("AcDbCircle") + 3])
        for command in (["run", "cut.dxf", "-o", "c.dxf"], ["info", "cut.dxf"], ["convert", "cut.dxf", "c.dxf"]):
            self.assertIn("line", self.vekad(*command, expect=3).stderr)
        self.assertFalse((self.folder / "c.dxf").exists())
        self.vekad("run", "cut.dxf", "--recover", "-o", "c.dxf")
        self.assertEqual(self.entities("c.dxf")["LINE"], 1)

    def test_what_has_no_place_in_an_old_version_needs_a_word(self):
        ray = """(entmake '((0 . "RAY") (100 . "AcDbEntity") (8 . "0") (100 . "AcDbRay") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0)))"""
        refused = self.vekad("run", "a.dxf", "-c", LINE, "-c", ray, "--as", "R12", "-o", "b.dxf", expect=4)
        self.assertIn("RAY", refused.stderr)
        self.assertFalse((self.folder / "b.dxf").exists())
        self.vekad("run", "a.dxf", "-c", LINE, "-c", ray, "--as", "R12", "--allow-loss", "-o", "b.dxf")
        self.assertEqual(self.entities("b.dxf"), {"LINE": 1})

    def test_cannot_be_saved(self):
        done = self.vekad("run", "a.dxf", "-c", LINE, "-o", "nowhere/b.dxf", expect=4)
        self.assertIn("nowhere", done.stderr)

    def test_convert_versions_and_forms(self):
        self.vekad("run", "a.dxf", "-c", LINE, "-o", "b.dxf")
        for version in ("R12", "2000", "2004", "2007", "2010", "2013", "2018"):
            for form in ([], ["--binary"]):
                with self.subTest(version=version, form=form):
                    self.vekad("convert", "b.dxf", "c.dxf", "--as", version, *form)
                    self.assertEqual(self.entities("c.dxf"), {"LINE": 1})

    def test_second_save_is_the_first(self):
        self.vekad("convert", "a.dxf", "b.dxf")
        self.vekad("convert", "b.dxf", "c.dxf")
        self.assertEqual((self.folder / "b.dxf").read_bytes(), (self.folder / "c.dxf").read_bytes())

    def test_audit_of_a_sound_drawing(self):
        self.vekad("convert", "a.dxf", "b.dxf")
        self.assertIn("nothing is wrong", self.vekad("audit", "b.dxf").stdout)

    def test_info(self):
        self.vekad("run", "a.dxf", "-c", LINE, "--as", "2010", "-o", "b.dxf")
        info = self.report("info", "b.dxf")
        self.assertEqual(set(info), {"path", "version", "codepage", "entities", "layers", "blocks", "styles", "dimstyles",
                                     "linetypes", "layouts", "extents", "fonts"})
        self.assertIn("2010", info["version"])
        self.assertIn("0", info["layers"])
        self.assertEqual(info["extents"], [[0, 0, 0], [1, 2, 0]])


class Samples(Case):
    def test_the_plan_is_what_its_script_draws(self):
        samples = Path(__file__).resolve().parents[2] / "samples"
        self.vekad("run", samples / "blank.dxf", "-s", samples / "make_plan.scr", "--as", "2018", "-o", "plan.dxf")
        drawn, kept = self.report("info", "plan.dxf"), self.report("info", samples / "plan.dxf")
        for key in drawn.keys() - {"path"}:
            self.assertEqual(drawn[key], kept[key], key)
        self.assertIn("DIMENSION", drawn["entities"]["model"])
        self.vekad("audit", "plan.dxf")

    def test_the_demo_runs(self):
        samples = Path(__file__).resolve().parents[2] / "samples"
        report = self.report("run", samples / "plan.dxf", "-s", samples / "plan_tools.scr", "-o", "out.dxf")
        self.assertEqual({c["name"]: c["status"] for c in report["commands"]}.get("CHGTHEI"), "done")
        self.assertEqual(len(report["modified"]["TEXT"]), 6)
        self.assertEqual(len(report["erased"]["MTEXT"]), 2)


class Several(Case):
    def setUp(self):
        super().setUp()
        self.put("b.dxf", BLANK)
        self.put("sub/a.dxf", BLANK)
        self.put("broken.dxf", "no drawing")

    def test_one_that_fails_does_not_stop_the_others(self):
        done = self.vekad("run", "a.dxf", "broken.dxf", "b.dxf", "-c", LINE, "-o", "out/new", "--json", expect=3)
        reports = [json.loads(line) for line in done.stdout.splitlines()]
        self.assertEqual([(r["drawing"], r["status"]) for r in reports], [("a.dxf", 0), ("broken.dxf", 3), ("b.dxf", 0)])
        self.assertEqual(sorted(p.name for p in (self.folder / "out/new").iterdir()), ["a.dxf", "b.dxf"])

    def test_nothing_leaks_from_one_to_the_next(self):
        tell = '(princ (strcat "it is " (if seen "old" "new")))'
        done = self.vekad("run", "a.dxf", "b.dxf", "-c", tell, "-c", "(setq seen T)")
        self.assertIn("it is new", done.stdout)
        self.assertNotIn("it is old", done.stdout)

    def test_shared_input_and_transcript(self):
        self.vekad("run", "a.dxf", "b.dxf", "-s", "-", "--transcript", "t.txt", "--json", typed='(princ (strcat "he" "llo"))\n')
        self.assertEqual((self.folder / "t.txt").read_text().count("\nhello"), 2)

    def test_refusals(self):
        self.vekad("run", "a.dxf", "sub/a.dxf", "-o", "out", expect=2)
        self.vekad("run", "a.dxf", "b.dxf", "-o", "broken.dxf", expect=2)
        self.vekad("run", "a.dxf", "b.dxf", "-o", ".", expect=2)


class Interrupting(Case):
    def start(self, *arguments):
        return subprocess.Popen([VEKAD, *arguments], cwd=self.folder, text=True, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, stdin=subprocess.DEVNULL)

    def test_the_first_cancels_the_command(self):
        self.put("s.scr", f"(while T (setq i 1))\n{LINE}\n")
        run = self.start("run", "a.dxf", "-s", "s.scr", "-o", "b.dxf")
        time.sleep(1)
        run.send_signal(signal.SIGINT)
        run.communicate(timeout=30)
        self.assertEqual(self.entities("b.dxf"), {"LINE": 1})

    def test_the_second_ends_the_run(self):
        loop = "(while T (setq i 1))\n"
        self.put("s.scr", loop * 50 + LINE)
        run = self.start("run", "a.dxf", "-s", "s.scr", "-o", "b.dxf")
        time.sleep(1)
        run.send_signal(signal.SIGINT)
        time.sleep(0.5)
        run.send_signal(signal.SIGINT)
        run.communicate(timeout=30)
        self.assertEqual(run.returncode, 1)
        self.assertEqual(self.entities("b.dxf"), {})


class Terminal(Case):
    def read_until(self, screen, done):
        """What the terminal shows until it is done, or until the program ends."""
        seen = b""
        while not done(seen):
            self.assertTrue(select.select([screen], [], [], 30)[0], seen)
            try:
                block = os.read(screen, 4096)
            except OSError:
                break
            if not block:
                break
            seen += block
        return seen

    def prompted(self, seen):
        return seen.rstrip(b"\x1b[0123456789;mK").endswith(b"Command: ")

    def start(self):
        pid, screen = pty.fork()
        if pid == 0:
            os.chdir(self.folder)
            os.environ["TERM"] = "vt100"
            os.execv(VEKAD, [VEKAD, "run", "a.dxf", "-o", "b.dxf", "--profile", "profile"])
        return pid, screen

    def test_a_script_that_was_interrupted_is_resumed(self):
        self.put("s.scr", "POINT 1,1\nDELAY 30000\nPOINT 2,2\nPOINT 3,3\n")
        pid, screen = self.start()
        seen = self.read_until(screen, self.prompted)
        os.write(screen, b"SCRIPT s\r")
        seen += self.read_until(screen, lambda now: b"milliseconds" in now)
        time.sleep(0.5)
        os.kill(pid, signal.SIGINT)
        for keys in ("RESUME\r", "RESUME\r", "\x04"):
            seen += self.read_until(screen, self.prompted)
            os.write(screen, keys.encode())
        seen += self.read_until(screen, lambda _: False)
        os.waitpid(pid, 0)
        self.assertIn(b"No script has been interrupted.", seen)
        self.assertEqual(self.entities("b.dxf"), {"POINT": 3}, seen)

    def test_typing(self):
        pid, screen = self.start()
        # Tab completes a command's name; Ctrl-D ends the typing.
        seen = b""
        for keys in (LINE + "\r", "(defun c:zebra () (princ (strcat \"stri\" \"ped\")) (princ))\r", "ZEB\t\r", "\x04"):
            seen += self.read_until(screen, self.prompted)
            os.write(screen, keys.encode())
        seen += self.read_until(screen, lambda _: False)
        self.assertEqual(os.waitpid(pid, 0)[1], 0, seen)
        self.assertIn(b"Command: ", seen)
        self.assertIn(b"striped", seen)
        self.assertEqual(self.entities("b.dxf"), {"LINE": 1})
        self.assertIn("zebra", (self.folder / "profile/history").read_text())


if __name__ == "__main__":
    VEKAD = os.path.abspath(sys.argv.pop(1))
    unittest.main()

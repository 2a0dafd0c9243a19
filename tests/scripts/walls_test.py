#!/usr/bin/env python3
"""The rules of scripts/walls: what is allowed passes, and each fault that is put in is told."""

import importlib.machinery
import importlib.util
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
SCRIPT = Path(__file__).resolve().parents[2] / "scripts" / "walls"
loader = importlib.machinery.SourceFileLoader("walls", str(SCRIPT))
walls = importlib.util.module_from_spec(importlib.util.spec_from_loader("walls", loader))
loader.exec_module(walls)

SOUND = {
    "src/base/Geometry.h": "#include <vector>\n",
    "src/platform/Clock.h": '#include "base/Geometry.h"\n',
    "src/platform/Clock.cpp": '#include "platform/Clock.h"\n',
    "src/platform/CMakeLists.txt":
        "tallowbay_library(platform SOURCES Clock.cpp DEPENDS tallowbay::base)\n",
    "src/platform/headless/VirtualClock.h": '#include "platform/Clock.h"\n',
    "src/platform/posix/File.h": "#include <unistd.h>\n",
    "src/platform/x11/Session.h": '#include <xcb/xcb.h>\n#include "platform/posix/File.h"\n',
    "src/platform/x11/keys/Keys.h": '#include "platform/x11/Session.h"\n',
    "src/platform/wayland/Session.h": '#include "platform/posix/File.h"\n',
    "src/platform/qt/Screens.h": '#include <QScreen>\n#include "platform/Clock.h"\n',
    "src/platform/tesseract/Reader.h": "#include <tesseract/baseapi.h>\n",
    "src/capture/Compressor.h": '#include "platform/Clock.h"\n',
    "src/capture/Compressor.cpp": '#include "capture/Compressor.h"\n#include <string>\n',
    "src/capture/CompressorTest.cpp":
        '#include "capture/Compressor.h"\n#include "platform/headless/VirtualClock.h"\n'
        '#include "support/Folder.h"\n#include <gtest/gtest.h>\n',
    "src/capture/CMakeLists.txt":
        "tallowbay_library(capture SOURCES Compressor.cpp DEPENDS tallowbay::platform)\n"
        "tallowbay_test(capture SOURCES CompressorTest.cpp DEPENDS tallowbay::capture)\n",
    "src/app/Batch.cpp": '#include "capture/Compressor.h"\n',
    "src/app/HitTest.cpp": '#include "capture/Compressor.h"\n',
    "src/app/CMakeLists.txt":
        "tallowbay_library(app\n  SOURCES Batch.cpp HitTest.cpp # all\n  DEPENDS tallowbay::capture)\n",
    "src/views/ui/Toast.h": '#include <QWidget>\n#include "platform/qt/Screens.h"\n',
    "src/main/main.cpp": '#include "views/ui/Toast.h"\n#include "platform/x11/Session.h"\n',
    "tests/support/Folder.h": "",
}


class WallsTest(unittest.TestCase):
    def found(self, files=None):
        """What is told of a tree, with these files in place of those of the sound one."""
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {**SOUND, **(files or {})}.items():
                file = Path(folder, name)
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_text(text)
            return list(walls.Walls(Path(folder)).complaints())

    def told(self, name, text, words):
        found = self.found({name: text})
        self.assertEqual(len(found), 1, found)
        self.assertIn(name, found[0])
        self.assertIn(words, found[0])

    def test_a_sound_tree_passes(self):
        self.assertEqual(self.found(), [])

    def test_a_folder_that_is_not_in_the_table_fails(self):
        self.told("src/misc/Thing.h", "", "not in the table")
        self.told("src/app/deeper/Thing.h", "", "not in the table")

    def test_no_arrow_points_upwards(self):
        for name, header in (
                ("src/base/Up.h", "platform/Clock.h"),
                ("src/platform/Up.h", "capture/Compressor.h"),
                ("src/capture/Up.h", "app/Up.h"),
                ("src/platform/posix/Up.h", "platform/x11/Session.h"),
                ("src/platform/x11/Up.h", "platform/qt/Screens.h"),
                ("src/platform/x11/keys/Up.h", "platform/wayland/Session.h"),
                ("src/platform/x11/clipboard/Up.h", "platform/x11/keys/Keys.h"),
                ("src/platform/wayland/Up.h", "platform/x11/Session.h"),
                ("src/platform/qt/Up.h", "platform/x11/Session.h"),
                ("src/platform/qt/Up.h", "platform/posix/File.h"),
                ("src/platform/tesseract/Up.h", "platform/qt/Screens.h"),
                ("src/capture/Up.h", "platform/posix/File.h"),
                ("src/views/Up.h", "platform/x11/Session.h"),
                ("src/views/Up.h", "platform/posix/File.h"),
                ("src/views/Up.h", "main/Up.h")):
            with self.subTest(name=name, header=header):
                found = self.found({"src/app/Up.h": "", "src/main/Up.h": "",
                                    name: f'#include "{header}"\n'})
                self.assertIn(f"{name}: {header}: ", found[0])
                self.assertIn("must not know", found[0])

    def test_the_logic_includes_the_standard_library_only(self):
        for header in ("QString", "QtCore/QString", "unistd.h", "sys/stat.h", "xcb/xcb.h",
                       "nlohmann/json.hpp"):
            with self.subTest(header=header):
                self.told("src/capture/Paint.h", f"  # include <{header}>\n", "not for capture/")

    def test_a_library_is_known_to_its_own_backend_only(self):
        for folder, header in (
                ("platform", "QString"), ("platform/posix", "QString"),
                ("platform/posix", "xcb/xcb.h"), ("platform/x11", "QWidget"),
                ("platform/x11/keys", "wayland-client.h"), ("platform/wayland", "xcb/xcb.h"),
                ("platform/qt", "xcb/xcb.h"), ("platform/qt", "tesseract/baseapi.h"),
                ("platform/posix", "omp.h"), ("views", "xcb/xcb.h"),
                ("platform/headless", "unistd.h"), ("base", "gtest/gtest.h")):
            with self.subTest(folder=folder, header=header):
                self.told(f"src/{folder}/Up.h", f"#include <{header}>\n", f"not for {folder}/")

    def test_what_ships_uses_nothing_of_the_tests(self):
        for header in ("platform/headless/VirtualClock.h", "support/Folder.h"):
            with self.subTest(header=header):
                found = self.found({"src/app/Up.h": f'#include "{header}"\n'})
                self.assertEqual(len(found), 1, found)
        self.assertEqual(len(self.found({
            "src/app/TestBatch.h": "", "src/app/Up.h": '#include "app/TestBatch.h"\n'})), 1)

    def test_a_name_that_ends_like_a_test_makes_none(self):
        self.told("src/app/HitTest.cpp", '#include <gtest/gtest.h>\n#include "capture/Compressor.h"\n',
                  "not for app/")

    def test_a_source_that_a_test_lists_too_still_ships(self):
        found = self.found({
            "src/app/CMakeLists.txt": SOUND["src/app/CMakeLists.txt"]
            + "tallowbay_test(app SOURCES Batch.cpp DEPENDS tallowbay::app)\n",
            "src/app/Batch.cpp": '#include "capture/Compressor.h"\n#include <QWidget>\n'})
        self.assertEqual(len(found), 1, found)

    def test_a_path_that_climbs_fails(self):
        self.told("src/app/Up.h", '#include "capture/../app/Batch.h"\n', "climbs")

    def test_every_kind_of_header_is_read(self):
        for suffix in ("hpp", "inl", "inc"):
            with self.subTest(suffix=suffix):
                self.told(f"src/app/Up.{suffix}", "#include <QWidget>\n", "not for app/")

    def test_an_include_of_nothing_fails(self):
        self.told("src/capture/Lost.h", '#include "capture/Gone.h"\n', "no such file")

    def test_a_library_declares_what_it_uses_itself(self):
        found = self.found({
            "src/app/Batch.cpp": '#include "capture/Compressor.h"\n#include "platform/Clock.h"\n'})
        self.assertEqual(found, ["src/app/CMakeLists.txt: app: Batch.cpp uses tallowbay::platform, "
                                 "which DEPENDS does not name"])

    def test_a_library_declares_nothing_that_it_does_not_use(self):
        found = self.found({
            "src/app/Batch.cpp": "", "src/app/HitTest.cpp": ""})
        self.assertEqual(found, ["src/app/CMakeLists.txt: app: nothing here uses tallowbay::capture, "
                                 "which DEPENDS names"])


if __name__ == "__main__":
    unittest.main()

"""The floor check finds each kind of offence in a small tree of its own, and nothing in a tree without any."""
import os
import subprocess
import sys
import tempfile
import unittest

TOOL = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools", "check_floors")

SOUND_TREE = {
    "platform/Frame.h": "#pragma once\n",
    "ui/Clock.h": '#pragma once\n#include <chrono>\n#include "platform/Frame.h"\n',
    "ui/Fonts_linux.cpp": '#include "ui/Clock.h"\n#include <fontconfig/fontconfig.h>\n',
    "drawing/Shape.h": '#include "ui/Clock.h"\n',
    "video/Tile.cpp": '#include "drawing/Shape.h"\n#include "video/Tile.h"\n',
    "video/Tile.h": "// SDLinterface_GlobalInit() is far above.\n",
    "room/Room.cpp": '#include "video/Tile.h"\nvoid Enter(Door& door) { door.EnterRoom(1); }\n',
    "interface/SDLinterface.h": "void SDLinterface_GlobalInit(void);\n",
    "interface/exports.txt": "EnterRoom\nSDLinterface_GlobalInit\n",
    "interface/Entry.cpp": '#include "interface/SDLinterface.h"\n#include "room/../room/Room.h"\n',
    "room/Room.h": "#pragma once\n",
    "engine/Engine.h": '#include "platform/Frame.h"\n',
    "engine/Player.cpp": '#include "engine/Engine.h"\n#include <unistd.h>\n',
    "guest/Guest.cpp": '#include "engine/Player.h"\n#include "platform/Frame.h"\n#include <unistd.h>\n',
    "host/main.cpp": '#include "engine/Engine.h"\n#include "interface/SDLinterface.h"\n#include "main.moc"\n',
    "tests/video/TileTest.cpp": '#include "engine/Player.h"\n#include "room/Room.h"\n',
    "engine/Player.h": "",
}


class Floors(unittest.TestCase):
    def check(self, **changed):
        """Runs the check on the sound tree with some files changed; keys have '__' for '/'."""
        tree = dict(SOUND_TREE, **changed)
        with tempfile.TemporaryDirectory() as root:
            for path, text in tree.items():
                os.makedirs(os.path.dirname(os.path.join(root, path)), exist_ok=True)
                with open(os.path.join(root, path), "w", encoding="utf-8") as file:
                    file.write(text)
            done = subprocess.run(
                [sys.executable, TOOL, root], capture_output=True, text=True, stdin=subprocess.DEVNULL
            )
        return done.returncode, done.stdout

    def assert_offence(self, words, path, text, **more):
        code, output = self.check(**{path: text}, **more)
        self.assertEqual(code, 1, output)
        self.assertIn("1 offences", output)
        for word in words:
            self.assertIn(word, output)

    def test_a_sound_tree_passes(self):
        code, output = self.check()
        self.assertEqual(code, 0, output)

    def test_an_empty_tree_is_no_success(self):
        with tempfile.TemporaryDirectory() as root:
            self.assertNotEqual(subprocess.run([sys.executable, TOOL, root], capture_output=True).returncode, 0)

    def test_an_include_of_a_higher_floor_is_found(self):
        self.assert_offence(
            ["ui/Bar.h:2: ui/ may not include video/Tile.h"], "ui/Bar.h", '\n#include "video/Tile.h"\n'
        )

    def test_angle_brackets_do_not_hide_it(self):
        self.assert_offence(["video/Tile.h"], "ui/Bar.h", "#include <video/Tile.h>\n")

    def test_neighbours_on_one_level_do_not_see_each_other(self):
        self.assert_offence(["integration/ may not include drawing/"], "integration/Mic.cpp", '#include "drawing/Shape.h"')

    def test_the_library_does_not_see_the_engine(self):
        self.assert_offence(["engine/Engine.h"], "interface/Start.cpp", '#include "engine/Engine.h"\n')

    def test_the_engine_does_not_see_the_library(self):
        self.assert_offence(["ui/Clock.h"], "engine/Clock.cpp", '#include "ui/Clock.h"\n')

    def test_the_host_sees_two_headers_only(self):
        self.assert_offence(["engine/Player.h"], "host/Window.cpp", '#include "engine/Player.h"\n')
        self.assert_offence(["platform/Frame.h"], "host/Window.cpp", '#include "platform/Frame.h"\n')

    def test_a_guest_sees_neither_the_library_nor_the_host(self):
        self.assert_offence(["ui/Clock.h"], "guest/Clock.cpp", '#include "ui/Clock.h"\n')
        self.assert_offence(["SDLinterface.h"], "guest/Face.cpp", '#include "interface/SDLinterface.h"\n')
        self.assert_offence(["host/Room.h"], "guest/Host.cpp", '#include "host/Room.h"\n', **{"host/Room.h": ""})

    def test_nobody_sees_the_guests(self):
        self.assert_offence(["guest/Guest.h"], "engine/Party.cpp", '#include "guest/Guest.h"\n', **{"guest/Guest.h": ""})
        self.assert_offence(["guest/Guest.h"], "host/Party.cpp", '#include "guest/Guest.h"\n', **{"guest/Guest.h": ""})

    def test_the_house_does_not_see_the_tests(self):
        self.assert_offence(["tests/Fake.h"], "room/Door.cpp", '#include "tests/Fake.h"\n', **{"tests/Fake.h": ""})

    def test_a_commented_include_is_none(self):
        code, output = self.check(**{"ui/Bar.h": '// #include "video/Tile.h"\n/*\n#include "room/Room.h"\n*/\n'})
        self.assertEqual(code, 0, output)

    def test_a_loop_is_found(self):
        self.assert_offence(
            ["include loop", "ui/A.h", "ui/B.h"],
            "ui/A.h",
            '#include "ui/B.h"\n',
            **{"ui/B.h": '#include "ui/C.h"\n', "ui/C.h": '#include "ui/A.h"\n'},
        )

    def test_a_file_that_includes_itself_is_found(self):
        self.assert_offence(["include loop"], "tests/Self.h", '#include "tests/Self.h"\n')

    def test_an_include_that_is_not_rooted_is_found(self):
        self.assert_offence(["not written from the project's root"], "ui/Bar.cpp", '#include "Clock.h"\n')

    def test_an_include_of_nothing_is_found(self):
        self.assert_offence(["not in the tree"], "ui/Bar.cpp", '#include "ui/Gone.h"\n')

    def test_a_redeclared_export_is_found(self):
        declaration = "void SDLinterface_GlobalInit(void);\n"
        self.assert_offence(["SDLinterface_GlobalInit"], "room/Reach.cpp", 'extern "C" ' + declaration)
        self.assert_offence(["SDLinterface_GlobalInit"], "engine/Reach.cpp", 'extern "C" {\n' + declaration + "}\n")

    def test_a_redeclared_export_of_a_plain_name_is_found(self):
        self.assert_offence(["EnterRoom"], "room/Reach.cpp", 'extern "C" int EnterRoom(void*);\n')
        self.assert_offence(["EnterRoom"], "room/Reach.cpp", 'extern "C" {\nint Other();\nint EnterRoom(void*);\n}\n')

    def test_a_function_of_an_own_namespace_may_share_a_plain_name(self):
        text = 'extern "C" { int Other(); }\nnamespace Door { int EnterRoom(int); }\n'
        code, output = self.check(**{"room/Reach.cpp": text})
        self.assertEqual(code, 0, output)

    def test_an_operating_systems_header_in_a_common_file_is_found(self):
        self.assert_offence(["<unistd.h>"], "ui/Fonts.cpp", "#include <unistd.h>\n")
        self.assert_offence(["<X11/Xlib.h>"], "ui/Fonts.cpp", "#include <X11/Xlib.h>\n")


if __name__ == "__main__":
    unittest.main()

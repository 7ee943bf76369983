#!/usr/bin/env python3
"""Each check finds what it is there for, and leaves good files alone: selftest.py CLASS..."""
import base64
import pathlib
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
TOOLS = HERE.parent.parent / "Tools"


def run(*command):
    done = subprocess.run([sys.executable, *map(str, command)], capture_output=True, text=True, check=False)
    return done.returncode, done.stdout.splitlines(), done.stderr


class CheckCase(unittest.TestCase):
    script = ""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)

    def write(self, name, text=""):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        return path

    def assert_found(self, *places):
        """The check reports exactly these "file:line" places."""
        status, lines, error = run(HERE / self.script, self.root)
        self.assertEqual(error, "")
        self.assertEqual([":".join(line.split(":")[:2]) for line in lines], list(places))
        self.assertEqual(status, 1 if places else 0)


class Sizes(CheckCase):
    script = "sizes.py"

    def test_500_lines_are_allowed_and_501_are_not(self):
        self.write("Src/Long.cpp", "int a;\n" * 500)
        self.assert_found()
        self.write("Src/Long.cpp", "int a;\n" * 501)
        self.assert_found("Src/Long.cpp:501")

    def test_other_files_may_be_longer(self):
        self.write("Res/table.json", "1\n" * 900)
        self.assert_found()


    def test_25_lines_of_a_function_are_allowed_and_26_are_not(self):
        body = "    f();\n" * 25
        self.write("Src/Plugin/Function.cpp", "void A()\n{\n" + body + "}\n")
        self.assert_found()
        self.write("Src/Plugin/Function.cpp", "void A()\n{\n}\n\nvoid B()\n{\n" + body + "    g();\n}\n")
        self.assert_found("Src/Plugin/Function.cpp:6")

    def test_classes_and_tests_may_be_longer(self):
        body = "    int m_i;\n" * 40
        self.write("Src/Plugin/Class.h", "class A\n{\n" + body + "};\n")
        self.write("Tests/Engine/Table.cpp", "void A()\n{\n" + body + "}\n")
        self.assert_found()


class Sleeps(CheckCase):
    script = "sleeps.py"

    def test_every_kind_of_sleep_is_found(self):
        calls = ["QTest::qWait(5);", "QTest::qSleep(5);", "QThread::msleep(5);", "QThread::sleep(1);", "usleep(9);",
                 "std::this_thread::sleep_for(1s);", "std::this_thread::sleep_until(t);", "Sleep(3);"]
        self.write("Tests/Engine/TstA.cpp", "\n".join(calls))
        self.assert_found(*[f"Tests/Engine/TstA.cpp:{line}" for line in range(1, len(calls) + 1)])

    def test_sleeping_scripts_are_found(self):
        self.write("Tests/EndToEnd/run.sh", "start\nsleep 1\nwhile busy; do sleep 0.1; done\n")
        self.write("Tests/EndToEnd/run.py", "import time\ntime.sleep(1)\n")
        self.assert_found("Tests/EndToEnd/run.py:2", "Tests/EndToEnd/run.sh:2", "Tests/EndToEnd/run.sh:3")

    def test_every_stopwatch_is_found(self):
        calls = ["QElapsedTimer timer;", "const auto from = std::chrono::steady_clock::now();",
                 "QVERIFY(std::chrono::system_clock::now() < end);", "clock_gettime(CLOCK_MONOTONIC, &now);",
                 "QVERIFY(GetTickCount() - before < 5000);", "QVERIFY(start.msecsTo(end) < 400);",
                 "QVERIFY(start.secsTo(end) < 4);"]
        self.write("Tests/Engine/TstC.cpp", "\n".join(calls))
        self.write("Tests/EndToEnd/run.py", "before = time.monotonic()\nassert time.time() < 5\n")
        self.write("Tests/EndToEnd/run.sh", "start\n((SECONDS < 5)) || exit 1\n")
        self.assert_found("Tests/EndToEnd/run.py:1", "Tests/EndToEnd/run.py:2", "Tests/EndToEnd/run.sh:2",
                          *[f"Tests/Engine/TstC.cpp:{line}" for line in range(1, len(calls) + 1)])

    def test_measuring_is_left_to_benchmarks(self):
        self.write("Bench/A.cpp", "QElapsedTimer clock;\n")
        self.write("Tests/A.cpp", "QDeadlineTimer deadline(9000);\nf.wait_for(std::chrono::seconds(9));\n")
        self.assert_found()

    def test_waiting_for_an_event_is_no_sleep(self):
        self.write("Tests/TstB.cpp", "spy.wait(5000);\nQTRY_COMPARE(a, b);\nQTest::qWaitFor(f, 9);\nm_bAsleep(1);\n")
        self.write("Host/Site/Slow.cpp", "std::this_thread::sleep_for(delay);\n")
        self.assert_found()


class Wording(CheckCase):
    script = "wording.py"

    def test_each_forbidden_word_is_found(self):
        bad = ["// TO" + "DO later", "// FIX" + "ME", "XX" + "X", "not imple" + "mented", "a place" + "holder",
               "see the sp" + "ec", "the Speci" + "fication says", "see Par" + "t 3.1", "Par" + "ts 1.2 and 2.1",
               "iss" + "ue 12", "cd /wo" + "rk/main", "http://files.some" + "where.org/a"]
        self.write("Docs/A.md", "\n".join(bad))
        self.assert_found(*[f"Docs/A.md:{line}" for line in range(1, len(bad) + 1)])

    def test_ordinary_words_pass(self):
        self.write("Docs/B.md", "a special part, 3.1 MB\nQTemporaryFile(\"aXXXXXX\")\nbuild/work/x\nhttp://127.0.0.1:1/\n"
                                "http://www.w3.org/2000/svg\nhttps://example.org/x\nunspecified\nissued 3 times\n")
        self.assert_found()

    def test_a_file_name_counts_too(self):
        self.write("Docs/Sp" + "ec.md")
        self.assert_found("Docs/Sp" + "ec.md:0")


class Arrows(CheckCase):
    script = "arrows.py"

    def setUp(self):
        super().setUp()
        for name in ["Sdk/KXBase/Bus.h", "Sdk/Plugin/Interface.h", "Src/Model/Record.h", "Src/Module/Engine.h",
                     "Src/DownloadWidget/Panel.h", "Src/Plugin/Object.h", "Host/Site/Site.h", "Host/Client/Main.h",
                     "Tests/FakeHost/Fake.h"]:
            self.write(name)

    def assert_judged(self, name, *cases):
        """Of these (include line, allowed) pairs exactly those that are not allowed are reported."""
        self.write(name, "".join(f"#include {text}\n" for text, _ in cases))
        self.assert_found(*[f"{name}:{line}" for line, (_, good) in enumerate(cases, start=1) if not good])

    def test_the_model_knows_the_contract_only(self):
        self.assert_judged("Src/Model/a.cpp", ('"Model/Record.h"', True), ('"KXBase/Bus.h"', True), ("<vector>", True),
                           ('"Module/Engine.h"', False), ('"DownloadWidget/Panel.h"', False),
                           ('"Plugin/Object.h"', False))

    def test_the_engine_knows_the_model_and_nothing_above(self):
        self.assert_judged("Src/Module/a.cpp", ('"Model/Record.h"', True), ("<QtCore/QString>", True),
                           ('"DownloadWidget/Panel.h"', False), ('"Plugin/Object.h"', False),
                           ('"Plugin/Interface.h"', True))

    def test_the_panel_knows_the_engine_but_not_the_plug_in_object(self):
        self.assert_judged("Src/DownloadWidget/a.cpp", ('"Module/Engine.h"', True), ('"ui_Panel.h"', True),
                           ('"Plugin/Object.h"', False))

    def test_the_plug_in_knows_neither_host_nor_tests(self):
        self.assert_judged("Src/Plugin/a.h", ('"DownloadWidget/Panel.h"', True), ('"Host/Site/Site.h"', False),
                           ('"../../Host/Site/Site.h"', False), ('"FakeHost/Fake.h"', False), ('"gone.h"', False))

    def test_the_plug_in_uses_three_qt_modules_and_the_standard_library(self):
        self.assert_judged("Src/Module/b.h", ("<QtGui/QImage>", True), ("<QtWidgets/QWidget>", True),
                           ("<QtNetwork/QNetworkReply>", False), ("<QtSql/QSqlQuery>", False), ("<QString>", False),
                           ("<nlohmann/json.hpp>", False), ("<unistd.h>", False), ("<string>", True))

    def test_the_platform_lives_in_one_file(self):
        platform = [("<sys/statvfs.h>", True), ("<windows.h>", True), ("<unistd.h>", False)]
        self.assert_judged("Src/Module/DiskFreeSpace.cpp", *platform)
        self.write("Src/Module/DiskFreeSpace.cpp")
        self.assert_judged("Src/Module/c.cpp", *[(text, False) for text, _ in platform])

    def test_the_contract_knows_itself_only(self):
        self.assert_judged("Sdk/KXBase/a.h", ('"KXBase/Bus.h"', True), ('"Model/Record.h"', False),
                           ('"Host/Site/Site.h"', False), ("<spdlog/spdlog.h>", False))

    def test_the_host_knows_the_contract_and_the_records(self):
        self.assert_judged("Host/Site/a.cpp", ('"KXBase/Bus.h"', True), ('"Model/Record.h"', True),
                           ("<QtNetwork/QTcpServer>", True), ("<httplib.h>", True), ('"Host/Site/Site.h"', True),
                           ('"Module/Engine.h"', False), ('"Plugin/Object.h"', False), ('"Host/Client/Main.h"', False))

    def test_the_client_knows_the_host_but_not_the_plug_in(self):
        self.assert_judged("Host/Client/a.cpp", ('"Host/Site/Site.h"', True), ('"Plugin/Interface.h"', True),
                           ('"Plugin/Object.h"', False), ('"Module/Engine.h"', False))

    def test_the_fake_host_knows_the_contract_only(self):
        self.assert_judged("Tests/FakeHost/a.cpp", ('"FakeHost/Fake.h"', True), ('"KXBase/Bus.h"', True),
                           ('"Model/Record.h"', False), ('"Host/Site/Site.h"', False))

    def test_no_target_of_the_host_links_the_plug_in(self):
        self.write("Host/Client/CMakeLists.txt", "add_dependencies(kxclient KXRecordManage)\n"
                                                 "target_link_libraries(kxclient PRIVATE KXRecordModel\n"
                                                 "    KXRecordManage)\n")
        self.assert_found("Host/Client/CMakeLists.txt:3")


class Exports(CheckCase):
    def assert_exports(self, listed, *messages):
        source = self.write("a.cpp", 'extern "C" int Given() { return 1; } struct Kind { void Run(); };\n'
                                     "void Kind::Run() {}\n")
        library = self.root / "a.so"
        subprocess.run(["c++", "-shared", "-fPIC", "-o", library, source], check=True)
        entries = self.write("exports.txt", listed)
        status, lines, error = run(HERE / "exports.py", library, entries)
        self.assertEqual(error, "")
        self.assertEqual([line for line in lines if line], [f"{entries}{message}" for message in messages])
        self.assertEqual(status, 1 if messages else 0)

    def test_the_exact_list_passes(self):
        self.assert_exports("# names\nGiven\nKind::Run()\n")

    def test_a_symbol_too_many_is_found(self):
        self.assert_exports("Given\n", ":1: exported, but not listed: Kind::Run()")

    def test_a_missing_symbol_is_found(self):
        self.assert_exports("Given\nKind::Run()\nGone\n", ":3: not exported: Gone")

    def test_needed_libraries_are_compared(self):
        source = self.write("a.cpp", "int Given() { return 1; }\n")
        library = self.root / "a.so"
        subprocess.run(["c++", "-shared", "-fPIC", "-nostdlib", "-Wl,--no-as-needed", "-o", library, source, "-lm"],
                       check=True)
        for listed, messages in (("libm.so.6\n", []), ("libm.so.6\nlibd.so\n", [":2: not imported: libd.so"]),
                                 ("# none\n", [":0: imported, but not listed: libm.so.6"])):
            entries = self.write("imports.txt", listed)
            status, lines, error = run(HERE / "exports.py", "--imports", library, entries)
            self.assertEqual((status, [line for line in lines if line], error),
                             (1 if messages else 0, [f"{entries}{message}" for message in messages], ""))


class Closure(CheckCase):
    """Needs the cross compiler: registered for Windows builds only."""

    def judged(self, *names):
        """A program that needs b.dll, which needs nothing but the system; only these files are in the folder."""
        made = self.root / "made"
        folder = self.root / "folder"
        for place in (made, folder):
            place.mkdir()
        plain = ["x86_64-w64-mingw32-gcc", "-nostdlib", "-Wl,--entry=Run", "-o"]
        library = self.write("b.c", "__declspec(dllexport) int Given() { return 1; }\nint Run() { return 1; }\n")
        program = self.write("a.c", "int Given(); int GetTickCount();\nint Run() { return Given() + GetTickCount(); }\n")
        subprocess.run([*plain, made / "b.dll", "-shared", library], check=True)
        subprocess.run([*plain, made / "c.dll", "-shared", library], check=True)
        subprocess.run([*plain, made / "a.exe", program, made / "b.dll", "-lkernel32"], check=True)
        for name in names:
            (folder / name).write_bytes((made / name).read_bytes())
        system = self.write("system.txt", "# there everywhere\nKernel32.DLL\n")
        status, lines, error = run(HERE / "closure.py", folder, system)
        self.assertEqual(error, "")
        return status, [line for line in lines if line]

    def test_a_whole_folder_passes(self):
        self.assertEqual(self.judged("a.exe", "b.dll"), (0, []))

    def test_a_missing_dll_is_found(self):
        self.assertEqual(self.judged("a.exe"), (1, ["a.exe: needs b.dll, which is not there"]))

    def test_a_dll_too_many_is_found(self):
        self.assertEqual(self.judged("a.exe", "b.dll", "c.dll"), (1, ["c.dll: nobody needs it"]))

    def test_an_empty_folder_is_not_whole(self):
        self.assertEqual(self.judged(), (1, [f"{self.root / 'folder'}: no program in it"]))


class Canaries(CheckCase):
    script = "canaries.py"

    def judged(self, **files):
        header = self.write("Canary.h", 'constexpr const char* Words[] = {"Ca+na ry"};')
        for name, content in files.items():
            path = self.root / "scratch" / "ATest" / "folder" / name.replace("_", ".")
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content)
        status, lines, error = run(HERE / self.script, self.root / "scratch", header)
        self.assertEqual(error, "")
        self.assertEqual([path.name for path in (self.root / "scratch").rglob("*")], ["ATest"])
        return status, sorted({line.partition(":")[0] for line in lines[:-1]}), lines[-1]

    def test_each_form_of_a_word_is_found(self):
        quoted = {"plain_log": b"password[Ca+na ry]", "url_log": b"?p=Ca%2Bna%20ry&", "query_log": b"?p=Ca%2Bna+ry&",
                  "utf16_db": "xCa+na ryx".encode("utf-16-le"), "stream_dat": "xCa+na ryx".encode("utf-16-be"),
                  "hex_txt": b"43612b6e61207279", "middle_bin": b"\0" * 5000 + b"Ca+na ry" + b"\0" * 5000}
        for before in range(4):
            quoted[f"base{before}_txt"] = base64.b64encode(b"admin:"[:before] + b"Ca+na ry and more")
        names = sorted("ATest/folder/" + name.replace("_", ".") for name in quoted)
        self.assertEqual(self.judged(**quoted), (1, names, f"{len(quoted)} files looked at"))

    def test_a_file_of_that_name_is_found(self):
        self.assertEqual(self.judged(**{"Ca+na ry": b"x"}), (1, ["ATest/folder/Ca+na ry"], "1 files looked at"))

    def test_masked_words_and_given_ones_pass(self):
        self.assertEqual(self.judged(client_log=b"password[***] Ca+na", config_json=b"Ca+na ry",
                                     records_json=b"Ca+na ry"), (0, [], "3 files looked at"))

    def test_without_words_nothing_is_said_to_be_clean(self):
        (self.root / "scratch").mkdir()
        header = self.write("Empty.h")
        self.assertEqual(run(HERE / self.script, self.root / "scratch", header)[0], 1)


class Counting(CheckCase):
    def assert_counted(self, cases, last_line, status):
        body = "".join(f'<testcase name="{name}" status="{state}">{skipped}<system-out>{output}</system-out></testcase>'
                       for name, state, output, skipped in cases)
        path = self.write("junit.xml", f"<testsuite>{body}</testsuite>")
        result, lines, error = run(TOOLS / "count-tests.py", path)
        self.assertEqual((error, lines[-1], result), ("", last_line, status))

    def test_totals_are_summed_and_other_entries_count_once(self):
        self.assert_counted([("a", "run", "Totals: 5 passed, 0 failed, 0 skipped, 0 blacklisted, 1ms\n"
                                          "Totals: 7 passed, 0 failed, 0 skipped, 0 blacklisted, 1ms", ""),
                             ("b", "run", "", "")], "13 passed, 0 failed", 0)

    def test_a_failed_function_counts_as_itself(self):
        self.assert_counted([("a", "fail", "Totals: 5 passed, 2 failed, 1 skipped, 0 blacklisted, 1ms", "")],
                            "5 passed, 2 failed, 1 skipped", 1)

    def test_a_crash_counts_as_a_failure(self):
        self.assert_counted([("a", "fail", "PASS   : A::b()", "")], "0 passed, 1 failed", 1)

    def test_a_failure_after_good_totals_counts(self):
        self.assert_counted([("a", "fail", "Totals: 5 passed, 0 failed, 0 skipped, 0 blacklisted, 1ms\nleak", "")],
                            "5 passed, 1 failed", 1)

    def test_a_program_that_is_missing_counts_as_a_failure(self):
        self.assert_counted([("a", "run", "", ""), ("b", "notrun", "Unable to find executable", "")],
                            "1 passed, 1 failed", 1)

    def test_what_skips_itself_is_counted_as_skipped(self):
        self.assert_counted([("a", "run", "", ""), ("b", "notrun", "", '<skipped message="SKIP_RETURN_CODE=77"/>'),
                             ("c", "disabled", "Disabled", "")], "1 passed, 0 failed, 2 skipped", 0)

    def test_no_test_at_all_is_no_success(self):
        self.assert_counted([], "0 passed, 0 failed", 1)


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/python3
"""Measures the whole program on a screen of its own, each time beside a named baseline in the same run.

usage: benchmarks/desktop.py [--runs N] [MEASURE...]

Measures: handoff warm layout cold scripts history drag idle hover memory; without a name all of them. The programs must have
been built: script/bench does that. A slow figure is a line in the table and no failure; the exit status is 1 when
something could not be measured that should have been. Peers that are not installed are skipped.
"""

import argparse
import os
import subprocess
import sys
import time

from measuring import desk, programs, table
from measuring.desk import NotMeasured
from measuring.hand import Hand
from measuring.history import TimedHistory, write_visits
from measuring.loads import TimedSite, copy_without_scripts
from measuring.site import Site

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BIN = os.environ.get("VELTO_BIN", os.path.join(ROOT, "build/bin"))
TOOLS = os.environ.get("VELTO_BENCHMARK_PROGRAMS", os.path.join(ROOT, "build/release/benchmarks"))
INSIDE = "VELTO_BENCHMARK_SCREEN"  # set once we are on a screen of our own

PATIENCE = 20  # seconds for a pixel
IDLE_SETTLING = 33  # seconds: the engine tidies up once 10, 20 and 30 s after a window has gone, and then rests
IDLE_SECONDS = 5
HANDOFF_RUNS = 40

WARM_LIMITS = {"chromium --app": 0.6, "bare window": 1.2}
COLD_LIMITS = {"surf": 1.1, "chromium --app": 1.0}
LAYOUT_WINDOWS = 10
LAYOUT_LIMITS = {"first window mapped": 1.1, "last window mapped": 10, "first pixel": None}
HANDOFF_LIMIT = 10  # milliseconds
PRINT_URL_LIMIT = 30  # milliseconds
LOADS = 40  # of one page, in one window
SCRIPTS_LIMIT = 1.02
HISTORY_RUNS = 3
HISTORY_LIMITS = {"first rows": 1500, "keystroke": 50}  # milliseconds
DRAG_MOVES = 1000
DOTS = (15, 14)  # points from the window's upper left corner
DRAG_LIMIT = 50  # milliseconds: three frames


class Bench:
    def __init__(self, runs):
        self.runs = runs
        self.site = Site()
        self.windows = desk.Windows()
        self.rows = []
        home = os.environ["HOME"]
        self.velto = programs.Velto(BIN)
        self.chromium = programs.Chromium(os.path.join(home, "chromium-profile"))
        self.surf = programs.Surf()
        self.bare = programs.BareWindow(os.path.join(TOOLS, "barewindow"), os.path.join(home, "urls"))

    # ---- One page

    def first_pixel(self, program):
        """Milliseconds from asking the program for a new page until it is on the screen, and until it was loaded."""
        colour, url = self.site.new_page()
        asked = subprocess.run([os.path.join(TOOLS, "firstpixel"), colour, str(PATIENCE), *program.command(url)],
                               capture_output=True, text=True, check=False)
        if asked.returncode != 0:
            raise NotMeasured(f"{program.name}: {asked.stderr.strip()}")
        started, taken = map(float, asked.stdout.split())
        return taken, (self.site.asked_at(colour) - started) * 1000

    def open_and_close(self, program):
        before = self.windows.ids()
        times = self.first_pixel(program)
        desk.wait_until_quiet()
        self.windows.close(self.windows.ids() - before)
        desk.wait_until_quiet()
        return times

    def start(self, program):
        """Gets a program running, with its first page seen."""
        if hasattr(program, "start"):
            program.start()
        if program is self.chromium:
            self.first_pixel(program)  # this window stays: without one it would end
            desk.wait_until_quiet()
        self.open_and_close(program)

    def installed(self, candidates):
        for program in candidates:
            missing = program.missing()
            if missing and program in (self.velto, self.bare):
                raise NotMeasured(missing)
            if missing:
                print(f"skipped {program.name}: {missing}")
        return [program for program in candidates if not program.missing()]

    # ---- Measures

    def in_turn(self, candidates, once):
        """The times of each candidate, taken in turn so that a busy machine is busy for all."""
        times = {program.name: [] for program in candidates}
        for _ in range(self.runs):
            for program in candidates:
                times[program.name].append(once(program))
        return times

    def compare(self, measure, times, limits):
        pixels = {name: [pixel for pixel, _ in values] for name, values in times.items()}
        ours = pixels[self.velto.name]
        for name, limit in limits.items():
            if name in pixels:
                ratio = table.median(ours) / table.median(pixels[name])
                self.rows.append(table.Row(f"{measure}, ms", table.spread(ours), name, table.spread(pixels[name]),
                                           ratio, limit=limit))
        asked = ", ".join(f"{name} {table.median([asked for _, asked in values]):.0f}"
                          for name, values in times.items())
        print(f"{measure}: ms until the page was asked for: {asked}")

    def warm(self):
        candidates = self.installed([self.velto, self.chromium, self.bare])
        for program in candidates:
            self.start(program)
        self.compare("one more window", self.in_turn(candidates, self.open_and_close), WARM_LIMITS)

    def layout(self):
        """A layout opened by the program that runs, beside one more window of it."""
        self.installed([self.velto])
        name, colour = self.save_layout()
        candidates = {"layout": lambda: self.open_layout(name, colour), "one window": self.open_one}
        times = {which: [] for which in candidates}
        for _ in range(self.runs):
            for which, once in candidates.items():
                times[which].append(once())
        for at, (measure, limit) in enumerate(LAYOUT_LIMITS.items()):
            ours, theirs = ([run[at] for run in times[which]] for which in candidates)
            self.rows.append(table.Row(f"layout of {LAYOUT_WINDOWS} windows, {measure}, ms", table.spread(ours),
                                       "one more window", table.spread(theirs),
                                       table.median(ours) / table.median(theirs), limit=limit))

    def save_layout(self):
        """Windows as large as the others that are measured, all with pages of one colour. None is open at the end."""
        name, (colour, url) = "benchmark", self.site.new_page()
        velto = os.path.join(BIN, "velto")
        for number in range(LAYOUT_WINDOWS):
            desk.run([*self.velto.command(f"{url}#{number}"), "--x", str(40 * number), "--y", str(20 * number)])
        self.wait_for_windows(set(), LAYOUT_WINDOWS)
        desk.wait_until_quiet(calm=1)
        desk.run([velto, "layouts", "save", name])
        desk.wait_until_quiet(calm=1)
        self.windows.close(self.windows.ids())
        if desk.run([velto, "layouts", "open", name, "--print-url"]) != 0:
            raise NotMeasured("the layout was not saved")
        return name, colour

    def open_layout(self, name, colour):
        return self.map_and_close(colour, LAYOUT_WINDOWS, [os.path.join(BIN, "velto"), name])

    def open_one(self):
        colour, url = self.site.new_page()
        return self.map_and_close(colour, 1, self.velto.command(url))

    def map_and_close(self, colour, count, command):
        """Milliseconds until the first and the last of that many windows were mapped, and until the colour was on the
        screen.
        """
        desk.wait_until_quiet(calm=1)  # long enough for the next spare, for both alike
        before = self.windows.ids()
        watch = subprocess.Popen([os.path.join(TOOLS, "firstpixel"), colour, str(PATIENCE), *command],
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        first, last = self.wait_for_windows(before, 1), self.wait_for_windows(before, count)
        said, complaint = watch.communicate()
        if watch.returncode != 0:
            raise NotMeasured(f"{' '.join(command)}: {complaint.strip()}")
        started, pixel = map(float, said.split())
        desk.wait_until_quiet()
        self.windows.close(self.windows.ids() - before)
        return (first - started) * 1000, (last - started) * 1000, pixel

    def wait_for_windows(self, before, count):
        """When there were that many more, in seconds of the monotonic clock."""
        deadline = time.monotonic() + PATIENCE
        while len(self.windows.ids() - before) < count:
            if time.monotonic() > deadline:
                raise NotMeasured(f"{len(self.windows.ids() - before)} windows of {count} came")
            time.sleep(0.002)
        return time.monotonic()

    def cold(self):
        candidates = self.installed([self.velto, self.surf, self.chromium])

        def once(program):
            times = self.first_pixel(program)
            desk.wait_until_quiet(calm=0.2)
            desk.end_all()
            time.sleep(0.2)
            return times

        for program in candidates:  # files in the page cache, profiles on disk
            once(program)
        self.compare("from nothing", self.in_turn(candidates, once), COLD_LIMITS)

    def handoff(self):
        self.installed([self.velto])
        desk.run([os.path.join(BIN, "velto-open"), "velto://show-nothing"])
        desk.wait_until_quiet()
        # A URL that names no page: what is handed over is dropped there, and no window gets in the way.
        self.compare_commands("velto-open", [os.path.join(BIN, "velto-open"), "velto://open"],
                              "/bin/true", ["/bin/true"], HANDOFF_LIMIT)
        self.compare_commands("velto --print-url",
                              [os.path.join(BIN, "velto"), "3000", "--size", "420x760", "--top-left", "--print-url"],
                              "sh -c :", ["sh", "-c", ":"], PRINT_URL_LIMIT)

    def compare_commands(self, measure, ours, name, theirs, limit):
        times = {"ours": [], "theirs": []}
        for _ in range(HANDOFF_RUNS):
            for which, command in (("ours", ours), ("theirs", theirs)):
                started = time.monotonic()
                status = desk.run(command)
                times[which].append((time.monotonic() - started) * 1000)
                if status != 0:
                    raise NotMeasured(f"{' '.join(command)} ended with {status}")
        taken = table.median(times["ours"])
        self.rows.append(table.Row(f"{measure}, ms", table.spread(times["ours"]), name, table.spread(times["theirs"]),
                                   taken / table.median(times["theirs"]), taken, limit, " ms"))

    def scripts(self):
        """One page over and over, with what every page gets and without."""
        self.installed([self.velto])
        bare = programs.Velto(copy_without_scripts(BIN, os.path.join(os.environ["HOME"], "without-scripts")))
        site = TimedSite()
        times = {self.velto: [], bare: []}
        for _ in range(self.runs):
            for program in times:
                site.expect(LOADS)
                desk.run(program.command(site.url))
                times[program] += site.times()
                desk.end_all()
        ours, theirs = times[self.velto], times[bare]
        self.rows.append(table.Row("a page's load, ms", table.spread(ours), "no user scripts", table.spread(theirs),
                                   table.median(ours) / table.median(theirs), limit=SCRIPTS_LIMIT))

    def history(self):
        """The history page with a million visits: from its request, and from each keystroke, to rows on the screen."""
        self.installed([self.velto])
        page = TimedHistory()
        programs_of_it = page.copy(BIN, os.path.join(os.environ["HOME"], "timed-history"))
        write_visits(os.path.join(os.environ["XDG_DATA_HOME"], "Velto"))
        first, loaded, keys = [], [], []
        for run in range(1 + HISTORY_RUNS):
            desk.run([os.path.join(programs_of_it, "velto-open"), "velto://show-nothing"])
            desk.wait_until_quiet()
            desk.run([os.path.join(programs_of_it, "velto-open"), "velto://history"])
            took = page.wait()
            desk.end_all()
            if run == 0:  # it has the engine's caches to fill
                continue
            first.append(took[0])
            loaded.append(took[1])
            keys += took[2]
        for which, times in (("first rows", first), ("keystroke", keys)):
            self.rows.append(table.Row(f"a million visits, {which}, ms", table.spread(times), "", "",
                                       value=table.median(times), limit=HISTORY_LIMITS[which], unit=" ms"))
        print(f"history: ms until all rows were there: {table.spread(loaded)}")

    def drag(self):
        self.installed([self.velto])
        self.first_pixel(self.velto)
        desk.wait_until_quiet()
        window, = self.windows.ids()
        hand = Hand()
        lags = [hand.drag(window, DRAG_MOVES) for _ in range(self.runs)]
        self.rows.append(table.Row(f"lag after {DRAG_MOVES} moves of a drag, ms", table.spread(lags), "", "",
                                   value=table.median(lags), limit=DRAG_LIMIT, unit=" ms"))

    def idle(self):
        self.installed([self.velto])
        self.open_and_close(self.velto)
        self.count_wake_ups("idle")

    def hover(self):
        """With a window whose dots are under the pointer."""
        self.installed([self.velto])
        self.first_pixel(self.velto)
        window, = self.windows.ids()
        Hand().rest_at(window, *DOTS)
        self.count_wake_ups("pointer at rest over the dots")

    def count_wake_ups(self, label):
        application = desk.processes_named(self.velto.process)
        if len(application) != 1:
            raise NotMeasured("Velto does not run once")
        time.sleep(IDLE_SETTLING)
        pids = [application[0], *desk.descendants(application[0])]
        before = {thread: switches for pid in pids for thread, switches in desk.context_switches(pid).items()}
        time.sleep(IDLE_SECONDS)
        after = {thread: switches for pid in pids for thread, switches in desk.context_switches(pid).items()}
        woken = {thread: now.voluntary - before[thread].voluntary if thread in before else now.voluntary
                 for thread, now in after.items()}
        main = woken[application[0]]
        self.rows.append(table.Row(f"{label}, wake-ups of the main thread in {IDLE_SECONDS} s", str(main), "", "",
                                   value=main, limit=0))
        others = [f"{after[thread].process}/{after[thread].thread} {count}"
                  for thread, count in sorted(woken.items(), key=lambda item: -item[1])
                  if count and thread != application[0]]
        print(f"{label}: wake-ups of other threads in {IDLE_SECONDS} s: {', '.join(others) or 'none'}")

    def memory(self):
        figures = {}
        for program in self.installed([self.velto, self.surf, self.chromium]):
            self.first_pixel(program)
            desk.wait_until_quiet(calm=1)
            figures[program.name] = desk.memory(desk.descendants())
            desk.end_all()
        for which, label in ((0, "resident"), (1, "proportional")):
            ours = figures[self.velto.name][which]
            for name, values in figures.items():
                if name != self.velto.name:
                    self.rows.append(table.Row(f"one page, {label} MB", f"{ours:.0f}", name, f"{values[which]:.0f}",
                                               ours / values[which]))


MEASURES = ["handoff", "warm", "layout", "cold", "scripts", "history", "drag", "idle", "hover", "memory"]


def measure(names, runs):
    load, processors = os.getloadavg()[0], os.cpu_count()
    rough = "; something else is running, so the figures are rough" if load > processors / 2 else ""
    print(f"{processors} processors, load {load:.1f}{rough}", flush=True)
    desk.adopt_orphans()
    bench = Bench(runs)
    failures = []
    for name in names:
        try:
            try:
                getattr(bench, name)()
            finally:
                desk.end_all()
        except NotMeasured as reason:
            failures.append(f"not measured: {name}: {reason}")
    print()
    if bench.rows:
        print(table.text(bench.rows))
    for failure in failures:
        print(failure)
    return 1 if failures else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--runs", type=int, default=15)
    parser.add_argument("measures", nargs="*", metavar="MEASURE", help=" ".join(MEASURES))
    arguments = parser.parse_args()
    if unknown := set(arguments.measures) - set(MEASURES):
        parser.error(f"no such measure: {', '.join(sorted(unknown))}")
    if INSIDE not in os.environ:
        os.environ[INSIDE] = "yes"
        display = os.path.join(ROOT, "script/display")
        os.execv(display, [display, sys.executable, os.path.abspath(__file__), *sys.argv[1:]])
    return measure(arguments.measures or MEASURES, arguments.runs)


if __name__ == "__main__":
    sys.exit(main())

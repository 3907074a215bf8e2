"""Usage: checks.py CHECK PAGE RECORDING: looks at the page of a report in Chromium. Says what does not hold."""
import pathlib
import sqlite3
import sys

from browser import Browser

FACTS = pathlib.Path(__file__).with_name("facts.js").read_text(encoding="utf-8")
MARGIN_LEFT, MARGIN_RIGHT = 46, 12  # of a picture of the time line, beside the time axis
failures = []


def expect(holds, *what):
    if not holds:
        failures.append(" ".join(str(one) for one in what))


class Page:
    def __init__(self, browser, path, recording, width=1280, scheme="light", change=None):
        if change:
            page = pathlib.Path(path)
            page.write_text(change(page.read_text(encoding="utf-8")), encoding="utf-8")
        browser.open(path, width, scheme)
        browser.ask(FACTS)
        self.browser, self.ask = browser, browser.ask
        self.rows = sqlite3.connect("file:" + recording + "?mode=ro", uri=True).execute
        self.from_tick, self.to_tick = self.rows("SELECT min(tick), max(tick) FROM timeline").fetchone()

    def show(self, selector):
        self.ask(f"document.querySelector('{selector}').scrollIntoView({{block: 'center'}})")
        return self.ask(f"boxOf('{selector}')")

    def point(self, share):
        """Where on the screen a share of the time axis is."""
        box = self.show(".row.chart svg")
        inner = box["width"] - MARGIN_LEFT - MARGIN_RIGHT
        return box["left"] + MARGIN_LEFT + share * inner, box["top"] + box["height"] / 2

    def readout_at(self, share):
        self.browser.mouse("Moved", *self.point(share))
        return self.ask("readout()")

    def drag(self, from_share, to_share):
        (x1, y), (x2, _) = self.point(from_share), self.point(to_share)
        self.browser.drag(x1, x2, y)
        length = self.to_tick - self.from_tick
        self.from_tick, self.to_tick = self.from_tick + from_share * length, self.from_tick + to_share * length

    def tick_at(self, share):
        return self.from_tick + share * (self.to_tick - self.from_tick)

    def fix(self, tick):
        return self.rows("SELECT tick, latitude_e4min, longitude_e4min, speed_deci_kmh FROM gps WHERE tick <= ? "
                         "ORDER BY tick DESC LIMIT 1", (tick,)).fetchone()

    def compare_values(self, share):
        """The readout at a share of the axis has the time of that place, and the values recorded then."""
        shown = self.readout_at(share)
        pixel = (self.to_tick - self.from_tick) / 700
        expect(shown and abs(int(shown["tick"]) - self.tick_at(share)) <= 2 * pixel, "tick at", share, shown)
        _, _, _, speed = self.fix(int(shown["tick"]))
        text = f"{speed / 10:.1f}".removesuffix(".0") + " km/h"
        expect(shown["Speed"] == text, "speed at tick", shown["tick"], "is", text, "shown:", shown["Speed"])


def screens(make):
    for width in (390, 1280):
        for scheme in ("light", "dark"):
            page = make(width, scheme)
            ask, where = page.ask, f"at {width}, {scheme}:"
            page.ask("document.querySelectorAll('details').forEach((one) => { one.open = true; })")
            expect(ask("document.documentElement.scrollWidth <= innerWidth"), where, "scrolls sideways")
            background = ask("luminance(getComputedStyle(document.body).backgroundColor)")
            expect(background < 0.05 if scheme == "dark" else background > 0.9, where, "background", background)
            texts = ask("texts()")
            expect(len(texts) > 100, where, len(texts), "texts")
            for text in texts:
                expect(text["contrast"] >= 4.5, where, "contrast", text)
                expect(text["pixels"] >= 10.9, where, "too small", text)
                expect(text["right"] <= width + 1 and text["left"] >= -1, where, "beside the screen", text)
                expect(text["lines"] <= 1 or len(text["text"]) / text["lines"] >= 6, where, "broken into letters", text)
            expect(ask("boxOf('.row.chart svg').width") >= (350 if width == 390 else 700), where, "narrow charts")
            expect(any(text["text"].startswith("filler </script>") for text in texts), where, "markup in texts")


def pointer(make):
    page = make()
    for share in (0.1, 0.35, 0.9):
        page.compare_values(share)
    check_dot(page)
    page.drag(0.2, 0.4)
    shown = page.ask("readout()")
    expect(abs(int(shown["tick"]) - page.tick_at(0.4)) < 200, "after zooming the readout is at the pointer", shown)
    for share in (0.05, 0.5, 0.95):
        page.compare_values(share)
    expect(page.ask("document.querySelector('.thinned').hidden"), "a short drive is not thinned")
    page.browser.mouse("Moved", 3, 3)
    expect(page.ask("readout()") is None, "a readout without a pointer")


def check_dot(page):
    """Two places of the dot give the scale of the map; the other places must follow from it."""
    def place(share):
        tick, spot = int(page.readout_at(share)["tick"]), page.ask("dot()")
        (t1, lat1, lon1, _), after = page.fix(tick), page.rows(
            "SELECT tick, latitude_e4min, longitude_e4min FROM gps WHERE tick > ? ORDER BY tick LIMIT 1", (tick,)).fetchone()
        part = (tick - t1) / (after[0] - t1)
        return spot, lat1 + part * (after[1] - lat1), lon1 + part * (after[2] - lon1)

    (a, lat_a, lon_a), (b, lat_b, lon_b) = place(0.05), place(0.3)
    x_scale, y_scale = (b["x"] - a["x"]) / (lon_b - lon_a), (b["y"] - a["y"]) / (lat_b - lat_a)
    for share in (0.12, 0.2, 0.25, 0.4, 0.8, 0.95):  # standing and driving
        spot, lat, lon = place(share)
        away = abs(a["x"] + (lon - lon_a) * x_scale - spot["x"]) + abs(a["y"] + (lat - lat_a) * y_scale - spot["y"])
        expect(away < 2 and spot["isShown"] and not spot["isDashed"], "the dot at", share, "is", away, "pixels away", spot)
    page.show(".panel svg")
    spot = page.ask("dot()")
    page.browser.mouse("Moved", spot["left"] + spot["x"], spot["top"] + spot["y"])
    now = page.ask("dot()")
    expect(abs(now["x"] - spot["x"]) + abs(now["y"] - spot["y"]) < 2, "the dot is not under the pointer", spot, now)


def keyboard(make):
    page = make()
    press, ask = page.browser.press, page.ask
    for _ in range(20):
        press("Tab")
        if ask("document.activeElement.classList.contains('plot')"):
            break
    style = ask("(({outlineStyle, outlineWidth}) => outlineStyle + outlineWidth)(getComputedStyle(document.activeElement))")
    expect(style == "solid3px", "focus shows", style)

    def tick_after(*keys):
        for key in keys:
            press(key.removeprefix("Shift"), key.startswith("Shift"))
        return int(ask("readout()")["tick"])

    step = (page.to_tick - page.from_tick) / 100
    marks = [row[0] for row in page.rows("SELECT tick FROM bookmark ORDER BY tick")]
    steps = [(("Home",), page.from_tick), (("ArrowRight",), page.from_tick + step),
             (("ShiftArrowRight", "ArrowLeft"), page.from_tick + 10 * step), (("Home", "PageDown"), marks[0]),
             (("PageDown",), marks[1]), (("PageUp",), marks[0]), (("+", "ArrowRight"), marks[0] + step / 2),
             (("-", "ArrowRight"), marks[0] + step * 1.5), (("0", "End"), page.to_tick)]
    for keys, tick in steps:
        expect(abs(tick_after(*keys) - tick) <= 2, "after", keys, "at", ask("readout()"), "not", tick)
    expect(not ask("boxOf('.cursor').width == 0"), "the line of the cursor")
    press("Escape")
    expect(ask("readout()") is None, "Escape leaves the readout")


def runs(make):
    for width in (390, 1280):
        page = make(width)
        ask = page.ask
        expect(ask("document.querySelectorAll('nav li a').length") == 80, "runs in the list")
        expect(ask("document.querySelectorAll('section.run').length") == 1, "runs shown")
        expect(ask("document.documentElement.scrollHeight") < 6000, "pixels high:", ask("document.documentElement.scrollHeight"))
        expect(ask("document.documentElement.scrollWidth <= innerWidth"), "scrolls sideways at", width)
        link = page.show("nav li:nth-child(42) a")
        page.browser.click(link["left"] + 20, link["top"] + 8)
        page.browser.wait_for("location.hash === '#run-42' && document.body.textContent.includes('run 42')")
        expect(ask("[...document.querySelectorAll('td')].some((cell) => cell.textContent === 'bookmark 42')"), "bookmark of run 42")
        expect(ask("document.querySelector('nav [aria-current]') === document.querySelector('nav li:nth-child(42) a')"), "mark in the list")
        ask("[...document.querySelectorAll('.step')].pop().focus()")
        page.browser.press("Enter")
        page.browser.wait_for("location.hash === '#run-43' && document.querySelector('header').textContent.includes('run 43')")


def thinned(make):
    page = make()
    expect(page.ask("document.querySelector('.thinned').hidden"), "nothing is missing where a pixel has many records")
    page.drag(0.5, 0.53)
    note = page.ask("document.querySelector('.thinned').textContent")
    expect(not page.ask("document.querySelector('.thinned').hidden") and "4.1 s" in note and " --from 2024-05-01T" in note, "note:", note)
    for share in (0.2, 0.5, 0.8):
        shown = page.readout_at(share)
        low, high = (float(value) for value in shown["Speed"].removesuffix(" km/h").split(" to "))
        recorded = page.fix(int(shown["tick"]))[3] / 10
        around = page.rows("SELECT min(speed_deci_kmh), max(speed_deci_kmh) FROM gps WHERE abs(tick - ?) <= 4100",
                           (int(shown["tick"]),)).fetchone()
        expect(low <= recorded <= high and around[0] <= 10 * low and 10 * high <= around[1], "recorded", recorded, "shown", shown)


def steps(make):
    """The temperature of this drive, said to be recorded on change: each value holds to the next, the last to the end."""
    page = make(change=lambda text: text.replace('{"name":"temperature 0"', '{"name":"temperature 0","steps":true'))
    last = page.rows("SELECT temperature FROM temperature ORDER BY tick DESC LIMIT 1").fetchone()[0]
    expect(page.readout_at(0.99)["Temperature"] == f"{last} °C", "at the end", page.ask("readout()"))
    line = page.ask("document.querySelector('[aria-label=\"Temperature over time\"] polyline').getAttribute('points')")
    points = [tuple(map(float, point.split(","))) for point in line.split()]
    slanted = [(a, b) for a, b in zip(points, points[1:]) if a[0] != b[0] and a[1] != b[1]]
    expect(len(points) > 30 and not slanted, "slanted", slanted, "of", len(points))
    box = page.ask("boxOf('[aria-label=\"Temperature over time\"]')")
    expect(abs(points[-1][0] - box["width"] + MARGIN_RIGHT) < 1, "ends at", points[-1], box)


def video(make):
    """Cursor and videos show the same time, whichever is moved."""
    page = make()
    ask, wait_for = page.ask, page.browser.wait_for
    wait_for("[...document.querySelectorAll('video')].filter((one) => one.readyState >= 2).length === 2")
    start = page.rows("SELECT tick FROM timeline WHERE source = 'recording' AND event = 'event' ORDER BY seq").fetchone()[0]
    state = """(([front, rear]) => ({tick: Number((readout() || {}).tick), front: front.currentTime, rear: rear.currentTime, paused: front.paused && rear.paused,
        outside: front.classList.contains('outside') && rear.classList.contains('outside')}))(document.querySelectorAll('video'))"""

    def together(what, most):
        now = ask(state)
        for camera, begins in (("front", start), ("rear", start - 1500)):
            expect(abs(begins + 1000 * now[camera] - now["tick"]) < most, what, camera, "begins at", begins, now)

    page.readout_at(0.06)
    together("pointer", 5)
    page.browser.mouse("Moved", 3, 3)  # from here on the pointer is not in the plots, also after scrolling
    page.show("video")
    wait_for("readout() === null")
    ask("document.querySelector('video').currentTime = 7")
    wait_for(f"Math.abs(Number((readout() || {{}}).tick) - {start + 7000}) <= 1")
    together("seek", 5)
    ask("document.querySelector('video').play()")
    wait_for("document.querySelector('video').currentTime > 9.5")
    together("play", 1000)  # frames and seeks are slow on a busy machine
    ask("document.querySelector('.plot').focus()")
    page.browser.press("ArrowLeft")
    expect(ask(state)["paused"], "a key stops the videos")
    together("key", 5)
    page.readout_at(0.9)
    expect(ask(state)["outside"], "no picture at", ask("readout()"))


def main(check, path, recording):
    browser = Browser()
    try:
        globals()[check](lambda *how, **more: Page(browser, path, recording, *how, **more))
        failures.extend(browser.errors)
    finally:
        browser.close()
    print("\n".join(failures[:20]))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))

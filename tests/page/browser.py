"""Chromium without a window, driven over a pipe by its DevTools protocol."""
import json
import os
import shutil
import subprocess
import tempfile
import time

ARGUMENTS = ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--no-first-run", "--remote-debugging-pipe",
             "--disable-background-networking", "--disable-component-update", "--disable-sync", "about:blank"]


class Browser:
    def __init__(self):
        self.profile = tempfile.mkdtemp()
        self.count = 0
        self.session = None
        self.errors = []  # of scripts in the page
        self._start()
        targets = self.call("Target.getTargets")["targetInfos"]
        page = next(target for target in targets if target["type"] == "page")
        self.session = self.call("Target.attachToTarget", targetId=page["targetId"], flatten=True)["sessionId"]
        self.call("Runtime.enable")

    def _start(self):
        """Chromium reads from descriptor 3 and writes to descriptor 4."""
        read_end, self.to_browser = os.pipe()
        from_browser, write_end = os.pipe()

        def connect():
            high = os.dup2(write_end, 100)
            os.dup2(read_end, 3)
            os.dup2(high, 4)
            os.close(high)

        self.process = subprocess.Popen(ARGUMENTS + ["--user-data-dir=" + self.profile], stderr=subprocess.DEVNULL,
                                        close_fds=False, preexec_fn=connect)
        os.close(read_end)
        os.close(write_end)
        self.from_browser = os.fdopen(from_browser, "rb", 65536)

    def close(self):
        self.process.kill()
        self.process.wait()
        shutil.rmtree(self.profile, ignore_errors=True)

    def _read(self):
        message = bytearray()
        while (byte := self.from_browser.read(1)) != b"\0":
            if not byte:
                raise RuntimeError("Chromium has ended")
            message += byte
        return json.loads(message)

    def call(self, method, **parameters):
        self.count += 1
        message = {"id": self.count, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        os.write(self.to_browser, json.dumps(message).encode() + b"\0")
        while True:
            answer = self._read()
            if answer.get("method") == "Runtime.exceptionThrown":
                self.errors.append(answer["params"]["exceptionDetails"]["exception"].get("description"))
            if answer.get("id") == self.count:
                if "error" in answer:
                    raise RuntimeError(method + ": " + answer["error"]["message"])
                return answer["result"]

    def ask(self, expression):
        """The value of an expression in the page."""
        answer = self.call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in answer:
            raise RuntimeError(expression + ": " + str(answer["exceptionDetails"].get("exception", {}).get("description")))
        return answer["result"].get("value")

    def wait_for(self, expression):
        deadline = time.monotonic() + 30
        while time.monotonic() < deadline:
            try:
                if self.ask(expression):
                    return
            except RuntimeError:  # while the page changes
                pass
            time.sleep(0.02)
        raise RuntimeError("never true: " + expression)

    def open(self, page, width=1280, scheme="light"):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=900, deviceScaleFactor=1, mobile=width < 500)
        self.call("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])
        self.call("Page.navigate", url="about:blank")
        self.wait_for("location.href === 'about:blank'")
        self.call("Page.navigate", url="file://" + page)
        self.wait_for("location.protocol === 'file:' && document.readyState === 'complete'")

    def mouse(self, kind, x, y, **more):
        self.call("Input.dispatchMouseEvent", type="mouse" + kind, x=x, y=y, **more)

    def drag(self, x1, x2, y):
        self.mouse("Moved", x1, y)
        self.mouse("Pressed", x1, y, button="left", clickCount=1)
        self.mouse("Moved", x2, y, button="left", buttons=1)
        self.mouse("Released", x2, y, button="left", clickCount=1)

    def click(self, x, y):
        self.drag(x, x, y)

    def press(self, key, shift=False):
        codes = {"Tab": 9, "Enter": 13, "Escape": 27}
        more = {"key": key, "modifiers": 8 if shift else 0}
        if key in codes:
            more["windowsVirtualKeyCode"] = codes[key]
        if key == "Enter":
            more["text"] = "\r"
        self.call("Input.dispatchKeyEvent", type="keyDown", **more)
        self.call("Input.dispatchKeyEvent", type="keyUp", **more)

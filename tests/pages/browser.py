# SPDX-FileCopyrightText: The Patchloom authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Drives a headless Chromium through its pipe of JSON messages. Needs nothing but Python."""

import base64
import fcntl
import json
import os
import pathlib
import shutil
import struct
import subprocess
import tempfile
import zlib


class Browser:
    """A started browser with one page. Ends with the block that it is used in."""

    def __init__(self):
        self.folder = tempfile.TemporaryDirectory()
        to_browser, self.requests = os.pipe()
        self.answers, from_browser = os.pipe()
        arguments = [shutil.which("chromium"), "--headless=new", "--disable-gpu", "--hide-scrollbars", "--mute-audio",
                     "--no-first-run", "--remote-debugging-pipe", f"--user-data-dir={self.folder.name}",
                     "--force-device-scale-factor=1", "--force-color-profile=srgb", "about:blank"]
        if os.geteuid() == 0:
            arguments.insert(1, "--no-sandbox")

        # The browser reads from descriptor 3 and writes to 4: no end of a pipe may have these numbers.
        to_browser, from_browser = (move_up(end) for end in (to_browser, from_browser))
        self.requests, self.answers = (move_up(end) for end in (self.requests, self.answers))
        self.process = subprocess.Popen(arguments, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                        close_fds=False, preexec_fn=lambda: (os.dup2(to_browser, 3),
                                                                             os.dup2(from_browser, 4)))
        os.close(to_browser)
        os.close(from_browser)
        self.buffer, self.number, self.session, self.events = b"", 0, None, []
        page = next(target for target in self.ask("Target.getTargets")["targetInfos"] if target["type"] == "page")
        self.session = self.ask("Target.attachToTarget", targetId=page["targetId"], flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.ask(f"{domain}.enable")
        self.ask("Emulation.setFocusEmulationEnabled", enabled=True)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait(20)
        os.close(self.requests)
        os.close(self.answers)
        self.folder.cleanup()

    def send(self, method, parameters):
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        data = json.dumps(message).encode() + b"\0"
        while data:
            data = data[os.write(self.requests, data):]
        return self.number

    def receive(self):
        while b"\0" not in self.buffer:
            part = os.read(self.answers, 1 << 20)
            if not part:
                raise RuntimeError("The browser has ended.")
            self.buffer += part
        message, self.buffer = self.buffer.split(b"\0", 1)
        return json.loads(message)

    def ask(self, method, **parameters):
        """Sends a command and waits for its answer. Events that come before it are kept."""
        number = self.send(method, parameters)
        while (message := self.receive()).get("id") != number:
            self.events.append(message)
        if "error" in message:
            raise RuntimeError(f"{method}: {message['error']['message']}")
        return message["result"]

    def wait_for(self, method):
        while not any(event.get("method") == method for event in self.events):
            self.events.append(self.receive())

    def open(self, path, fragment=""):
        """Loads a file, and forgets what was logged before."""
        self.events = []
        self.ask("Page.navigate", url=pathlib.Path(path).resolve().as_uri() + fragment)
        self.wait_for("Page.loadEventFired")

    def run(self, script):
        """The value of an expression in the page."""
        answer = self.ask("Runtime.evaluate", expression=script, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in answer:
            raise RuntimeError(answer["exceptionDetails"].get("exception", {}).get("description", script))
        return answer["result"].get("value")

    def logged(self):
        """Errors and warnings of the page, such as those of its content security policy."""
        self.run("0")
        entries = [event["params"]["entry"] for event in self.events if event.get("method") == "Log.entryAdded"]
        failures = [event["params"]["exceptionDetails"] for event in self.events
                    if event.get("method") == "Runtime.exceptionThrown"]
        return [entry["text"] for entry in entries] + [failure["text"] for failure in failures]

    def requested(self):
        """The addresses of everything that the page has asked for."""
        return [event["params"]["request"]["url"] for event in self.events
                if event.get("method") == "Network.requestWillBeSent"]

    def use_size(self, width, height):
        self.ask("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)

    def use_theme(self, theme):
        self.ask("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": theme}])

    def press(self, key):
        codes = {"ArrowLeft": 37, "ArrowUp": 38, "ArrowRight": 39, "ArrowDown": 40, "Tab": 9}
        for kind in ("rawKeyDown", "keyUp"):
            self.ask("Input.dispatchKeyEvent", type=kind, key=key, code=key, windowsVirtualKeyCode=codes[key])

    def point(self, x, y):
        self.ask("Input.dispatchMouseEvent", type="mouseMoved", x=x, y=y)

    def screenshot(self, clip=None, scale=1):
        """The picture as PNG bytes: of the view, or of a part of the page (x, y, width, height), larger or smaller."""
        parameters = {"format": "png", "captureBeyondViewport": clip is not None}
        if clip:
            parameters["clip"] = dict(zip(("x", "y", "width", "height"), clip), scale=scale)
        return base64.b64decode(self.ask("Page.captureScreenshot", **parameters)["data"])

    def print(self):
        """The page as PDF bytes, as its style sheet lays it out for paper."""
        answer = self.ask("Page.printToPDF", preferCSSPageSize=True, printBackground=True)
        return base64.b64decode(answer["data"])


def move_up(descriptor):
    """The same file under a number of 10 or more, open in started programs."""
    moved = fcntl.fcntl(descriptor, fcntl.F_DUPFD, 10)
    os.close(descriptor)
    return moved


def pixels(png):
    """Width, height and rows of a PNG with 8 bits a channel; each row is bytes of RGB or RGBA. Third, the channels."""
    assert png.startswith(b"\x89PNG\r\n\x1a\n")
    position, data = 8, b""
    while position < len(png):
        length, kind = struct.unpack(">I4s", png[position:position + 8])
        body = png[position + 8:position + 8 + length]
        if kind == b"IHDR":
            width, height, depth, color = struct.unpack(">IIBB", body[:10])
        elif kind == b"IDAT":
            data += body
        position += 12 + length
    assert depth == 8 and color in (2, 6)
    channels = 3 if color == 2 else 4
    data, stride, rows = zlib.decompress(data), width * channels, []
    above = bytearray(stride)
    for y in range(height):
        kind, line = data[y * (stride + 1)], bytearray(data[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        for i in range(stride):
            left = line[i - channels] if i >= channels else 0
            corner = above[i - channels] if i >= channels else 0
            if kind == 1:
                line[i] = (line[i] + left) & 255
            elif kind == 2:
                line[i] = (line[i] + above[i]) & 255
            elif kind == 3:
                line[i] = (line[i] + (left + above[i]) // 2) & 255
            elif kind == 4:
                guess = left + above[i] - corner
                line[i] = (line[i] + min((left, above[i], corner), key=lambda p: abs(guess - p))) & 255
        rows.append(bytes(line))
        above = line
    return width, height, channels, rows

"""The simulator and the probe as processes. Which ones is told by the environment."""
import base64
import json
import os
import queue
import shutil
import socket
import subprocess
import tempfile
import threading
import time
import urllib.error
import urllib.request

SIMULATOR = os.environ["SIMULATOR_PROGRAM"]
PROBE = os.environ["PROBE_PROGRAM"]
LIBRARY = os.environ["PROBE_LIBRARY"]
CREDENTIAL = "Vorhängeschloß-7131"
PATIENCE = float(os.environ.get("PATIENCE", "60"))  # seconds, for what takes a moment on a quiet machine


def built_in_scenario():
    return json.loads(subprocess.run([SIMULATOR, "--print-scenario"], capture_output=True, check=True).stdout)


def volume(path):
    return {"nfs": {"exportHost": "filer1", "exportName": path, "exportPath": path}}


class Simulator:
    """A simulator on a port that the system draws, with a credential of the tests' own."""

    def __init__(self, scenario=None, port=0, options=()):
        self.folder = tempfile.mkdtemp()
        arguments = [SIMULATOR, "--no-https", "--http", f"127.0.0.1:{port}", "--credential", CREDENTIAL, *options]
        if scenario is not None:
            arguments += ["--scenario", self.file("scenario.json", json.dumps(scenario))]
        self.process = subprocess.Popen(arguments, stdout=subprocess.PIPE, text=True)
        self.url = self._read_until_ready()
        self.port = int(self.url.rsplit(":", 1)[1])
        self.file("soapwrapper.conf", f"filer1 = {self.url}\n")

    def _read_until_ready(self):
        urls = []
        for line in self.process.stdout:
            if line == "ready\n":
                return urls[0]
            urls.append(line.strip())
        raise RuntimeError("the simulator ended instead of getting ready")

    def file(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return path

    def stop(self):
        self.process.terminate()
        self.process.wait()
        self.process.stdout.close()
        shutil.rmtree(self.folder)

    def probe(self, *arguments, credential=CREDENTIAL):
        """What the host's side says, and its exit code."""
        done = self.run_probe(*arguments, credential=credential)
        return done.returncode, done.stdout + done.stderr

    def run_probe(self, *arguments, credential=CREDENTIAL, library=LIBRARY):
        return subprocess.run(
            [PROBE, *arguments, "--library", library, "--plugin-path", os.path.join(self.folder, "libsoapwrapper.so")],
            capture_output=True, text=True, timeout=PATIENCE, check=False,
            env={**os.environ, "SOAPWRAPPER_CREDENTIAL": credential})

    def must_probe(self, *arguments):
        code, text = self.probe(*arguments)
        if code != 0:
            raise AssertionError(f"{arguments}: exit code {code}, {text}")
        return text

    def ask(self, method, path, record=None):
        body = None if record is None else json.dumps(record).encode()
        request = urllib.request.Request(self.url + path, data=body, method=method,
                                         headers={"Content-Type": "application/json"})
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        with opener.open(request, timeout=PATIENCE) as answer:
            text = answer.read()
        return json.loads(text) if text else None

    def post_soap(self, body):
        """A request that no library would send. What it is answered doesn't matter."""
        request = urllib.request.Request(self.url + "/", data=body, method="POST",
                                         headers={"Content-Type": "text/xml; charset=utf-8"})
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        try:
            opener.open(request, timeout=PATIENCE).close()
        except urllib.error.HTTPError as error:
            error.close()


def traces_of_credential():
    """Its text, and what its Base64 has in common wherever in a longer text it begins."""
    secret = CREDENTIAL.encode()
    traces = [CREDENTIAL, secret.decode("latin-1")]
    for ahead in range(3):
        encoded = base64.b64encode(b"\0" * ahead + secret).decode()
        traces.append(encoded[[0, 2, 3][ahead] : len(encoded) - 4])
    return traces


class Load:
    """Clients that together send so many requests a second, until they are stopped."""

    CLIENTS = 4

    def __init__(self, simulator, rate, body):
        self.simulator = simulator
        self.body = body
        self.stopped = threading.Event()
        self.sent = queue.SimpleQueue()
        pause = self.CLIENTS / rate
        self.threads = [threading.Thread(target=self._send, args=(pause,)) for _ in range(self.CLIENTS)]

    def _send(self, pause):
        head = (f"POST / HTTP/1.1\r\nHost: 127.0.0.1:{self.simulator.port}\r\nContent-Type: text/xml\r\n"
                f"Content-Length: {len(self.body)}\r\n\r\n").encode()
        due = time.monotonic()
        while not self.stopped.is_set():
            with socket.create_connection(("127.0.0.1", self.simulator.port), timeout=PATIENCE) as connection:
                connection.sendall(head + self.body)
                while connection.recv(65536):
                    pass
            self.sent.put(1)
            due += pause
            self.stopped.wait(max(0, due - time.monotonic()))

    def __enter__(self):
        for thread in self.threads:
            thread.start()
        return self

    def __exit__(self, *_):
        self.stopped.set()
        for thread in self.threads:
            thread.join()

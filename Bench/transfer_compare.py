#!/usr/bin/env python3
"""Three parallel cloud transfers over loopback, against curl on the same files into the same folder.

Prints the times of five alternating runs of each, their medians and the ratio, and by how much the client's peak memory
exceeds that of a run on three small files.
    Bench/transfer_compare.py CLIENT [MEBIBYTES]     the built kxclient; size of each file, 256 unless given
"""

import json
import os
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
import urllib.request

RUNS = 5
SMALL_BYTES = 64 * 1024


def serve(client, data):
    """Starts the client's site on a folder; gives the process and its URL."""
    process = subprocess.Popen([client, "serve", "--data", data], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    for line in process.stdout:
        found = re.search(r"http://127\.0\.0\.1:\d+", line)
        if found:
            return process, found.group(0)
    sys.exit("the site did not start")


def get_json(url):
    with urllib.request.urlopen(url) as reply:
        return json.load(reply)


def url_of(template, record):
    fields = {"deviceId": record.get("strDeviceId", ""), "channel": record.get("iValue5", -1), "recordId": record["strRecordId"],
              "begin": 0, "end": 0, "token": record.get("strText3", "")}
    for name, value in fields.items():
        template = template.replace("{%s}" % name, str(value))
    return template


def timed(command, out):
    """Runs one command on an empty folder; gives seconds and peak memory in KiB."""
    shutil.rmtree(out, ignore_errors=True)
    os.mkdir(out)
    start = time.monotonic()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    message = process.stderr.read()
    _, status, usage = os.wait4(process.pid, 0)
    if status:
        sys.exit("%s failed: %s" % (command[0], message.decode()))
    return time.monotonic() - start, usage.ru_maxrss


def commands(client, work, sizes):
    """The client's and curl's command for three files of these sizes, and the site that serves them."""
    cloud = os.path.join(work, "data", "cloud")
    os.makedirs(cloud)
    for number, size in enumerate(sizes):
        with open(os.path.join(cloud, "clip%d.mp4" % number), "wb") as clip:
            for _ in range(size // SMALL_BYTES):
                clip.write(os.urandom(SMALL_BYTES))
    site, base = serve(client, os.path.join(work, "data"))
    config = get_json(base + "/config.json")
    records = get_json(base + "/catalogue.json?folder=.")
    for record in records:
        record.pop("sha256", None)  # curl does not check one either
        record["strDownloadPath"] = os.path.basename(record["strDownloadPath"])
    for name, content in (("config.json", config), ("records.json", records)):
        with open(os.path.join(work, name), "w") as file:
            json.dump(content, file)
    out = os.path.join(work, "out")
    ours = [client, "download", "--config", os.path.join(work, "config.json"), "--records", os.path.join(work, "records.json"),
            "--out", out]
    curl = ["curl", "-fsS", "--parallel", "--parallel-max", "3"]
    for number, record in enumerate(records):
        curl += ["-o", os.path.join(out, "curl%d.mp4" % number), url_of(config["cloud"]["url"], record)]
    return ours, curl, out, site


def measure(client, work, sizes, runs):
    ours, curl, out, site = commands(client, work, sizes)
    try:
        timed(ours, out)  # fills the page cache
        pairs = [(timed(ours, out), timed(curl, out)) for _ in range(runs)]
    finally:
        site.terminate()
        site.wait()
    return pairs


def main():
    client = os.path.abspath(sys.argv[1])
    mebibytes = int(sys.argv[2]) if len(sys.argv) > 2 else 256
    with tempfile.TemporaryDirectory() as small, tempfile.TemporaryDirectory() as large:
        idle = max(pair[0][1] for pair in measure(client, small, [SMALL_BYTES] * 3, 1))
        pairs = measure(client, large, [mebibytes * 1024 * 1024] * 3, RUNS)
    ours = [pair[0][0] for pair in pairs]
    curl = [pair[1][0] for pair in pairs]
    print("kxclient:", " ".join("%.2f" % value for value in ours), "s, median %.2f s" % statistics.median(ours))
    print("curl:    ", " ".join("%.2f" % value for value in curl), "s, median %.2f s" % statistics.median(curl))
    print("kxclient : curl = %.2f (at most 1.00)" % (statistics.median(ours) / statistics.median(curl)))
    peak = max(pair[0][1] for pair in pairs)
    print("peak memory above idle: %.1f MiB (at most 96)" % ((peak - idle) / 1024))


main()

#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the benchmark programs against the simulated player and reports what it saw."""
import json
import os
import signal
import subprocess
import sys
import tempfile
import time

BUILD = "build/bench"
SIMULATOR = f"{BUILD}/simulator/tessaly-simulator"
WINDOW = f"{BUILD}/bench/window/bench_window"
MEDIA = f"{BUILD}/bench/media/bench_media"
QUICK = "--quick" in sys.argv[1:]

scratch = tempfile.TemporaryDirectory()
environment = dict(os.environ, XDG_CONFIG_HOME=scratch.name, XDG_RUNTIME_DIR=scratch.name,
                   QT_QPA_PLATFORM="xcb", QT_LOGGING_RULES="qt.multimedia*=false")
results = {}


def on_screen(command):
    return ["xvfb-run", "-a", "-s", "-screen 0 1500x980x24", *command]


def with_player(command):
    """Runs a command whose word PORT is the player's port: what it printed, what the player saw."""
    port = os.path.join(scratch.name, "player")
    player = subprocess.Popen([SIMULATOR, "--link", port, "--quiet", "--json"],
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    try:
        while not os.path.lexists(port):
            if player.poll() is not None:
                sys.exit("The simulated player did not start: " + SIMULATOR)
            time.sleep(0.01)
        run = subprocess.run([port if word == "PORT" else word for word in command],
                             env=environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                             text=True, check=True)
        player.send_signal(signal.SIGINT)
        seen = json.loads(player.communicate()[0])
    finally:
        player.kill()
    return json.loads(run.stdout) if run.stdout.strip() else {}, seen


def row(name, *values):
    print(f"{name:<44}" + "".join(f"{value:>16}" for value in values), flush=True)


def closed_loop():
    frames = 5000 if QUICK else 50000
    clients = {
        "bare poll()": [f"{BUILD}/bench/link/bench_poll", "PORT", str(frames)],
        "QSerialPort, no window": [f"{BUILD}/bench/link/bench_serialport", "PORT", str(frames)],
        "pyserial script": [sys.executable, "bench/link/pyserial_loop.py", "PORT", str(frames)],
        "the complete window": on_screen([WINDOW, "loop", "PORT", str(frames)]),
    }
    if subprocess.run([sys.executable, "-c", "import serial"], stderr=subprocess.DEVNULL).returncode:
        del clients["pyserial script"]
        print("pyserial script: skipped, Python has no serial module here")
    row("Closed loop", "frames/s", "p50 us", "p99 us", "CPU us/frame")
    for name, command in clients.items():
        own, seen = with_player(command)
        figures = {
            "framesPerSecond": seen["framesPerSecond"],
            "p50us": seen["turnaroundMs"]["p50"] * 1000,
            "p99us": seen["turnaroundMs"]["p99"] * 1000,
            "processorMicrosecondsPerFrame": own.get("processorMicrosecondsPerFrame"),
        }
        results.setdefault("closedLoop", {})[name] = figures
        processor = figures["processorMicrosecondsPerFrame"]
        row("  " + name, f"{figures['framesPerSecond']:.0f}", f"{figures['p50us']:.0f}",
            f"{figures['p99us']:.0f}", f"{processor:.0f}" if processor else "-")


def cadence():
    seconds = 5 if QUICK else 60
    row("Cadence, window visible", "p50 ms", "p99 ms", "max ms", "drift ms")
    for busy in (False, True):
        load = subprocess.Popen([sys.executable, "-c", "while True: pass"]) if busy else None
        try:
            cadence_at_each_interval(busy, seconds)
        finally:
            if load:
                load.kill()
                load.wait()
    hidden, _ = with_player(on_screen([WINDOW, "play-hidden", "PORT", "30", str(seconds)]))
    results["processorPercentAt30msHidden"] = hidden["processorPercent"]
    row("Processor share at 30 ms, % of a core", "visible", "hidden")
    row("", f"{results['processorPercentAt30ms']:.2f}", f"{hidden['processorPercent']:.2f}")


def cadence_at_each_interval(busy, seconds):
    for interval in (30, 50, 150):
        own, seen = with_player(on_screen([WINDOW, "play", "PORT", str(interval), str(seconds)]))
        times = seen["intervalMs"]
        steps = seen["frames"] - 1
        drift = steps / seen["framesPerSecond"] * 1000 - steps * interval
        name = f"{interval} ms" + (", one core busy" if busy else "")
        results.setdefault("cadence", {})[name] = {
            **times, "driftMs": drift, "processorPercent": own["processorPercent"]}
        row("  " + name, f"{times['p50']:.3f}", f"{times['p99']:.3f}", f"{times['max']:.3f}",
            f"{drift:.2f}")
        if interval == 30 and not busy:
            results["processorPercentAt30ms"] = own["processorPercent"]


def start():
    row("Start to the first painted window", "median ms")
    for name, mode in (("empty window with the media objects", "start-empty"),
                       ("the complete window", "start")):
        times = []
        for _ in range(5 if QUICK else 21):
            begun = time.clock_gettime_ns(time.CLOCK_MONOTONIC)
            run = subprocess.run(screen + [WINDOW, mode], env=environment, stdout=subprocess.PIPE,
                                 stderr=subprocess.DEVNULL, text=True, check=True)
            times.append((json.loads(run.stdout)["paintedNs"] - begun) / 1e6)
        times.sort()
        results.setdefault("start", {})[name] = times[len(times) // 2]
        row("  " + name, f"{times[len(times) // 2]:.1f}")


def memory():
    frames = 20000 if QUICK else 1000000
    own, _ = with_player(on_screen([WINDOW, "loop", "PORT", str(frames)]))
    growth = own["residentKib"] - own["residentKibAt10000"]
    results["memory"] = {**own, "growthKib": growth}
    row("Resident memory, KiB", "10,000 frames", f"{frames:,}", "growth")
    row("", own["residentKibAt10000"], own["residentKib"], growth)


def media():
    video = os.path.join(scratch.name, "video.webm")
    pipeline = ("videotestsrc num-buffers=300 ! video/x-raw,width=640,height=360,framerate=30/1 ! "
                "vp8enc deadline=1 ! webmmux ! filesink location=" + video)
    if subprocess.run(["gst-launch-1.0", "-q", *pipeline.split()], stdout=subprocess.DEVNULL,
                      stderr=subprocess.DEVNULL).returncode:
        return print("Media: skipped, gst-launch-1.0 could not make a video here")
    row("Longest time between beats of 30 ms, ms", "load", "play", "stop",
        "seek, paused", "load, playing")
    bare = json.loads(subprocess.run(on_screen([MEDIA, "bare", video]), env=environment,
                                     stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                                     check=True).stdout)
    window, _ = with_player(on_screen([MEDIA, "window", "PORT", video]))
    for name, figures in (("the media objects alone", bare), ("the complete window", window)):
        results.setdefault("media", {})[name] = figures
        row("  " + name, *(f"{value:.0f}" for value in figures.values()))


def micro():
    for program in ("codec/bench_codec", "window/bench_widgets"):
        path = f"{BUILD}/bench/{program}"
        output = subprocess.run(on_screen([path, "--benchmark_format=json"]), env=environment,
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                                check=True).stdout
        row(os.path.basename(program), "ns")
        for entry in json.loads(output[output.index("{"):])["benchmarks"]:
            results.setdefault("micro", {})[entry["name"]] = entry["cpu_time"]
            row("  " + entry["name"], f"{entry['cpu_time']:.0f}")


screen = []
server = subprocess.Popen(["Xvfb", "-displayfd", "1", "-screen", "0", "1500x980x24"],
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
display = ":" + server.stdout.readline().strip()
try:
    closed_loop()
    memory()
    environment["DISPLAY"] = display
    start()
    del environment["DISPLAY"]
    cadence()
    media()
    micro()
finally:
    server.kill()
    with open(f"{BUILD}/results.json", "w", encoding="utf-8") as file:
        json.dump(results, file, indent=2)
print(f"Written: {BUILD}/results.json")

"""Runs the whole-process measurements in turn, reads the in-process ones, and prints one table of ratios.
Started by bench/run."""
import argparse
import datetime
import filecmp
import json
import os
import platform
import resource
import shutil
import subprocess
import tempfile
import time

ROUNDS = 5


def once(command):
    """Seconds of wall time, peak memory in MB, and the output of one process."""
    # Peak memory is asked of a small program between: a child's figure never falls below its parent's at the fork.
    with tempfile.NamedTemporaryFile("r") as peak:
        started = time.perf_counter()
        process = subprocess.run(["/usr/bin/time", "-f", "%M", "-o", peak.name, *command], capture_output=True)
        seconds = time.perf_counter() - started
        if process.returncode != 0:
            raise RuntimeError(f"{command[0]} ended with {process.returncode}: {process.stderr.decode()[-500:]}")
        return seconds, int(peak.read().split()[-1]) / 1024, process.stdout.decode()


def in_turn(commands, rounds=ROUNDS):
    """Each command's best time and largest memory over rounds in which all run after one another."""
    best = {}
    for _ in range(rounds):
        for name, command in commands.items():
            seconds, memory, output = once(command)
            former = best.get(name, (seconds, memory, output))
            best[name] = (min(seconds, former[0]), max(memory, former[1]), output)
    return best


def has_pandas(python):
    return subprocess.run([python, "-c", "import pandas"], capture_output=True).returncode == 0


def cpu_name():
    try:
        for line in open("/proc/cpuinfo"):
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    except OSError:
        pass
    return platform.processor()


def table(rows, heads):
    print("| " + " | ".join(heads) + " |")
    print("|" + "|".join("---" if i == 0 else "---:" for i in range(len(heads))) + "|")
    for row in rows:
        print("| " + " | ".join(row) + " |")
    print()


def whole_processes(options, missing):
    size = os.path.getsize(options.big) / 1e6
    commands = {
        "qorGen": [options.import_program, options.big],
        "plain 64K table, decoding only": [options.decode_program, options.big],
    }
    if options.rust:
        commands["Rust csv + encoding_rs"] = [options.rust, options.big]
    else:
        missing.append("Rust csv + encoding_rs")
    slow = {"Python csv": [options.python, f"{options.peers}/csv_module.py", options.big]}
    if has_pandas(options.python):
        slow["pandas"] = [options.python, f"{options.peers}/pandas_import.py", options.big]
    else:
        missing.append("pandas")
    measured = {**in_turn(commands), **in_turn(slow, 2)}
    sums = {name: output.strip() for name, (_, _, output) in measured.items() if "rows=" in output}
    if len(set(sums.values())) != 1:
        raise RuntimeError(f"the programs disagree on what they read: {sums}")
    ours = measured["qorGen"][0]
    print(f"### Import of {size:.0f} MB, whole processes\n")
    rows = [
        [name, f"{seconds:.3f}", f"{size / seconds:.0f}", f"{memory:.1f}", f"{seconds / ours:.2f}"]
        for name, (seconds, memory, _) in sorted(measured.items(), key=lambda item: item[1][0])
    ]
    table(rows, ["program", "s", "MB/s", "peak MB", "time / qorGen's"])


def memory_over_size(options):
    rows = []
    for target in (10_000_000, 1_000_000_000):
        path = os.path.join(options.work, "sized.csv")
        written = 0
        with open(path, "wb") as file:
            while written < target:
                with open(options.file, "rb") as source:
                    for line in source:
                        if written >= target:
                            break
                        written += file.write(line)
        seconds, memory, _ = once([options.import_program, path])
        rows.append([f"{written / 1e6:.0f} MB", f"{seconds:.3f}", f"{memory:.1f}"])
        os.remove(path)
    print("### Peak memory over the size of the file\n")
    table(rows, ["file", "s", "peak MB"])


def settings(setting, getting):
    names = {
        "qorgen": "qorGen, a file a value",
        "sqlite": "SQLite, a transaction a value",
        "sqlite_unsynced": "SQLite, the same without waiting for the disk",
        "ini_glib": "INI file of GLib, saved at each set, loaded at each get",
    }
    if "qorgen" not in setting:
        return

    def cells(times, peer):
        if peer not in times:
            return ["", ""]
        return [f"{1e9 / times[peer]:,.0f}", f"{times[peer] / times['qorgen']:.2f}"]

    print("### Settings: one text among a hundred\n")
    table(
        [[name, *cells(setting, peer), *cells(getting, peer)] for peer, name in names.items() if peer in setting],
        ["store", "sets a second", "time / qorGen's", "gets a second", "time / qorGen's"],
    )


def exports(options, missing):
    """Peers hold the table in memory and tell how long writing it took."""
    target = os.path.join(options.work, "exported.csv")

    def run(command, times):
        if os.path.exists(target):
            os.remove(target)
        _, memory, output = once([*command, options.file, target, str(times)])
        told = dict(word.split("=") for word in output.split())
        return float(told["seconds"]), os.path.getsize(target), int(told["rows"]), memory

    commands = {"qorGen": [options.export_program],
                "Python csv writer": [options.python, f"{options.export_peers}/csv_writer.py"]}
    if has_pandas(options.python):
        commands["pandas to_csv"] = [options.python, f"{options.export_peers}/pandas_export.py"]
    best = {}
    for turn in range(ROUNDS):
        for name, command in commands.items():
            if name == "qorGen" or turn < 2:
                best[name] = min(best.get(name, (float("inf"),)), run(command, 10))
    run(commands["qorGen"], 10)
    if not filecmp.cmp(target, options.big, shallow=False):
        raise RuntimeError("the exported table is not the one that was read")
    ours = best["qorGen"][0]
    print("### Export of the table ten times over, writing alone\n")
    table(
        [
            [name, f"{seconds:.3f}", f"{rows / seconds:,.0f}", f"{size / seconds / 1e6:.0f}", f"{seconds / ours:.2f}"]
            for name, (seconds, size, rows, _) in sorted(best.items(), key=lambda item: item[1][0])
        ],
        ["program", "s", "rows a second", "MB/s", "time / qorGen's"],
    )
    print("### Peak memory over the rows exported (the table itself is held by the program)\n")
    rows = []
    for times in (1, 80):
        seconds, size, count, memory = run(commands["qorGen"], times)
        rows.append([f"{size / 1e6:.0f} MB", f"{count:,}", f"{seconds:.3f}", f"{memory:.1f}"])
    table(rows, ["file", "rows", "s", "peak MB"])
    os.remove(target)


def recoding(options, missing):
    if not shutil.which("iconv"):
        missing.append("iconv(1)")
        return
    utf8 = os.path.join(options.work, "ten_times.utf8")
    target = os.path.join(options.work, "recoded")
    once(["iconv", "-f", "CP932", "-t", "UTF-8", "-o", utf8, options.big])
    rows = []
    for subject, source, direction, from_code, to_code in (
        ("932 to UTF-8", options.big, "utf8", "CP932", "UTF-8"),
        ("UTF-8 to 932", utf8, "932", "UTF-8", "CP932"),
    ):
        commands = {"qorGen": [options.recode_program, direction, source, target],
                    "iconv(1)": ["iconv", "-f", from_code, "-t", to_code, "-o", target, source]}
        best = {}
        for _ in range(ROUNDS):
            for name, command in commands.items():
                if os.path.exists(target):
                    os.remove(target)
                seconds, memory, _ = once(command)
                best[name] = min(best.get(name, (float("inf"),)), (seconds, memory))
        size = os.path.getsize(source) / 1e6
        ours = best["qorGen"][0]
        rows += [
            [subject if name == "qorGen" else "", name, f"{seconds:.3f}", f"{size / seconds:.0f}", f"{memory:.1f}",
             f"{seconds / ours:.2f}"]
            for name, (seconds, memory) in best.items()
        ]
    print("### Files in another encoding, whole processes\n")
    table(rows, ["subject", "program", "s", "MB/s read", "peak MB", "time / qorGen's"])
    os.remove(utf8)
    os.remove(target)


def in_process(options, missing):
    with open(options.in_process) as file:
        results = json.load(file)
    times, absent = {}, set()
    for item in results["benchmarks"]:
        if item.get("error_occurred"):
            absent.add(item["name"].split("/repeats")[0] + f" ({item['error_message']})")
        elif item.get("run_type") == "iteration":
            # What waits for a disk is measured by the clock on the wall.
            real = item["run_name"].endswith("/real_time")
            name = item["run_name"].removesuffix("/real_time")
            times[name] = min(times.get(name, float("inf")), item["real_time" if real else "cpu_time"])
    missing.extend(sorted(absent))
    subjects = {}
    for name, nanoseconds in times.items():
        subject, peer, *rest = name.split("/")
        key = subject if not rest else f"{subject}, {int(rest[0]):,} characters"
        subjects.setdefault(key, {})[peer] = nanoseconds
    settings(subjects.pop("settings_set", {}), subjects.pop("settings_get", {}))
    print("### In one process\n")
    rows = []
    for subject, peers in subjects.items():
        ours = peers.get("qorgen")
        if ours is None:
            continue
        rows.append([subject, "qorgen", f"{ours:,.1f}", "1.00"])
        rows += [["", peer, f"{value:,.1f}", f"{value / ours:.2f}"] for peer, value in peers.items() if peer != "qorgen"]
    table(rows, ["subject", "with", "ns a call", "time / qorGen's"])
    if not any("icu" in name for name in times):
        missing.append("ICU")
    if not any("sqlite" in name for name in times):
        missing.append("SQLite")
    if not any("libcsv" in name for name in times):
        missing.append("libcsv")


def main():
    parser = argparse.ArgumentParser()
    for name in ("in-process", "file", "big", "work", "import-program", "export-program", "recode-program",
                 "decode-program", "peers", "export-peers", "rust", "python"):
        parser.add_argument("--" + name, required=True)
    options = parser.parse_args()
    missing = []
    print(f"Measured on {datetime.date.today().isoformat()}, {cpu_name()}, best of {ROUNDS}, one core.")
    print(f"Input: {os.path.basename(options.file)} ({os.path.getsize(options.file):,} bytes), ten times over.\n")
    whole_processes(options, missing)
    memory_over_size(options)
    exports(options, missing)
    recoding(options, missing)
    in_process(options, missing)
    for name in missing:
        print(f"Left out, not installed: {name}.")


if __name__ == "__main__":
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    main()

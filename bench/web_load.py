#!/usr/bin/python3
"""dnc-web under measure: seeds a journal, times each page, then loads it with many clients.

  web_load.py seed DB_OR_URI ROWS TOOLS     fills an empty journal (SQLite path, or a
                                            postgresql:// URI through psql)
  web_load.py pages PORT REPEAT             median and worst time of each page
  web_load.py load PORT CLIENTS SECONDS PID requests per second, errors, peak resident memory
"""

import datetime
import http.client
import os
import random
import sqlite3
import statistics
import subprocess
import sys
import tempfile
import threading
import time

MACHINES = ["Lathe %d" % n for n in range(1, 13)] + ["Mill %d" % n for n in range(1, 13)]
OUTCOMES = ["done"] * 20 + ["timeout", "port_failure", "refused", "interrupted", "cancelled"]


def iso(t):
    return t.strftime("%Y-%m-%dT%H:%M:%S.") + "%03dZ" % (t.microsecond // 1000)


def rows(count, tools):
    rnd = random.Random(5)
    now = datetime.datetime.utcnow()
    journal, usage = [], []
    for i in range(count):
        t = now - datetime.timedelta(seconds=i * 90 + rnd.randint(0, 60))  # about 100 days
        m = MACHINES[i % len(MACHINES)]
        program = "O%04d" % rnd.randint(1, 9999)
        journal.append((iso(t), "shop-pc", m, "/dev/ttyS0", "XonXoff",
                        rnd.choice(["send", "send", "receive", "request", "punch"]),
                        "/srv/dnc/%s.tap" % program, program, rnd.randint(500, 90000),
                        rnd.randint(20, 3000), rnd.choice(OUTCOMES), rnd.randint(500, 90000)))
        if i % 2 == 0:  # a send's tools: a few lines each
            for _ in range(4):
                k = min(int(rnd.expovariate(1 / 60)), tools - 1)
                usage.append(("T%03d" % (k + 1), m, iso(t), program))
    return journal, usage


JCOLS = "time, host, machine, device, control, operation, file, program, bytes, lines, " \
        "outcome, duration_ms"


def seed(target, count, tools):
    journal, usage = rows(count, tools)
    if target.startswith("postgres"):
        with tempfile.TemporaryDirectory() as d:
            jf, uf = os.path.join(d, "j.tsv"), os.path.join(d, "u.tsv")
            with open(jf, "w") as f:
                f.writelines("\t".join(map(str, r)) + "\n" for r in journal)
            with open(uf, "w") as f:
                f.writelines("\t".join(map(str, r)) + "\n" for r in usage)
            subprocess.run(["psql", "-X", "-q", "-v", "ON_ERROR_STOP=1", target,
                            "-c", "\\copy transfer_journal (%s) FROM '%s'" % (JCOLS, jf),
                            "-c", "\\copy tool_usage (tool, machine, time, program) FROM '%s'" % uf,
                            "-c", "ANALYZE transfer_journal, tool_usage"], check=True)
    else:
        db = sqlite3.connect(target)
        db.executemany("INSERT INTO transfer_journal (%s) VALUES (%s)"
                       % (JCOLS, ", ".join("?" * 12)), journal)
        db.executemany("INSERT INTO tool_usage (tool, machine, time, program) VALUES (?,?,?,?)",
                       usage)
        db.commit()
        db.execute("ANALYZE")
        db.close()
    print("seeded %d journal rows, %d tool uses of %d tools" % (len(journal), len(usage), tools))


PAGES = ["/", "/journal", "/journal?machine=Mill+7", "/journal?outcome=timeout",
         "/journal?date=%s" % (datetime.date.today() - datetime.timedelta(days=3)).isoformat(),
         "/journal?machine=Lathe+3&outcome=refused&page=3", "/journal?page=1000", "/tools",
         "/tools?tool=T001", "/tools?tool=T250"]


def get(conn, path):
    conn.request("GET", path)
    r = conn.getresponse()
    body = r.read()
    return r.status, body


def pages(port, repeat):
    conn = http.client.HTTPConnection("127.0.0.1", port, timeout=30)
    for path in PAGES + ["/journal.csv"]:
        times = []
        for _ in range(repeat if path != "/journal.csv" else 3):
            t = time.perf_counter()
            status, body = get(conn, path)
            times.append((time.perf_counter() - t) * 1000)
            if status != 200:
                raise SystemExit("%s: %d" % (path, status))
        print("%-48s median %7.1f ms  worst %7.1f ms  (%d bytes)"
              % (path, statistics.median(times), max(times), len(body)))


def rss_kib(pid):
    with open("/proc/%d/status" % pid) as f:
        for line in f:
            if line.startswith("VmRSS:"):
                return int(line.split()[1])
    return 0


def load(port, clients, seconds, pid):
    done, errors, lock = [0], [0], threading.Lock()
    stop = time.time() + seconds
    rss_before = rss_kib(pid)

    def client(n):
        conn = http.client.HTTPConnection("127.0.0.1", port, timeout=30)
        i = n
        while time.time() < stop:
            path = PAGES[i % len(PAGES)]
            i += 1
            try:
                status, _ = get(conn, path)
                ok = status == 200
            except Exception:
                ok = False
                conn = http.client.HTTPConnection("127.0.0.1", port, timeout=30)
            with lock:
                done[0] += 1
                errors[0] += 0 if ok else 1

    threads = [threading.Thread(target=client, args=(n,)) for n in range(clients)]
    start = time.time()
    for t in threads:
        t.start()
    peak = rss_before
    while any(t.is_alive() for t in threads):
        peak = max(peak, rss_kib(pid))
        time.sleep(0.1)
    elapsed = time.time() - start
    print("%d clients, %.0f s: %d requests, %.1f requests/s, %d errors; resident memory "
          "%.1f MiB before, %.1f MiB at most under load"
          % (clients, elapsed, done[0], done[0] / elapsed, errors[0], rss_before / 1024,
             peak / 1024))


if __name__ == "__main__":
    cmd = sys.argv[1]
    if cmd == "seed":
        seed(sys.argv[2], int(sys.argv[3]), int(sys.argv[4]))
    elif cmd == "pages":
        pages(int(sys.argv[2]), int(sys.argv[3]))
    elif cmd == "load":
        load(int(sys.argv[2]), int(sys.argv[3]), float(sys.argv[4]), int(sys.argv[5]))

"""A journal of a small shop for dnc-web's browser test and the README's pictures: an SQLite
file made from the repository's schema, with times around the moment it is made, and names
that carry markup, quotes and formulas, as NC files and tool lines may."""

import datetime
import random
import sqlite3

HOSTILE_MACHINE = "Lathe <script>alert(1)</script>"
HOSTILE_TOOL = "<script>document.title='x'</script>"


def iso(t):
    return t.astimezone(datetime.timezone.utc).strftime("%Y-%m-%dT%H:%M:%S.") + \
        "%03dZ" % (t.microsecond // 1000)


def seed(path, schema, now=None, hostile=True):
    """Makes `path` from `schema` and fills it; returns the rows' machines and states."""
    now = now or datetime.datetime.now(datetime.timezone.utc)
    db = sqlite3.connect(path)
    with open(schema, encoding="utf-8") as f:
        db.executescript(f.read())
    rnd = random.Random(27)
    machines = ["Lathe 1", "Mill 2", "Mill 3", "Press 4"]
    if hostile:
        machines.append(HOSTILE_MACHINE)
    outcomes = ["done"] * 12 + ["timeout", "port_failure", "refused", "interrupted"]
    rows = []
    for i in range(400):
        t = now - datetime.timedelta(minutes=17 * i + rnd.randint(0, 9))
        m = machines[i % len(machines)]
        op = rnd.choice(["send", "send", "send", "receive", "request", "punch"])
        outcome = rnd.choice(outcomes)
        program = "O%04d" % rnd.randint(1, 9999)
        if hostile and i % 50 == 7:
            program = "O1<img src=x onerror=alert(1)>"
        rows.append((iso(t), "shop-pc", m, "/dev/ttyS%d" % (i % 4), "XonXoff", op,
                     "/srv/dnc/programs/%s.tap" % program, program, rnd.randint(500, 90000),
                     rnd.randint(20, 3000), "", outcome,
                     "" if outcome == "done" else "no answer from the control",
                     rnd.randint(800, 120000), "dnc"))
    db.executemany(
        "INSERT INTO transfer_journal (time, host, machine, device, control, operation, file, "
        "program, bytes, lines, sha256, outcome, message, duration_ms, user_name) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, '', ?, ?, ?, ?)",
        [r[:10] + r[11:] for r in rows])
    tools = ["T%02d %s" % (n, kind) for n, kind in
             enumerate(["FACE MILL D63", "END MILL D10", "DRILL D8.5", "TAP M10",
                        "CHAMFER 90", "BORING BAR", "REAMER D12H7", "SLOT MILL D6",
                        "CENTER DRILL", "THREAD MILL", "DRILL D5", "END MILL D16"], start=1)]
    if hostile:
        tools.append(HOSTILE_TOOL)
    usage = []
    for day in range(30):
        for k, tool in enumerate(tools):
            for _ in range(rnd.randint(0, max(1, 12 - k))):
                t = now - datetime.timedelta(days=day, minutes=rnd.randint(0, 600))
                usage.append((tool, machines[k % len(machines)], iso(t), "O1234"))
    db.executemany("INSERT INTO tool_usage (tool, machine, time, program) VALUES (?, ?, ?, ?)",
                   usage)
    states = [("Lathe 1", "/dev/ttyS0", "listening", None, "", 3600, 5),
              ("Mill 2", "/dev/ttyS1", "sending", 42, "O4711", 40, 3),
              ("Mill 3", "/dev/ttyUSB0", "waiting", None, "O0815", 4, 4),
              ("Press 4", "/dev/ttyS3", "listening", None, "", 7200, 600)]  # gone: offline
    for m, dev, state, pct, prog, since, age in states:
        db.execute("INSERT INTO station_state (machine, host, device, state, percent, program, "
                   "since, updated) VALUES (?, 'shop-pc', ?, ?, ?, ?, ?, ?)",
                   (m, dev, state, pct, prog, iso(now - datetime.timedelta(seconds=since)),
                    iso(now - datetime.timedelta(seconds=age))))
    db.commit()
    db.close()
    return {"machines": machines, "tools": tools}

#!/usr/bin/python3
"""The README's pictures of dnc-web: each page in headless chromium, from a seeded journal."""

import argparse
import os
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import browser_test  # noqa: E402
import seed_journal  # noqa: E402

PAGES = [("web-machines.png", "/", 1100, 560),
         ("web-journal.png", "/journal?machine=Mill+2", 1100, 760),
         ("web-tools.png", "/tools?tool=T02+END+MILL+D10", 1100, 1200)]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--dnc-web", required=True)
    parser.add_argument("--schema", required=True)
    parser.add_argument("--out", required=True)
    args = parser.parse_args()
    missing = browser_test.browser_missing()
    if missing:
        print("needs " + ", ".join(missing))
        return 1
    os.makedirs(args.out, exist_ok=True)
    with tempfile.TemporaryDirectory() as folder:
        database = os.path.join(folder, "journal.db")
        seed_journal.seed(database, args.schema, hostile=False)
        port = browser_test.free_port()
        server = browser_test.start_server(args.dnc_web, database, port)
        try:
            for name, path, width, height in PAGES:
                driver = browser_test.make_driver("en-GB", width, height)
                try:
                    driver.get("http://127.0.0.1:%d%s" % (port, path))
                    driver.save_screenshot(os.path.join(args.out, name))
                finally:
                    driver.quit()
                print("wrote " + os.path.join(args.out, name))
        finally:
            server.terminate()
            server.wait(5)
    return 0


if __name__ == "__main__":
    sys.exit(main())

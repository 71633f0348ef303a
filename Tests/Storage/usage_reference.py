#!/usr/bin/python3
"""Totals of session logs by the plainest means, to hold the reader against.

usage_reference.py ROOT NOW ZONE    NOW in Unix seconds; prints JSON by scope
"""
import datetime as dt
import json
import pathlib
import sys
import zoneinfo

KINDS = ("input_tokens", "output_tokens", "cache_creation_input_tokens", "cache_read_input_tokens")


def project_name(parts):
    """The nearest folder that is named after a path, without what leads to a home."""
    for part in reversed(parts):
        if part.startswith("-") and part.strip("-"):
            words = part[1:].split("-")
            if words[0] in ("home", "Users") and len(words) > 1:
                return "-".join(words[2:]) or "~"
            return part[1:]
    return None


def lines(path):
    data = path.read_bytes()
    for line in data[:data.rfind(b"\n") + 1].splitlines():
        try:
            yield json.loads(line)
        except ValueError:
            pass


def entries(root, since):
    projects = root / "projects"
    for path in projects.rglob("*.jsonl"):
        if path.stat().st_mtime < since:
            continue
        project = project_name(path.relative_to(projects).parts[:-1])
        for line in lines(path):
            message = line.get("message") if isinstance(line, dict) else None
            usage = message.get("usage") if isinstance(message, dict) else None
            if not isinstance(usage, dict):
                continue
            time = dt.datetime.fromisoformat(line["timestamp"].replace("Z", "+00:00")).timestamp()
            counts = [usage.get(kind, 0) for kind in KINDS]
            key = (message.get("id"), line.get("requestId"))
            yield time, counts, project, key if any(key) else line.get("uuid")


def totals(found, start):
    unique = {}
    for time, counts, project, key in found:
        if time >= start:
            rank = (time, sum(counts), counts[1])
            if key not in unique or rank > unique[key][0]:
                unique[key] = (rank, counts, project)
    projects = {}
    for _, counts, project in unique.values():
        if project is not None:
            projects[project] = projects.get(project, 0) + sum(counts)
    sums = [sum(counts[i] for _, counts, _ in unique.values()) for i in range(4)]
    return {"sums": sums, "messages": len(unique),
            "last": max((rank[0] for rank, _, _ in unique.values()), default=None),
            "projects": sorted(([n, t] for n, t in projects.items()), key=lambda p: (-p[1], p[0]))}


def main():
    root, now, zone = pathlib.Path(sys.argv[1]), float(sys.argv[2]), zoneinfo.ZoneInfo(sys.argv[3])
    today = dt.datetime.fromtimestamp(now, zone).date()

    def midnight(day):
        return dt.datetime(day.year, day.month, day.day, tzinfo=zone).timestamp()
    starts = {"block": now - 18000, "today": midnight(today),
              "week": midnight(today - dt.timedelta(days=6))}
    found = list(entries(root, min(starts.values())))
    print(json.dumps({scope: totals(found, start) for scope, start in starts.items()}))


main()

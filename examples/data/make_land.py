#!/usr/bin/env python3
# Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
"""Makes land.geojson from the TopoJSON file of Natural Earth's land:

    npm pack world-atlas@2.0.2 && tar xzf world-atlas-2.0.2.tgz package/land-110m.json
    examples/data/make_land.py package/land-110m.json > examples/data/land.geojson

In the TopoJSON file the land goes round the globe; GeoJSON requires cutting it at the 180th meridian (RFC 7946, 3.1.9).
"""
import json
import sys


def points_of(topology):
    """The arcs of a topology as lists of (longitude, latitude)."""
    (scale_x, scale_y), (x0, y0) = topology["transform"]["scale"], topology["transform"]["translate"]
    for arc in topology["arcs"]:
        x = y = 0
        points = []
        for dx, dy in arc:
            x, y = x + dx, y + dy
            points.append((x * scale_x + x0, y * scale_y + y0))
        yield points


def joined(indices, arcs):
    """Joins arcs to one ring; each arc begins at the end of the previous one. ~i is arc i reversed."""
    ring = []
    for index in indices:
        ring += (arcs[index] if index >= 0 else arcs[~index][::-1])[bool(ring):]
    return ring


def unwound(ring):
    """The ring with longitudes that continue beyond 180; closed over the pole if it goes round the pole."""
    turns = 0
    result = [ring[0]]
    for (before, _), (longitude, latitude) in zip(ring, ring[1:]):
        turns += (longitude - before < -180) - (longitude - before > 180)
        result.append((longitude + 360 * turns, latitude))
    if turns:
        pole = 90 if ring[0][1] > 0 else -90
        result += [(result[-1][0], pole), (result[0][0], pole), result[0]]
    return result


def clipped(ring, limit, keeps):
    """The part of a ring on one side of a meridian (Sutherland and Hodgman, 1974)."""
    result = []
    for (x0, y0), (x1, y1) in zip(ring, ring[1:] + ring[:1]):
        if keeps(x0):
            result.append((x0, y0))
        if keeps(x0) != keeps(x1):
            result.append((limit, y0 + (y1 - y0) * (limit - x0) / (x1 - x0)))
    return result


def cut(ring):
    """The pieces of a ring between -180 and 180 degrees."""
    for shift in (-360, 0, 360):
        piece = [(x + shift, y) for x, y in unwound(ring)]
        piece = clipped(clipped(piece, -180, lambda x: x >= -180), 180, lambda x: x <= 180)
        piece = [(round(x, 2), round(y, 2)) for x, y in piece]
        piece = [p for i, p in enumerate(piece) if p != piece[i - 1]]
        if len(piece) > 2:
            yield piece + piece[:1]


def is_beside(lake, land):
    """True when a lake lies in a piece of its land. A piece lies on one side of the meridian, and so does a lake."""
    return min(land)[0] <= min(lake)[0] and max(lake)[0] <= max(land)[0]


topology = json.load(open(sys.argv[1], encoding="utf-8"))
arcs = list(points_of(topology))
print('{"type":"FeatureCollection","features":[')
features = []
for geometry in topology["objects"]["land"]["geometries"]:
    for polygon in geometry["arcs"]:
        outer, *lakes = [joined(ring, arcs) for ring in polygon]
        for piece in cut(outer):
            rings = [piece] + [lake for ring in lakes for lake in cut(ring) if is_beside(lake, piece)]
            features.append('{"type":"Feature","properties":{},"geometry":%s}'
                            % json.dumps({"type": "Polygon", "coordinates": rings}, separators=(",", ":")))
print(",\n".join(features))
print("]}")

